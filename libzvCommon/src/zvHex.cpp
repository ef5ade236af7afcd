#include "zvHex.h"
