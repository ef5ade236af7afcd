#include "camera_status.h"
