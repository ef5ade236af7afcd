/*
 * zvc_video.h
 */
#ifndef ZVC_VIDEO_H
#define ZVC_VIDEO_H

#include "zvc_commands.h"

#endif
