/*
 * zvc_state.h
 */
#ifndef ZVC_STATE_H
#define ZVC_STATE_H

#include "zvc_commands.h"

#endif
