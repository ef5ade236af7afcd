#include "zvc_video.h"
