// The trace of the messages that leave. Internal to the library.
#pragma once

#include <cstdint>

namespace zv {

// Prints the message to the log where the trace asks for its direction, a row of zvHex.h; an unknown one never prints.
void trace_message(int32_t direction, const uint8_t *message, int32_t length);

} // namespace zv
