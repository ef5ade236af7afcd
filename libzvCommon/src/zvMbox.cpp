#include "zvMbox.h"
