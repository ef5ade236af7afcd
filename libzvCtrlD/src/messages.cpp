#include "messages.h"
