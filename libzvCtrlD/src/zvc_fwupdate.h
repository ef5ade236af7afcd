/*
 * zvc_fwupdate.h
 */
#ifndef ZVC_FWUPDATE_H
#define ZVC_FWUPDATE_H

#include "zvc_commands.h"

#endif
