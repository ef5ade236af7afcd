#include "zvc_settings.h"
