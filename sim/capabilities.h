// What the camera offers: resolutions, frame rates and fields of view, by the situation that it is in.
#pragma once

#include "modes.h"

namespace zv::sim {

// Keys of the capability service.
enum CapabilityKey : uint8_t {
    CAP_KEY_RESOLUTION = 0,
    CAP_KEY_FOV = 1,
    CAP_KEY_FPS = 2,
    CAP_KEY_ANTI_FLICKER = 7,
    CAP_KEY_VIDEO_PROFILE = 45,
};

// Numbers are the camera's option values.
struct Situation {
    uint8_t lens = 0;          // 0 none
    uint8_t flat_mode = 0;     //
    uint8_t video_profile = 0; // 0 standard
    uint8_t anti_flicker = 0;  // 0 60 Hz, 1 50 Hz
    std::optional<uint8_t> resolution;
    std::optional<uint8_t> fps;
};

// The values that a setting can take, best first; nothing for a key that the service does not know.
std::optional<Bytes> capability_list(uint8_t key, const Situation &situation);

} // namespace zv::sim
