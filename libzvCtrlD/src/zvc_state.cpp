#include "zvc_state.h"
