/*
 * http_utils.h
 */
#ifndef HTTP_UTILS_H
#define HTTP_UTILS_H

#include "zvDbg.h"

#endif
