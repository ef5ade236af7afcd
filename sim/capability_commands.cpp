#include "capability_commands.h"

#include "capabilities.h"
#include "field.h"
#include "flat_modes.h"
#include "message.h"
#include "modes.h"
#include "remote_commands.h"

#include <zvctrl/camera_records.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace zv::sim {

namespace {

Situation present_situation(const Camera &camera)
{
    Situation situation;
    situation.lens = camera.state().byte(status(STATUS_SYSTEM_CAMERA_LENS_TYPE));
    situation.flat_mode = camera.mode().flat_mode;
    situation.video_profile = camera.state().byte(settings(SETTINGS_VIDEO_PROFILE));
    situation.anti_flicker = camera.state().byte(settings(SETTINGS_SETUP_VIDEO_FORMAT));
    return situation;
}

Answer value_list(const std::optional<Bytes> &values)
{
    if (!values) {
        return failed(FIRMWARE_BAD_VALUE);
    }
    Bytes list = {static_cast<uint8_t>(values->size())};
    list.insert(list.end(), values->begin(), values->end());
    return good(list);
}

} // namespace

Answer present_list(Camera &camera, View payload)
{
    Situation situation = present_situation(camera);
    if (payload[0] != CAP_KEY_RESOLUTION) {
        situation.resolution = camera.state().byte(settings(SETTINGS_VIDEO_RESOLUTION));
    }
    if (payload[0] == CAP_KEY_FOV) {
        situation.fps = camera.state().byte(settings(SETTINGS_VIDEO_FPS));
    }
    return value_list(capability_list(payload[0], situation));
}

Answer filtered_list(Camera &, View payload)
{
    constexpr size_t PAIRS = 5;
    const size_t end = PAIRS + 2 * size_t{payload[PAIRS - 1]};
    const FlatModeRow *mode = find_capture_mode(payload[3]);
    if (payload.size() != end + 2) {
        return refused(NAK);
    }
    if (mode == nullptr) {
        return failed(FIRMWARE_BAD_VALUE);
    }
    Situation situation;
    situation.lens = payload[0];
    situation.flat_mode = mode->flat_mode;
    for (size_t pair = PAIRS; pair < end; pair += 2) {
        const uint8_t value = payload[pair + 1];
        switch (payload[pair]) {
        case CAP_KEY_RESOLUTION:
            situation.resolution = value;
            break;
        case CAP_KEY_FPS:
            situation.fps = value;
            break;
        case CAP_KEY_ANTI_FLICKER:
            situation.anti_flicker = value;
            break;
        case CAP_KEY_VIDEO_PROFILE:
            situation.video_profile = value;
            break;
        default:
            break;
        }
    }
    return value_list(capability_list(payload[end + 1], situation));
}

Answer horizon_option(Camera &camera, View payload)
{
    Situation situation = present_situation(camera);
    situation.resolution = payload[0];
    situation.fps = payload[1];
    const Bytes views = capability_list(CAP_KEY_FOV, situation).value_or(Bytes{});
    const bool offered = std::find(views.begin(), views.end(), payload[2]) != views.end();
    const bool stabilised = camera.state().get(status(STATUS_VIDEO_EIS)) != 0;
    return good(Bytes{static_cast<uint8_t>(offered && stabilised)});
}

} // namespace zv::sim
