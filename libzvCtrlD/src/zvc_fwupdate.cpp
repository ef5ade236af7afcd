#include "zvc_fwupdate.h"
