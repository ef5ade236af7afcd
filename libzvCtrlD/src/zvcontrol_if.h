/*
 * zvcontrol_if.h
 */
#ifndef ZVCONTROL_IF_H
#define ZVCONTROL_IF_H

#include "zvDbg.h"

#endif
