#include "remote_actions.h"

#include "bytes.h"
#include "capability_commands.h"
#include "identity.h"
#include "own_fields.h"

#include <zvctrl/zvc_commands.h>

#include <algorithm>
#include <iterator>

namespace zv::sim {

namespace {

Answer done(bool success, FirmwareError error)
{
    return success ? good() : failed(error);
}

Answer bytes_of(const Camera &camera, std::initializer_list<Field> fields)
{
    Bytes bytes;
    for (const Field &field : fields) {
        bytes.push_back(camera.state().byte(field));
    }
    return good(bytes);
}

// One payload byte for each field.
Answer set_bytes(Camera &camera, View payload, std::initializer_list<Field> fields)
{
    const uint8_t *byte = payload.data();
    for (const Field &field : fields) {
        camera.state().set(field, *byte++);
    }
    return good();
}

Answer record_part(const Camera &camera, Field field)
{
    return good(camera.state().record().subspan(field.offset, field.width));
}

constexpr uint16_t CAPTURE_DELAYS[] = {SETTINGS_VIDEO_CAPTURE_DELAY, SETTINGS_PHOTO_CAPTURE_DELAY,
                                       SETTINGS_MULTI_SHOT_CAPTURE_DELAY};
constexpr uint16_t SHORTCUTS[] = {SETTINGS_VIDEO_ONSCREEN_SHORTCUTS, SETTINGS_PHOTO_ONSCREEN_SHORTCUTS,
                                  SETTINGS_MULTI_SHOT_ONSCREEN_SHORTCUTS};
constexpr uint8_t SHORTCUT_COUNT = 4;

// The present mode's own.
uint16_t own(const Camera &camera, const uint16_t (&offsets)[3])
{
    return offsets[static_cast<size_t>(camera.mode().block)];
}

// ---- Modes and presets ---------------------------------------------------------------------------------------------

Answer change_mode(Camera &camera, const FlatMode *mode)
{
    if (mode == nullptr) {
        return failed(FIRMWARE_BAD_VALUE);
    }
    if (camera.capture().active()) {
        return done(mode == &camera.mode(), FIRMWARE_BUSY);
    }
    camera.set_mode(*mode);
    return good();
}

Answer set_mode(Camera &camera, View payload)
{
    return payload[0] == camera.mode().mode ? good() : change_mode(camera, find_mode(payload[0], 0));
}

Answer set_mode_sub_mode(Camera &camera, View payload)
{
    return change_mode(camera, find_mode(payload[0], payload[1]));
}

Answer set_flat_mode(Camera &camera, View payload)
{
    return change_mode(camera, find_flat_mode(payload[0]));
}

Answer get_mode_sub_mode(Camera &camera, View)
{
    return good(Bytes{camera.mode().mode, camera.mode().sub_mode});
}

Answer get_flat_mode_mode(Camera &camera, View)
{
    return good(Bytes{camera.mode().flat_mode, camera.mode().mode});
}

Answer load_preset(Camera &camera, View payload)
{
    if (camera.capture().active()) {
        return failed(FIRMWARE_BUSY);
    }
    return done(camera.load_preset(le32(payload.data())), FIRMWARE_BAD_VALUE);
}

// ---- Capture -------------------------------------------------------------------------------------------------------

template <uint8_t Group>
Answer start_capture(Camera &camera, View)
{
    if (camera.mode().shutter_group != Group) {
        return failed(FIRMWARE_BAD_VALUE);
    }
    return done(!camera.capture().active() && camera.capture().start(camera.mode()), FIRMWARE_BUSY);
}

Answer stop_capture(Camera &camera, View)
{
    camera.capture().stop();
    return good();
}

Answer get_capture_delay(Camera &camera, View)
{
    return bytes_of(camera, {settings(own(camera, CAPTURE_DELAYS))});
}

Answer set_capture_delay(Camera &camera, View payload)
{
    return set_bytes(camera, payload, {settings(own(camera, CAPTURE_DELAYS))});
}

Answer schedule_capture(Camera &camera, View payload)
{
    return set_bytes(
        camera, payload,
        {status(STATUS_APP_SCHEDULED_ENABLED), status(STATUS_APP_SCHEDULED_HOUR), status(STATUS_APP_SCHEDULED_MINUTE)});
}

// ---- Video ---------------------------------------------------------------------------------------------------------

constexpr std::initializer_list<Field> VIDEO_FORMAT = {settings(SETTINGS_VIDEO_RESOLUTION),
                                                       settings(SETTINGS_VIDEO_FPS), settings(SETTINGS_VIDEO_FOV)};

Answer get_video_format(Camera &camera, View)
{
    return bytes_of(camera, VIDEO_FORMAT);
}

Answer set_video_format(Camera &camera, View payload)
{
    return set_bytes(camera, payload, VIDEO_FORMAT);
}

// Automatic limits have no numbers of their own: both go to automatic.
Answer set_video_iso_mode(Camera &camera, View payload)
{
    constexpr uint8_t AUTO = 9;
    camera.state().set(VIDEO_ISO_MODE, payload[0]);
    if (payload[0] == 0) {
        camera.state().set(settings(SETTINGS_VIDEO_VELLIX_ISO), AUTO);
        camera.state().set(settings(SETTINGS_VIDEO_VELLIX_ISO_MIN), AUTO);
    }
    return good();
}

// The multi-shot modes have a ratio of their own beside the video's; the command does not tell which one is meant.
Answer set_aspect_ratio(Camera &camera, View payload)
{
    if (camera.mode().block == Block::MULTI_SHOT) {
        camera.state().set(settings(SETTINGS_MULTI_SHOT_ASPECT_RATIO), payload[0]);
    }
    return set_bytes(camera, payload, {settings(SETTINGS_VIDEO_ASPECT_RATIO)});
}

Answer reset_video_controls(Camera &camera, View)
{
    static constexpr Field CONTROLS[] = {
        settings(SETTINGS_VIDEO_VELLIX_COLOR), settings(SETTINGS_VIDEO_VELLIX_SHARPNESS),
        settings(SETTINGS_VIDEO_VELLIX_ISO),   settings(SETTINGS_VIDEO_VELLIX_ISO_MIN),
        settings(SETTINGS_VIDEO_VELLIX_EV),    settings(SETTINGS_VIDEO_VELLIX_WHITE_BALANCE),
        settings(SETTINGS_VIDEO_EXPOSURE_TIME)};
    camera.reset(CONTROLS);
    return good();
}

Answer reset_photo_controls(Camera &camera, View)
{
    static constexpr Field CONTROLS[] = {
        settings(SETTINGS_PHOTO_VELLIX_COLOR),        settings(SETTINGS_PHOTO_VELLIX_SHARPNESS),
        settings(SETTINGS_PHOTO_VELLIX_ISO),          settings(SETTINGS_PHOTO_VELLIX_ISO_MIN),
        settings(SETTINGS_PHOTO_VELLIX_EV),           settings(SETTINGS_PHOTO_VELLIX_WHITE_BALANCE),
        settings(SETTINGS_PHOTO_VELLIX_EXPOSURE_TIME)};
    camera.reset(CONTROLS);
    return good();
}

Answer reset_multishot_controls(Camera &camera, View)
{
    static constexpr Field CONTROLS[] = {
        settings(SETTINGS_MULTI_SHOT_VELLIX_COLOR), settings(SETTINGS_MULTI_SHOT_VELLIX_SHARPNESS),
        settings(SETTINGS_MULTI_SHOT_VELLIX_ISO),   settings(SETTINGS_MULTI_SHOT_VELLIX_ISO_MIN),
        settings(SETTINGS_MULTI_SHOT_VELLIX_EV),    settings(SETTINGS_MULTI_SHOT_VELLIX_WHITE_BALANCE)};
    camera.reset(CONTROLS);
    return good();
}

// ---- Broadcast -----------------------------------------------------------------------------------------------------

constexpr std::initializer_list<Field> BROADCAST_FORMAT = {
    settings(SETTINGS_BROADCAST_RESOLUTION), settings(SETTINGS_BROADCAST_FPS), settings(SETTINGS_BROADCAST_FOV)};
constexpr std::initializer_list<Field> BROADCAST_RECORD_FORMAT = {
    settings(SETTINGS_BROADCAST_RECORD_RESOLUTION), settings(SETTINGS_BROADCAST_RECORD_FPS), BROADCAST_RECORD_FOV};

// All three values, or one alone: no resolution, frame rate and field of view of a broadcast share a number, so that
// the value itself tells which it is.
Answer set_broadcast_values(Camera &camera, View payload, std::initializer_list<Field> fields)
{
    if (payload.size() >= fields.size()) {
        return set_bytes(camera, payload, fields);
    }
    constexpr uint8_t RESOLUTIONS[] = {9, 12};
    constexpr uint8_t FPS = 8;
    const bool is_resolution =
        std::find(std::begin(RESOLUTIONS), std::end(RESOLUTIONS), payload[0]) != std::end(RESOLUTIONS);
    camera.state().set(fields.begin()[is_resolution ? 0 : payload[0] == FPS ? 1 : 2], payload[0]);
    return good();
}

Answer get_broadcast_format(Camera &camera, View)
{
    return bytes_of(camera, BROADCAST_FORMAT);
}

Answer set_broadcast_format(Camera &camera, View payload)
{
    return set_broadcast_values(camera, payload, BROADCAST_FORMAT);
}

Answer get_broadcast_record_format(Camera &camera, View)
{
    return bytes_of(camera, BROADCAST_RECORD_FORMAT);
}

Answer set_broadcast_record_format(Camera &camera, View payload)
{
    return set_broadcast_values(camera, payload, BROADCAST_RECORD_FORMAT);
}

Answer start_broadcast(Camera &camera, View)
{
    camera.state().set(status(STATUS_BROADCAST_BROADCAST_PROGRESS_COUNTER, 4), 0);
    camera.state().set(BROADCAST_ACTIVE, 1);
    return good();
}

Answer stop_broadcast(Camera &camera, View)
{
    camera.state().set(BROADCAST_ACTIVE, 0);
    return good();
}

Answer get_broadcast_settings(Camera &camera, View)
{
    return record_part(camera, BROADCAST_SETTINGS);
}

Answer get_broadcast_status(Camera &camera, View)
{
    return record_part(camera, BROADCAST_STATUS);
}

// ---- Setup, system, lens -------------------------------------------------------------------------------------------

Answer get_current_settings(Camera &camera, View)
{
    constexpr size_t SIZE = 40;
    return good(camera.state().settings_record().first(SIZE));
}

Answer get_all_settings(Camera &camera, View)
{
    return good(camera.state().settings_record());
}

Answer set_button(Camera &camera, View payload)
{
    return set_bytes(camera, payload, {BUTTON_FIRST, BUTTON_SECOND});
}

Answer get_lens(Camera &camera, View)
{
    return bytes_of(camera, {LENS_MODE, LENS});
}

Answer set_lens(Camera &camera, View payload)
{
    constexpr uint8_t AS_IT_IS = 0xFF;
    if (payload[0] != AS_IT_IS) {
        camera.state().set(LENS_MODE, payload[0]);
    }
    if (payload[1] != AS_IT_IS) {
        camera.state().set(LENS, payload[1]);
    }
    return good();
}

// ---- On-screen shortcuts -------------------------------------------------------------------------------------------

Field shortcut(const Camera &camera, uint8_t slot)
{
    return settings(static_cast<uint16_t>(own(camera, SHORTCUTS) + slot % SHORTCUT_COUNT));
}

// The slot that was written last, and what it shows.
Answer get_shortcut(Camera &camera, View)
{
    return bytes_of(camera, {SHORTCUT_SLOT, shortcut(camera, camera.state().byte(SHORTCUT_SLOT))});
}

Answer set_shortcut(Camera &camera, View payload)
{
    if (payload[0] >= SHORTCUT_COUNT) {
        return failed(FIRMWARE_BAD_VALUE);
    }
    return set_bytes(camera, payload, {SHORTCUT_SLOT, shortcut(camera, payload[0])});
}

Answer reset_shortcuts(Camera &camera, View)
{
    const Field all[] = {settings(own(camera, SHORTCUTS), SHORTCUT_COUNT)};
    camera.reset(all);
    return good();
}

// ---- Storage -------------------------------------------------------------------------------------------------------

std::string path_of(View bytes)
{
    return {bytes.begin(), std::find(bytes.begin(), bytes.end(), '\0')};
}

Answer delete_last(Camera &camera, View)
{
    return done(camera.card().remove_last(), FIRMWARE_NO_FILE);
}

Answer delete_all(Camera &camera, View)
{
    camera.card().remove_all();
    return good();
}

// A byte that has no meaning here, and the path.
Answer delete_file(Camera &camera, View payload)
{
    return done(camera.card().remove_file(path_of(payload.subspan(1))), FIRMWARE_NO_FILE);
}

Answer delete_group(Camera &camera, View payload)
{
    return done(camera.card().remove_group(path_of(payload)), FIRMWARE_NO_FILE);
}

// A count, little-endian, and entries: a byte that has no meaning here, and the path. The entries that are there count,
// not how many were promised; those without a file fail the command, and the others are deleted all the same.
Answer delete_list(Camera &camera, View payload)
{
    constexpr size_t COUNT_SIZE = 2;
    constexpr size_t ENTRY_SIZE = 33;
    bool found = true;
    View rest = payload.subspan(COUNT_SIZE);
    for (uint32_t count = le16(payload.data()); count > 0 && rest.size() >= ENTRY_SIZE; --count) {
        found = camera.card().remove_file(path_of(rest.subspan(1, ENTRY_SIZE - 1))) && found;
        rest = rest.subspan(ENTRY_SIZE);
    }
    return done(found, FIRMWARE_NO_FILE);
}

// Whether the tag is set or taken off, the time in milliseconds, big-endian, and the path.
Answer tag_file(Camera &camera, View payload)
{
    return done(camera.card().tag(path_of(payload.subspan(5)), be32(payload.data() + 1), payload[0] != 0),
                FIRMWARE_NO_FILE);
}

// ---- Firmware update -----------------------------------------------------------------------------------------------

Answer end_download(Camera &, View)
{
    if (ota_state() != OTA_DOWNLOADING) {
        return failed(FIRMWARE_BUSY);
    }
    set_ota_state(OTA_DOWNLOADED);
    return good();
}

Answer start_flashing(Camera &camera, View)
{
    if (ota_state() != OTA_DOWNLOADED) {
        return failed(FIRMWARE_BUSY);
    }
    camera.start_flashing();
    return good();
}

// ---- The table -----------------------------------------------------------------------------------------------------

constexpr RemoteAction REMOTE_ACTIONS[] = {
    // group, action, least payload, run
    {REMOTE_GROUP_APP, 1, 1, set_mode},
    {REMOTE_GROUP_APP, 4, 0, get_mode_sub_mode},
    {REMOTE_GROUP_APP, 5, 2, set_mode_sub_mode},
    {REMOTE_GROUP_APP, 7, 0, get_flat_mode_mode},
    {REMOTE_GROUP_APP, 9, 0, start_capture<REMOTE_GROUP_APP>},
    {REMOTE_GROUP_APP, 10, 0, stop_capture},
    {REMOTE_GROUP_APP, 14, 0, get_capture_delay},
    {REMOTE_GROUP_APP, 15, 1, set_capture_delay},
    {REMOTE_GROUP_APP, 17, 3, schedule_capture},

    {REMOTE_GROUP_VIDEO, 2, 0, get_video_format},
    {REMOTE_GROUP_VIDEO, 3, 3, set_video_format},
    {REMOTE_GROUP_VIDEO, 26, 0, reset_video_controls},
    {REMOTE_GROUP_VIDEO, 27, 0, start_capture<REMOTE_GROUP_VIDEO>},
    {REMOTE_GROUP_VIDEO, 28, 0, stop_capture},
    {REMOTE_GROUP_VIDEO, 42, 1, set_video_iso_mode},
    {REMOTE_GROUP_VIDEO, 53, 1, set_aspect_ratio},
    {REMOTE_GROUP_VIDEO, 91, 3, horizon_option},

    {REMOTE_GROUP_PHOTO, 22, 0, reset_photo_controls},
    {REMOTE_GROUP_PHOTO, 23, 0, start_capture<REMOTE_GROUP_PHOTO>},
    {REMOTE_GROUP_PHOTO, 24, 0, stop_capture},

    {REMOTE_GROUP_MULTISHOT, 26, 0, reset_multishot_controls},
    {REMOTE_GROUP_MULTISHOT, 27, 0, start_capture<REMOTE_GROUP_MULTISHOT>},
    {REMOTE_GROUP_MULTISHOT, 28, 0, stop_capture},

    {REMOTE_GROUP_BROADCAST, 2, 0, get_broadcast_format},
    {REMOTE_GROUP_BROADCAST, 3, 1, set_broadcast_format},
    {REMOTE_GROUP_BROADCAST, 4, 0, get_broadcast_record_format},
    {REMOTE_GROUP_BROADCAST, 5, 1, set_broadcast_record_format},
    {REMOTE_GROUP_BROADCAST, 6, 1, start_broadcast},
    {REMOTE_GROUP_BROADCAST, 7, 0, stop_broadcast},
    {REMOTE_GROUP_BROADCAST, 25, 0, get_broadcast_settings},
    {REMOTE_GROUP_BROADCAST, 26, 0, get_broadcast_status},

    {REMOTE_GROUP_SETUP, 28, 0, get_current_settings},
    {REMOTE_GROUP_SETUP, 30, 0, get_all_settings},

    {REMOTE_GROUP_SYSTEM, 18, 2, set_button},

    {REMOTE_GROUP_STORAGE, 9, 0, delete_last},
    {REMOTE_GROUP_STORAGE, 10, 0, delete_all},
    {REMOTE_GROUP_STORAGE, 14, 2, delete_file},
    {REMOTE_GROUP_STORAGE, 15, 1, delete_group},
    {REMOTE_GROUP_STORAGE, 18, 6, tag_file},
    {REMOTE_GROUP_STORAGE, 22, 2, delete_list},

    {REMOTE_GROUP_FWUPDATE, 0, 0, start_flashing},
    {REMOTE_GROUP_FWUPDATE, 3, 1, end_download},

    {REMOTE_GROUP_PRESET, 12, 4, load_preset},
    {REMOTE_GROUP_PRESET, 16, 0, get_shortcut},
    {REMOTE_GROUP_PRESET, 17, 2, set_shortcut},
    {REMOTE_GROUP_PRESET, 18, 0, reset_shortcuts},
    {REMOTE_GROUP_PRESET, 19, 1, set_flat_mode},
    {REMOTE_GROUP_PRESET, 21, 0, get_lens},
    {REMOTE_GROUP_PRESET, 22, 2, set_lens},
    {REMOTE_GROUP_PRESET, 23, 1, set_flat_mode},

    {REMOTE_GROUP_CAPABILITY, 4, 1, present_list},
    {REMOTE_GROUP_CAPABILITY, 5, 7, filtered_list},
};

} // namespace

Answer failed(FirmwareError error)
{
    Answer answer;
    answer.error = error;
    return answer;
}

const RemoteAction *find_remote_action(uint8_t group, uint8_t action)
{
    const auto *row = std::find_if(std::begin(REMOTE_ACTIONS), std::end(REMOTE_ACTIONS),
                                   [&](const RemoteAction &r) { return r.group == group && r.action == action; });
    return row == std::end(REMOTE_ACTIONS) ? nullptr : row;
}

} // namespace zv::sim
