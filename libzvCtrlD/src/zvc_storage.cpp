#include "zvc_storage.h"
