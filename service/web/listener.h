// The socket that the server listens on.
#pragma once

#include "options.h"

namespace zvweb {

// A socket that listens. Throws std::runtime_error with what is wrong.
int listen_on(const Options &options);

// Makes room for this many more descriptors than a program usually may have. Returns for how many there is room.
unsigned make_room(unsigned descriptors);

} // namespace zvweb
