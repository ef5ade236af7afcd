#include "remote_actions.h"

#include "bytes.h"
#include "capability_commands.h"
#include "csi_keys.h"
#include "field.h"
#include "find_row.h"
#include "flat_modes.h"
#include "identity.h"
#include "modes.h"
#include "own_fields.h"

#include <zvctrl/camera_records.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string>

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

// By SettingsBlock.
constexpr uint16_t CAPTURE_DELAYS[] = {SETTINGS_VIDEO_CAPTURE_DELAY, SETTINGS_PHOTO_CAPTURE_DELAY,
                                       SETTINGS_MULTI_SHOT_CAPTURE_DELAY};
constexpr uint16_t SHORTCUTS[] = {SETTINGS_VIDEO_ONSCREEN_SHORTCUTS, SETTINGS_PHOTO_ONSCREEN_SHORTCUTS,
                                  SETTINGS_MULTI_SHOT_ONSCREEN_SHORTCUTS};
constexpr uint8_t SHORTCUT_COUNT = 4;

// The present mode's own.
uint16_t own(const Camera &camera, const uint16_t (&offsets)[3])
{
    return offsets[camera.mode().block];
}

// ---- Modes and presets ---------------------------------------------------------------------------------------------

Answer change_mode(Camera &camera, const FlatModeRow *mode)
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

template <RemoteCommand Start>
Answer start_capture(Camera &camera, View)
{
    if (camera.mode().shutter.start != Start) {
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

// The multi-shot modes have a ratio of their own besides the video's; the command does not say which one is meant.
Answer set_aspect_ratio(Camera &camera, View payload)
{
    if (camera.mode().block == BLOCK_MULTI_SHOT) {
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
// the value itself says which it is.
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
    // command, least payload, run
    {REMOTE_APP_MODE_SET, 1, set_mode},
    {REMOTE_APP_MODE_SUB_MODE_GET, 0, get_mode_sub_mode},
    {REMOTE_APP_MODE_SUB_MODE_SET, 2, set_mode_sub_mode},
    {REMOTE_APP_FLAT_MODE_GET, 0, get_flat_mode_mode},
    {REMOTE_APP_SHUTTER_START, 0, start_capture<REMOTE_APP_SHUTTER_START>},
    {REMOTE_APP_SHUTTER_STOP, 0, stop_capture},
    {REMOTE_APP_CAPTURE_DELAY_GET, 0, get_capture_delay},
    {REMOTE_APP_CAPTURE_DELAY_SET, 1, set_capture_delay},
    {REMOTE_APP_SCHEDULED_CAPTURE_SET, 3, schedule_capture},

    {REMOTE_VIDEO_RES_FPS_FOV_GET, 0, get_video_format},
    {REMOTE_VIDEO_RES_FPS_FOV_SET, 3, set_video_format},
    {REMOTE_VIDEO_VELLIX_RESET, 0, reset_video_controls},
    {REMOTE_VIDEO_SHUTTER_START, 0, start_capture<REMOTE_VIDEO_SHUTTER_START>},
    {REMOTE_VIDEO_SHUTTER_STOP, 0, stop_capture},
    {REMOTE_VIDEO_ISO_MODE_SET, 1, set_video_iso_mode},
    {REMOTE_VIDEO_ASPECT_RATIO_SET, 1, set_aspect_ratio},
    {REMOTE_VIDEO_HORIZON_OPTION_GET, 3, horizon_option},

    {REMOTE_PHOTO_VELLIX_RESET, 0, reset_photo_controls},
    {REMOTE_PHOTO_SHUTTER_START, 0, start_capture<REMOTE_PHOTO_SHUTTER_START>},
    {REMOTE_PHOTO_SHUTTER_STOP, 0, stop_capture},

    {REMOTE_MULTISHOT_VELLIX_RESET, 0, reset_multishot_controls},
    {REMOTE_MULTISHOT_SHUTTER_START, 0, start_capture<REMOTE_MULTISHOT_SHUTTER_START>},
    {REMOTE_MULTISHOT_SHUTTER_STOP, 0, stop_capture},

    {REMOTE_BROADCAST_RES_FPS_FOV_GET, 0, get_broadcast_format},
    {REMOTE_BROADCAST_RES_FPS_FOV_SET, 1, set_broadcast_format},
    {REMOTE_BROADCAST_RECORD_RES_FPS_FOV_GET, 0, get_broadcast_record_format},
    {REMOTE_BROADCAST_RECORD_RES_FPS_FOV_SET, 1, set_broadcast_record_format},
    {REMOTE_BROADCAST_START, 1, start_broadcast},
    {REMOTE_BROADCAST_STOP, 0, stop_broadcast},
    {REMOTE_BROADCAST_SETTINGS_GET, 0, get_broadcast_settings},
    {REMOTE_BROADCAST_STATUS_GET, 0, get_broadcast_status},

    {REMOTE_SETUP_CURRENT_SETTINGS_GET, 0, get_current_settings},
    {REMOTE_SETUP_ALL_SETTINGS_GET, 0, get_all_settings},

    {REMOTE_SYSTEM_BUTTON_SET, 2, set_button},

    {REMOTE_STORAGE_DELETE_LAST, 0, delete_last},
    {REMOTE_STORAGE_DELETE_ALL, 0, delete_all},
    {REMOTE_STORAGE_DELETE_FILE, 2, delete_file},
    {REMOTE_STORAGE_DELETE_GROUP, 1, delete_group},
    {REMOTE_STORAGE_TAG_FILE, 6, tag_file},
    {REMOTE_STORAGE_DELETE_LIST, 2, delete_list},

    {REMOTE_FWUPDATE_FLASHING_START, 0, start_flashing},
    {REMOTE_FWUPDATE_DOWNLOAD_DONE, 1, end_download},

    {REMOTE_PRESET_LOAD, 4, load_preset},
    {REMOTE_PRESET_ONSCREEN_CONTROL_GET, 0, get_shortcut},
    {REMOTE_PRESET_ONSCREEN_CONTROL_SET, 2, set_shortcut},
    {REMOTE_PRESET_ONSCREEN_SHORTCUTS_RESET, 0, reset_shortcuts},
    {REMOTE_PRESET_FORMAT_SET, 1, set_flat_mode},
    {REMOTE_PRESET_LENS_GET, 0, get_lens},
    {REMOTE_PRESET_LENS_SET, 2, set_lens},
    {REMOTE_PRESET_FLAT_MODE_SET, 1, set_flat_mode},

    {REMOTE_CAPABILITY_SETTING_LIST_GET_BASED_ON_CURRENT_SETTINGS, 1, present_list},
    {REMOTE_CAPABILITY_APPLY_FILTER_SETTING_LIST_GET, 7, filtered_list},
};

} // namespace

const RemoteAction *find_remote_action(RemoteCommand command)
{
    return find_row(REMOTE_ACTIONS, [=](const RemoteAction &action) { return action.command == command; });
}

} // namespace zv::sim
