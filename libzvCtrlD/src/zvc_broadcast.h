/*
 * zvc_broadcast.h
 */
#ifndef ZVC_BROADCAST_H
#define ZVC_BROADCAST_H

#include "zvc_commands.h"

#endif
