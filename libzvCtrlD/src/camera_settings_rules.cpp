#include "camera_settings.h"
