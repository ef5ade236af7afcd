/*
 * zvHex.h
 */
#ifndef ZVHEX_H
#define ZVHEX_H

#include "zvDbg.h"

#endif
