#include "http_utils.h"
