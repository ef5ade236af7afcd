// The remote API's plain values: which command reads or writes which field of the record.
#pragma once

#include "field.h"
#include "remote_commands.h"

#include <cstdint>

namespace zv::sim {

inline constexpr RemoteCommand NO_REMOTE_COMMAND{}; // group 0, which has none

// A written value is the big-endian number of the 1 to 4 payload bytes, cut to the field's width.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): what few rows have comes last
struct RemoteValue {
    RemoteCommand get; // or NO_REMOTE_COMMAND
    RemoteCommand set; // or NO_REMOTE_COMMAND
    Field field;
    Field twins[2] = {};    // also written
    uint8_t read_width = 1; // bytes of the answer, big-endian
};

// Null for a command that is no plain value's.
const RemoteValue *find_remote_value(RemoteCommand command);

} // namespace zv::sim
