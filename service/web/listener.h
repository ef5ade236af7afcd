// The socket that the server listens on.
#pragma once

#include "options.h"

#include <cstdint>

namespace zvweb {

// A socket that listens. Throws std::runtime_error with what is wrong.
int listen_on(const Options &options);

// Its port.
uint16_t port_of(int descriptor);

// Makes room for this many more descriptors than a program usually may have. Returns for how many there is room.
unsigned make_room(unsigned descriptors);

} // namespace zvweb
