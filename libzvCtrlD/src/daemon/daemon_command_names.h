// The names of the daemon's commands, for the log. Internal to the library.
#pragma once

#include <cstdint>

namespace zv {

// The name in the catalogue's row `command`, or "UNKNOWN" where it has no row. The text is static.
const char *command_name(uint32_t command);

} // namespace zv
