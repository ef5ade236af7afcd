/*
 * messages.h
 */
#ifndef MESSAGES_H
#define MESSAGES_H

#include "zvDbg.h"

#endif
