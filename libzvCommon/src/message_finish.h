// The last steps on a message before it leaves, the same in every send: zvMsg.cpp and zvHex.cpp. Internal to the
// library.
#pragma once

#include "zvTlv.h"

namespace zv {

// Prints the message to the log where the trace asks for its direction, a row of zvHex.h; an unknown one never prints.
void trace_message(int32_t direction, const uint8_t *message, int32_t length);

// Adds the addresses and the end to the message in `iobuf`, and traces it. The caller asserts that it is then valid: an
// element that found no room is a fault of whoever built it.
void finish_message(zvIoBuf_t *iobuf, const char *from, const char *to, int32_t direction);

} // namespace zv
