#include "zvc_setup.h"
