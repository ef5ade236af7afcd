#include "camera_interface.h"

#include "bytes.h"
#include "camera_schedule.h"
#include "camera_settings_tables.h"
#include "easy_mode.h"
#include "find_row.h"
#include "zvc_broadcast.h"
#include "zvc_multishot.h"
#include "zvc_photo.h"
#include "zvc_settings.h"
#include "zvc_video.h"

#include <iterator>

using namespace zv;

namespace {

constexpr char DISPATCHER[] = "camera_if_settings_set_value_int";

// One call of the dispatcher.
struct SettingWrite {
    zvc_msg_q_context_t *context;
    int32_t id;
    int32_t group;
    int32_t action;
    uint32_t value;
    int32_t size;
    const appc_setup_all_settings *settings;
    const appc_system_all_status *status;

    uint8_t low() const { return static_cast<uint8_t>(value); }
    int32_t signed_value() const { return static_cast<int32_t>(value); }

    // Bytes of the records are signed. The caller has tested the record.
    int32_t setting(int offset) const { return static_cast<int8_t>(settings->bytes[offset]); }
    int32_t state(int offset) const { return static_cast<int8_t>(status->bytes[offset]); }
};

// ---- Tables ----

// What is logged of an image control that cannot be written, in the order of the settings.
struct ImageControlTexts {
    char no_settings[60];
    char no_family[64]; // function, line, flat mode
};

constexpr ImageControlTexts IMAGE_CONTROL_TEXTS[] = {
    {"Settings info is NULL, can't set vellix", "%s(%d): Flat mode[%d] doesn't support vellix_set\n"},
    {"Settings info is NULL, can't set vellix white balance", "%s(%d): Flat mode[%d] doesn't support vellix_set\n"},
    {"Settings info is NULL, can't set vellix color", "%s(%d): Flat mode[%d] doesn't support vellix_set\n"},
    {"Settings info is NULL, can't set vellix sharpness", "%s(%d): Flat mode[%d] doesn't support vellix_sharpness\n"},
    {"Settings info is NULL, can't set vellix ev", "%s(%d): Flat mode[%d] doesn't support vellix_ev\n"},
};
static_assert(std::size(IMAGE_CONTROL_TEXTS) == SETTING_VELLIX_EV - SETTING_VELLIX + 1);

// What is logged of a value that is no preset's, per preset group; nothing for an empty text.
constexpr char UNKNOWN_PRESET[][80] = {
    "Unknown option id:%d given for Video Easy Presets. Defaulting to Easy Video",
    "",
    "Unknown value:%d given for Multi-Shot Easy Presets, returing Easy RushLapse",
};

// What the horizon fields of view become at a speed: leveling at the fast ones, else lock, for which two speeds go down
// to 4K.
struct HorizonSpeed {
    uint8_t speed;
    uint8_t new_fov;
    uint8_t new_speed;
};

constexpr HorizonSpeed HORIZON_SPEEDS[] = {
    {100, FOV_LINEAR_PLUS_HORIZON_LEVELING, 100}, {101, FOV_LINEAR_PLUS_HORIZON_LEVELING, 101},
    {104, FOV_LINEAR_PLUS_HORIZON_LEVELING, 104}, {105, FOV_LINEAR_PLUS_HORIZON_LEVELING, 105},
    {108, FOV_LINEAR_PLUS_HORIZON_LEVELING, 108}, {112, FOV_LINEAR_PLUS_HORIZON_LEVELING, 112},
    {102, FOV_LINEAR_PLUS_HORIZON_LOCK, 116},     {106, FOV_LINEAR_PLUS_HORIZON_LOCK, 117},
};

// ---- Steps ----

int32_t refuse_without_record(const SettingWrite &write, const char *record)
{
    ZV_LOG(ZV_LOG_ERROR, "%s info is NULL, can't set setting %d", record, write.id);
    return ZV_ERR_INVALID_PARAM;
}

int32_t send(const SettingWrite &write, uint16_t command, const uint8_t *payload, int32_t size)
{
    const auto remote = static_cast<RemoteCommand>(command);
    return camera_if_settings_set_value(write.context, group_of(remote), action_of(remote), payload, size);
}

int32_t send_byte(const SettingWrite &write, uint16_t command, uint8_t value)
{
    return send(write, command, &value, sizeof value);
}

// Most significant byte first, 1, 2 or 4 bytes of the value.
int32_t send_plain(const SettingWrite &write)
{
    uint8_t payload[sizeof write.value];
    put_be32(payload, write.value);
    const int32_t size = write.size == 1 || write.size == 2 ? write.size : int32_t{sizeof payload};
    return camera_if_settings_set_value(write.context, write.group, write.action, payload + sizeof payload - size,
                                        size);
}

using Preparation = int32_t (*)(const SettingWrite &write);

// A setting that goes out as it is, after its preparation. The row is tested before anything is sent.
int32_t set_plain(const SettingWrite &write, Preparation prepare = nullptr)
{
    if (write.group < 0 || write.action < 0) {
        ZV_LOG(ZV_LOG_ERROR, "Setting %d can't be written, group %d action %d", write.id, write.group, write.action);
        return ZV_ERR_INVALID_PARAM;
    }
    if (prepare != nullptr) {
        if (const int32_t result = prepare(write); result != ZV_OK) {
            return result;
        }
    }
    return send_plain(write);
}

// ---- Composites ----

// Image controls have a command for each block; the flat mode decides on the block.
int32_t set_image_control(const SettingWrite &write, const uint16_t (&commands)[3])
{
    const ImageControlTexts &texts = IMAGE_CONTROL_TEXTS[write.id - SETTING_VELLIX];
    if (write.settings == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "%s", texts.no_settings);
        return ZV_ERR;
    }
    const uint8_t flat_mode = write.settings->bytes[SETTINGS_SETUP_CURRENT_FLAT_MODE];
    const FlatModeRow *mode = find_flat_mode(flat_mode);
    if (mode == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, texts.no_family, DISPATCHER, __LINE__, static_cast<int8_t>(flat_mode));
        return ZV_ERR;
    }
    return send_byte(write, commands[mode->block], write.low());
}

int32_t set_by_operation(const SettingWrite &write, uint16_t operation)
{
    zvc_msg_q_context_t *context = write.context;
    const int32_t value = write.signed_value();
    switch (operation) {
    case SET_VIDEO_RES:
        return zvc_video_set_res(context, value);
    case SET_VIDEO_FPS:
        return zvc_video_set_fps(context, value);
    case SET_VIDEO_ISO:
        return zvc_video_vellix_iso_set(context, value);
    case SET_VIDEO_ISO_MIN:
        return zvc_video_vellix_iso_min_set(context, value);
    case SET_VIDEO_BIT_RATE:
        return zvc_video_set_video_bit_rate(context, write.value);
    case SET_VIDEO_BIT_DEPTH:
        return zvc_video_set_video_bit_depth(context, write.value);
    case SET_PHOTO_ISO:
        return zvc_photo_vellix_iso_set(context, value);
    case SET_PHOTO_ISO_MIN:
        return zvc_photo_vellix_iso_min_set(context, value);
    case SET_TIMELAPSE_RATE:
        return zvc_multishot_timelapse_rate_set(context, value);
    case SET_NIGHTLAPSE_RATE:
        return zvc_multishot_nightlapse_rate_set(context, value);
    case SET_MULTISHOT_ISO:
        return zvc_multishot_vellix_iso_set(context, value);
    case SET_MULTISHOT_ISO_MIN:
        return zvc_multishot_vellix_iso_min_set(context, value);
    case SET_CAPTURE_DELAY:
        return zvc_app_set_capture_delay(context, value);
    case SET_AUDIO_OPTION:
        return zvc_audio_set_audio_option(context, write.low());
    case SET_MIC_OPTION:
        return zvc_audio_set_mic_option(context, write.low());
    case SET_LENS_STATUS:
        return zvc_system_set_lens_status(context, static_cast<int8_t>(write.low()));
    default:
        return ZV_ERR_INVALID_PARAM;
    }
}

// A fixed ISO limit and the Auto value go with an ISO mode in the flat modes that have one. The limit's failure is only
// logged: the mode, written last, decides.
int32_t set_video_iso(const SettingWrite &write, uint16_t operation)
{
    constexpr uint32_t ISO_AUTO = option_with_key(VIDEO_VELLIX_ISO, "AUTO").value;
    constexpr FlatModeSet MODES_WITH_ISO_MODE{FLAT_MODE_VIDEO, FLAT_MODE_LOOPING, FLAT_MODE_BROADCAST};
    if (write.settings == nullptr) {
        return refuse_without_record(write, "Settings");
    }
    if (!MODES_WITH_ISO_MODE.contains(write.settings->bytes[SETTINGS_SETUP_CURRENT_FLAT_MODE])) {
        return set_by_operation(write, operation);
    }
    if (write.value == ISO_AUTO) {
        return zvc_video_vellix_iso_mode_set(write.context, 0);
    }
    if (set_by_operation(write, operation) != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "%s", operation == SET_VIDEO_ISO ? "Failed to set iso_max" : "Failed to set iso_min");
    }
    return zvc_video_vellix_iso_mode_set(write.context, 1);
}

int32_t fit_to_photo_exposure(const SettingWrite &write)
{
    const int32_t result = zvc_photo_set_white_balance_best_fit(write.context, write.low());
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_photo_set_white_balance_best_fit error, %d\n", result);
    }
    return result;
}

int32_t fit_to_multi_shot_exposure(const SettingWrite &write)
{
    if (write.settings == nullptr) {
        return refuse_without_record(write, "Settings");
    }
    int32_t result = zvc_multishot_nightlapse_rate_best_fit(write.context, write.low(),
                                                            write.setting(SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE));
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_multishot_nightlapse_rate_autofit error, %d\n", result);
        return result;
    }
    result = zvc_multishot_set_white_balance_best_fit(write.context, write.low());
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_multishot_set_white_balance_best_fit error, %d\n", result);
    }
    return result;
}

int32_t set_broadcast_fov(const SettingWrite &write)
{
    int32_t res = 0;
    int32_t fps = 0;
    int32_t fov = 0;
    const int32_t result = zvc_broadcast_get_res_fps_fov(write.context, &res, &fps, &fov);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_broadcast_get_res_fps_fov error, %d\n", result);
        return result;
    }
    ZV_LOG(ZV_LOG_INFO, "res/fps/fov old, %d,%d,%d\n", res, fps, fov);
    ZV_LOG(ZV_LOG_INFO, "res/fps/fov new, %d,%d,%d\n", res, fps, write.low());
    return zvc_broadcast_set_res_fps_fov(write.context, res, fps, write.low());
}

int32_t set_orientation(const SettingWrite &write)
{
    constexpr auto AS_IT_IS_HELD = static_cast<uint8_t>(option_with_key(ORIENTATION, "LOCKED").value);
    constexpr uint8_t BY_ACTUAL_ORIENTATION[] = {1, 2, 4, 3}; // the lock for each orientation that the camera reports
    uint8_t orientation = write.low();
    if (orientation == AS_IT_IS_HELD) {
        if (write.status == nullptr) {
            return refuse_without_record(write, "Status");
        }
        const int32_t actual = write.state(STATUS_SYSTEM_ACTUAL_ORIENTATION);
        if (actual >= 0 && actual < int32_t{std::size(BY_ACTUAL_ORIENTATION)}) {
            orientation = BY_ACTUAL_ORIENTATION[actual];
        } else {
            ZV_LOG(ZV_LOG_ERROR, "Orientation[%d] is unrecognized", orientation);
            orientation = actual == 5 ? 2 : AS_IT_IS_HELD;
        }
    }
    ZV_LOG(ZV_LOG_DEBUG, "Set orientation[%d]", orientation);
    return zvc_setup_set_orientation(write.context, orientation);
}

// In an easy video preset the field of view decides on the resolution. Without a match the present one goes out.
int32_t set_video_fov(const SettingWrite &write)
{
    constexpr auto UX_MODE_EASY = static_cast<int32_t>(option_with_key(CAMERA_UX_MODE, "EASY").value);
    if (write.settings == nullptr) {
        return refuse_without_record(write, "Settings");
    }
    if (write.setting(SETTINGS_SETUP_CAMERA_UX_MODE) != UX_MODE_EASY ||
        write.setting(SETTINGS_SETUP_CURRENT_FLAT_MODE) != FLAT_MODE_VIDEO) {
        return zvc_video_set_fov(write.context, write.low());
    }
    if (write.status == nullptr) {
        return refuse_without_record(write, "Status");
    }
    auto res = static_cast<uint32_t>(write.setting(SETTINGS_VIDEO_RESOLUTION));
    const auto fps = static_cast<uint32_t>(write.setting(SETTINGS_VIDEO_FPS));
    const auto aspect_ratio = static_cast<uint32_t>(write.setting(SETTINGS_VIDEO_ASPECT_RATIO));
    const uint32_t preset = le32(write.status->bytes + STATUS_APP_ACTIVE_VIDEO_PRESETS);
    if (preset == EASY_VIDEO_PRESET_5_3K) {
        easy_5_3k_video_get_res(&res, fps, write.value, aspect_ratio);
    } else if (preset == EASY_VIDEO_PRESET_4K) {
        easy_4k_video_get_res(&res, fps, write.value, aspect_ratio);
    } else if (preset == EASY_VIDEO_PRESET_1080P) {
        easy_1080p_video_get_res(&res, fps, write.value, aspect_ratio);
    }
    return zvc_video_set_easy_res_fps_fov(write.context, res, fps, write.value);
}

int32_t set_front_display(const SettingWrite &write)
{
    if (write.settings == nullptr) {
        return refuse_without_record(write, "Settings");
    }
    if (write.low() == write.settings->bytes[SETTINGS_SETUP_FRONT_LCD_DISPLAY_MODE]) {
        return ZV_OK;
    }
    return send_byte(write, REMOTE_SETUP_FRONT_LCD_DISPLAY_MODE_SET, write.low());
}

int32_t set_scheduled_capture(const SettingWrite &write)
{
    const auto [enabled, format, minute, hour] = camera_schedule_unpack(write.value);
    if (hour > 23) {
        ZV_LOG(ZV_LOG_ERROR, "Error setting scheduled capture format, invalid hour[%d] for 24hr clock", hour);
        return ZV_ERR_INVALID_PARAM;
    }
    if (minute > 59) {
        ZV_LOG(ZV_LOG_ERROR, "Error setting scheduled capture format, invalid minute[%d]", minute);
        return ZV_ERR_INVALID_PARAM;
    }
    if (static_cast<uint16_t>(write.value) != 0) {
        if (const int32_t result = send_byte(write, REMOTE_APP_SCHEDULED_FORMAT_SET, format); result != ZV_OK) {
            ZV_LOG(ZV_LOG_ERROR, "Error setting scheduled capture format");
            return result;
        }
    }
    const uint8_t schedule[] = {enabled, hour, minute};
    return send(write, REMOTE_APP_SCHEDULED_CAPTURE_SET, schedule, sizeof schedule);
}

// Loads the preset of a value, the group's first one for a value without one. Unlike the values of the plain writes a
// preset's number goes out least significant byte first.
int32_t load_preset_of(const SettingWrite &write, PresetGroup group)
{
    const EasyPreset *preset = find_easy_preset(group, write.low());
    if (preset == nullptr) {
        if (UNKNOWN_PRESET[group][0] != '\0') {
            ZV_LOG(ZV_LOG_ERROR, UNKNOWN_PRESET[group], write.low());
        }
        preset = find_easy_preset(group, 0);
    }
    uint8_t payload[sizeof preset->preset];
    put_le32(payload, preset->preset);
    return send(write, REMOTE_PRESET_LOAD, payload, sizeof payload);
}

int32_t set_easy_speed(const SettingWrite &write)
{
    if (write.settings == nullptr) {
        return refuse_without_record(write, "Settings");
    }
    uint8_t speed = write.low();
    int32_t fov = write.setting(SETTINGS_VIDEO_FOV);
    if (fov == FOV_LINEAR_PLUS_HORIZON_LEVELING || fov == FOV_LINEAR_PLUS_HORIZON_LOCK) {
        const auto *horizon = find_row(HORIZON_SPEEDS, [=](const HorizonSpeed &row) { return row.speed == speed; });
        fov = FOV_LINEAR_PLUS_HORIZON_LOCK;
        if (horizon != nullptr) {
            fov = horizon->new_fov;
            speed = horizon->new_speed;
        }
    }
    ZV_LOG(ZV_LOG_INFO, "res/fps/fov old, %d,%d,%d\n", write.setting(SETTINGS_VIDEO_RESOLUTION),
           write.setting(SETTINGS_VIDEO_FPS), fov);
    const EasySpeed *row = find_easy_speed(speed);
    if (row == nullptr) {
        return ZV_ERR_INVALID_PARAM;
    }
    const uint8_t fps = write.setting(SETTINGS_SETUP_VIDEO_FORMAT) == 0 ? row->fps : row->fps_50hz;
    return zvc_video_set_easy_res_fps_fov(write.context, row->resolution, fps, static_cast<uint32_t>(fov));
}

// The camera offers neither setting while the sound cage's microphone has this status.
int32_t set_audio(const SettingWrite &write, uint16_t operation)
{
    constexpr int32_t NO_AUDIO_SETTINGS = 3;
    if (write.status == nullptr) {
        return refuse_without_record(write, "Status");
    }
    if (write.state(STATUS_SYSTEM_SOUND_CAGE_MIC_STATUS) == NO_AUDIO_SETTINGS) {
        ZV_LOG(ZV_LOG_ERROR, "Setting %d can't be set in sound cage mic status %d", write.id, NO_AUDIO_SETTINGS);
        return ZV_ERR_INVALID_PARAM;
    }
    return set_by_operation(write, operation);
}

} // namespace

int32_t camera_if_settings_set_value(zvc_msg_q_context_t *context, int32_t group, int32_t action,
                                     const uint8_t *payload, int32_t size)
{
    return zvc_send_remote_api_payload(context, group, action, payload, size);
}

int32_t camera_if_settings_set_value_int(zvc_msg_q_context_t *context, int32_t setting_id, int32_t group,
                                         int32_t action, uint32_t value, int32_t size,
                                         const appc_setup_all_settings *settings, const appc_system_all_status *status)
{
    const SettingWrite write{context, setting_id, group, action, value, size, settings, status};
    const auto &[way, numbers] = info_of(static_cast<uint32_t>(setting_id)).write;
    switch (way) {
    case Write::PLAIN:
        return set_plain(write);
    case Write::LOW_BYTE:
        return send_byte(write, numbers[0], write.low());
    case Write::BY_BLOCK:
        return set_image_control(write, numbers);
    case Write::OPERATION:
        return set_by_operation(write, numbers[0]);
    case Write::VIDEO_ISO:
        return set_video_iso(write, numbers[0]);
    case Write::PHOTO_EXPOSURE:
        return set_plain(write, fit_to_photo_exposure);
    case Write::MULTI_SHOT_EXPOSURE:
        return set_plain(write, fit_to_multi_shot_exposure);
    case Write::BROADCAST_VIEW:
        return set_broadcast_fov(write);
    case Write::ACTUAL_ORIENTATION:
        return set_orientation(write);
    case Write::VIDEO_VIEW:
        return set_video_fov(write);
    case Write::SHORTCUT:
        return zvc_settings_set_onscreen_control(context, write.low(), numbers[0]);
    case Write::AUDIO:
        return set_audio(write, numbers[0]);
    case Write::FRONT_DISPLAY:
        return set_front_display(write);
    case Write::SCHEDULE:
        return set_scheduled_capture(write);
    case Write::EASY_SPEED:
        return set_easy_speed(write);
    case Write::LOAD_PRESET:
        return load_preset_of(write, static_cast<PresetGroup>(numbers[0]));
    }
    return ZV_ERR_INVALID_PARAM;
}
