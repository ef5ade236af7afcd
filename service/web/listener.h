// The socket that the server listens on.
#pragma once

#include <address.h>

namespace zvweb {

// A socket that listens; of what its clients do not read little waits in the kernel. Throws std::runtime_error with
// what is wrong.
int listen_for_clients(const zvprogram::Address &address);

// Makes room for this many more descriptors than a program usually may have. Returns for how many there is room.
unsigned make_room(unsigned descriptors);

} // namespace zvweb
