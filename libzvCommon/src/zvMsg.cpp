#include "zvMsg.h"
