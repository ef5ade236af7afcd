/*
 * camera_settings.h
 */
#ifndef CAMERA_SETTINGS_H
#define CAMERA_SETTINGS_H

#include "zvDbg.h"

#endif
