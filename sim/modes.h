// What the simulated camera does in a mode, and modes by the other numbers that name them.
#pragma once

#include "flat_modes.h"

#include <cstdint>

namespace zv::sim {

enum class CaptureKind : uint8_t { VIDEO, PHOTO, BURST, TIMELAPSE_PHOTO, NIGHTLAPSE_PHOTO };

CaptureKind capture_kind(FlatMode flat_mode);

// Both null for a number that the camera does not know.
const FlatModeRow *find_capture_mode(uint8_t capture_mode);
const FlatModeRow *find_mode(uint8_t mode, uint8_t sub_mode);

} // namespace zv::sim
