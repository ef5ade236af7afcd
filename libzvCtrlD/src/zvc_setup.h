/*
 * zvc_setup.h
 */
#ifndef ZVC_SETUP_H
#define ZVC_SETUP_H

#include "zvc_commands.h"

#endif
