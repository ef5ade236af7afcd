/*
 * zvc_multishot.h
 */
#ifndef ZVC_MULTISHOT_H
#define ZVC_MULTISHOT_H

#include "zvc_commands.h"

#endif
