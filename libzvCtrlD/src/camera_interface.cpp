#include "camera_interface.h"
