// How often this process has asked for memory: every allocation of the program and of the libraries that it uses ends
// in one of the functions counted here.
#pragma once

#include <cstdint>

namespace bench {

uint64_t allocations();

} // namespace bench
