/*
 * camera_interface.h
 */
#ifndef CAMERA_INTERFACE_H
#define CAMERA_INTERFACE_H

#include "zvDbg.h"

#endif
