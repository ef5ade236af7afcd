#include "zvc_photo.h"
