#include "zvcontrol_if.h"
