/*
 * utils.h
 */
#ifndef UTILS_H
#define UTILS_H

#include "zvDbg.h"

#endif
