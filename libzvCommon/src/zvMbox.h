/*
 * zvMbox.h
 */
#ifndef ZVMBOX_H
#define ZVMBOX_H

#include "zvDbg.h"

#endif
