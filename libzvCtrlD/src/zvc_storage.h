/*
 * zvc_storage.h
 */
#ifndef ZVC_STORAGE_H
#define ZVC_STORAGE_H

#include "zvc_commands.h"

#endif
