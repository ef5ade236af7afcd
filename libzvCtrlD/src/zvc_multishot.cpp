#include "zvc_multishot.h"
