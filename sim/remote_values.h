// The remote API's plain values: which command reads or writes which field of the record.
#pragma once

#include "state.h"

namespace zv::sim {

inline constexpr uint8_t NO_ACTION = 0xFF;

// A written value is the big-endian number of the 1 to 4 payload bytes, cut to the field's width.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): what few rows have stands last
struct RemoteValue {
    uint8_t group;
    uint8_t get; // action, or NO_ACTION
    uint8_t set; // action, or NO_ACTION
    Field field;
    Field twins[2] = {};    // also written
    uint8_t read_width = 1; // bytes of the answer, big-endian
};

// Null for a command that is no plain value's.
const RemoteValue *find_remote_value(uint8_t group, uint8_t action);

} // namespace zv::sim
