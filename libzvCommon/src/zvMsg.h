/*
 * zvMsg.h
 */
#ifndef ZVMSG_H
#define ZVMSG_H

#include "zvTlv.h"

#endif
