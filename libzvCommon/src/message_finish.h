// The last step on a message before it leaves, the same in every send. Internal to the library.
#pragma once

#include "zvTlv.h"

#include <cstdint>

namespace zv {

// Adds the addresses and the end to the message in `iobuf`, and traces it. The caller asserts that it is then valid: an
// element that found no room is a fault of whoever built it.
void finish_message(zvIoBuf_t *iobuf, const char *from, const char *to, int32_t direction);

} // namespace zv
