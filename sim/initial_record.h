// What the record holds when the camera is switched on.
#pragma once

#include "field.h"

#include <cstdint>
#include <span>

namespace zv::sim {

struct InitialValue {
    Field field;
    uint64_t value;
};

std::span<const InitialValue> initial_record();

} // namespace zv::sim
