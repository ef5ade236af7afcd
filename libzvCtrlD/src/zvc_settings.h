/*
 * zvc_settings.h
 */
#ifndef ZVC_SETTINGS_H
#define ZVC_SETTINGS_H

#include "zvc_commands.h"

#endif
