// What the camera offers: resolutions, frame rates and fields of view, by the situation that it is in.
#pragma once

#include "flat_modes.h"
#include "message.h"

#include <cstdint>
#include <optional>

namespace zv::sim {

// Numbers are the camera's option values.
struct Situation {
    uint8_t lens = 0; // 0 none
    FlatMode flat_mode = FLAT_MODE_VIDEO;
    uint8_t video_profile = 0; // 0 standard
    uint8_t anti_flicker = 0;  // 0 60 Hz, 1 50 Hz
    std::optional<uint8_t> resolution;
    std::optional<uint8_t> fps;
};

// The values that the setting of a CapabilityKey can take, best first; nothing for a key that the service does not
// know.
std::optional<Bytes> capability_list(uint8_t key, const Situation &situation);

} // namespace zv::sim
