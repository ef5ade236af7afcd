// The camera's modes: what each flat mode captures, and where its settings lie.
#pragma once

#include "message.h"

namespace zv::sim {

// The block of the settings record that holds a mode's own settings.
enum class Block : uint8_t { VIDEO, PHOTO, MULTI_SHOT };

enum class CaptureKind : uint8_t { VIDEO, PHOTO, BURST, TIMELAPSE_PHOTO, NIGHTLAPSE_PHOTO };

struct FlatMode {
    uint8_t flat_mode;
    uint8_t mode;
    uint8_t sub_mode;
    Block block;
    uint8_t presets_group; // 0 video, 1 photo, 2 time lapse
    uint8_t shutter_group; // remote API group of its shutter
    uint8_t capture_mode;  // the capability service's number
    CaptureKind captures;
};

// All null for a number that the camera does not know.
const FlatMode *find_flat_mode(uint8_t flat_mode);
const FlatMode *find_capture_mode(uint8_t capture_mode);
const FlatMode *find_mode(uint8_t mode, uint8_t sub_mode);

// The mode that a preset is for.
const FlatMode *find_preset_mode(uint32_t preset);

} // namespace zv::sim
