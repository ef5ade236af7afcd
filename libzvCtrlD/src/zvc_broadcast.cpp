#include "zvc_broadcast.h"
