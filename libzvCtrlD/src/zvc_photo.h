/*
 * zvc_photo.h
 */
#ifndef ZVC_PHOTO_H
#define ZVC_PHOTO_H

#include "zvc_commands.h"

#endif
