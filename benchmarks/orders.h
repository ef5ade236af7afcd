// What is written to a camera that is under load: one option or the other, so that each order changes something.
#pragma once

#include "camera_setting_ids.h"

#include <cstddef>
#include <cstdint>

namespace bench {

struct Order {
    uint32_t setting;
    uint32_t options[2];

    uint32_t option(size_t number) const { return options[number % 2]; }
};

inline constexpr Order SETS_VOLUME = {SETTING_BEEP_VOLUME, {70, 100}}; // no rule asks for it
inline constexpr Order SETS_FRAME_RATE = {SETTING_VIDEO_FPS, {8, 5}};  // what is offered depends on it

} // namespace bench
