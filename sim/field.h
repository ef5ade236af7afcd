// Where a number lies in the snapshot record.
#pragma once

#include <cstdint>

#include <zvctrl/camera_records.h>

namespace zv::sim {

// A number of 1, 4 or 8 bytes. Width 0: no field.
struct Field {
    uint16_t offset = 0;
    uint8_t width = 0;
};

constexpr Field status(uint16_t offset, uint8_t width = 1)
{
    return {offset, width};
}

constexpr Field settings(uint16_t offset, uint8_t width = 1)
{
    return {static_cast<uint16_t>(ALL_SETTINGS_OFFSET + offset), width};
}

} // namespace zv::sim
