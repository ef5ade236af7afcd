#include "camera_interface.h"

#include "bytes.h"
#include "camera_settings.h"
#include "remote_call.h"
#include "zvc_broadcast.h"
#include "zvc_multishot.h"
#include "zvc_photo.h"
#include "zvc_settings.h"
#include "zvc_video.h"

#include <algorithm>
#include <iterator>
#include <span>

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

// ---- Rules that are data ----

// Settings whose low byte goes to an action of its own, whatever the setting's row says.
struct ByteWrite {
    int32_t id;
    RemoteCommand command;
};

constexpr ByteWrite BYTE_WRITES[] = {
    {128, REMOTE_PRESET_FORMAT_SET},               // format
    {144, REMOTE_PRESET_FLAT_MODE_SET},            // current_flat_mode
    {148, REMOTE_VIDEO_EIS_SET},                   // max_glidara
    {153, REMOTE_VIDEO_MODE_BUTTON_SET},           // mode_button
    {155, REMOTE_VIDEO_RUSHLAPSE_SPEED_RAMP_SET},  // rushlapse_speed_ramp
    {160, REMOTE_VIDEO_BIT_RATE_SET},              // modes/multi_shot/settings/bitrate
    {161, REMOTE_SETUP_DEFAULT_CAMERA_MODE_SET},   // default_camera_mode
    {162, REMOTE_SYSTEM_LENS_TYPE_SET},            // wide_optic_enable
    {163, REMOTE_SETUP_LENS_DASHBOARD_BUTTON_SET}, // modes/setup/settings/lens_dashboard_button
    {165, REMOTE_VIDEO_HORIZON_LOCK_SET},          // horizon_lock
    {169, REMOTE_SETUP_ACC_MIC_MODE_SET},          // acc_mic_mode
    {174, REMOTE_VIDEO_BIT_DEPTH_SET},             // vellix_bitdepth
    {175, REMOTE_SETUP_CAMERA_UX_MODE_SET},        // modes/setup/settings/camera_ux_mode
    {178, REMOTE_WIRELESS_BAND_SET},               // wireless_band
    {180, REMOTE_SYSTEM_POWER_PROFILE_SET},        // power_profile
    {189, REMOTE_SYSTEM_LENS_TYPE_SET},            // addon_lens_active
    {192, REMOTE_VIDEO_ASPECT_RATIO_SET},          // nlv_aspect_ratio
    {193, REMOTE_VIDEO_ASPECT_RATIO_SET},          // easy_framing
};
static_assert(std::adjacent_find(std::begin(BYTE_WRITES), std::end(BYTE_WRITES),
                                 [](const ByteWrite &row, const ByteWrite &next) { return row.id >= next.id; }) ==
              std::end(BYTE_WRITES));

// Image controls that each family of flat modes has an action of its own for.
struct VellixRow {
    int32_t id;
    uint8_t video_action;
    uint8_t photo_action;
    uint8_t multi_shot_action;
    const char *no_settings;
    const char *no_family; // function, line, flat mode
};

constexpr char NO_VELLIX[] = "%s(%d): Flat mode[%d] doesn't support vellix_set\n";
constexpr char NO_SHARPNESS[] = "%s(%d): Flat mode[%d] doesn't support vellix_sharpness\n";
constexpr char NO_EV[] = "%s(%d): Flat mode[%d] doesn't support vellix_ev\n";

constexpr VellixRow VELLIX_ROWS[] = {
    {114, 15, 11, 15, "Settings info is NULL, can't set vellix", NO_VELLIX},
    {115, 17, 13, 17, "Settings info is NULL, can't set vellix white balance", NO_VELLIX},
    {116, 19, 15, 19, "Settings info is NULL, can't set vellix color", NO_VELLIX},
    {117, 21, 17, 21, "Settings info is NULL, can't set vellix sharpness", NO_SHARPNESS},
    {118, 25, 21, 25, "Settings info is NULL, can't set vellix ev", NO_EV},
};

// The preset of each value of a setting. Another value takes the first one, after the message where there is one.
constexpr uint32_t EASY_VIDEO_PRESETS[] = {0xa0000, 0xa0001, 0xa0002};
constexpr uint32_t EASY_PHOTO_PRESETS[] = {0xc0000, 0xc0001};
constexpr uint32_t EASY_MULTI_SHOT_PRESETS[] = {0xd0000,  0xd0001,  0xd0002,  0xd0003,
                                                0x180000, 0x180001, 0x180002, 0x180003};

constexpr char NO_VIDEO_PRESET[] = "Unknown option id:%d given for Video Easy Presets. Defaulting to Easy Video";
constexpr char NO_MULTI_SHOT_PRESET[] = "Unknown value:%d given for Multi-Shot Easy Presets, returing Easy RushLapse";

// The format of each easy speed; the frame rate follows the mains frequency.
struct EasySpeed {
    uint8_t speed;
    uint8_t speed_50hz_form; // the same speed, as the 50 Hz menu numbers it
    uint8_t res;
    uint8_t fps_60hz;
    uint8_t fps_50hz;
};

constexpr EasySpeed EASY_SPEEDS[] = {
    {100, 104, 4, 0, 13}, // 8X_ULTRA_SLO_MO_V2
    {101, 105, 1, 1, 2},  // 4X_SUPER_SLO_MO_V2
    {102, 106, 24, 5, 6}, // 2X_SLO_MO_V2
    {103, 107, 24, 8, 9}, // 1X_SPEED_LOW_LIGHT_V2
    {108, 112, 9, 0, 13}, // LB_8X_ULTRA_SLO_MO_V2
    {109, 113, 9, 1, 2},  // LB_4X_SUPER_SLO_MO_V2
    {110, 114, 9, 5, 6},  // LB_2X_SLO_MO_V2
    {111, 115, 9, 8, 9},  // LB_1X_SPEED_LOW_LIGHT_V2
    {116, 117, 1, 5, 6},  // 2X_SLO_MO_4K_V2
    {118, 119, 29, 8, 9}, // MOBILE_1X_SPEED_LOW_LIGHT_V2
    {120, 121, 29, 5, 6}, // MOBILE_2X_SLO_MO_V2
    {122, 123, 26, 8, 9}, // UNIVERSAL_1X_SPEED_LOW_LIGHT_V2
    {124, 125, 28, 5, 6}, // UNIVERSAL_2X_SLO_MO_V2
    {126, 127, 1, 8, 9},  // 1X_SPEED_LOW_LIGHT_4K_V2
    {128, 129, 4, 8, 9},  // 1X_SPEED_LOW_LIGHT_2_7K_V2
    {130, 131, 4, 5, 6},  // 2X_SLO_MO_2_7K_V2
    {132, 133, 30, 5, 6}, // MOBILE_LB_2X_SLO_MO_V2
    {134, 135, 30, 8, 9}, // MOBILE_LB_1X_SPEED_LOW_LIGHT_V2
    {136, 137, 28, 8, 9}, // UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_V2
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

template <class Row, size_t COUNT, class Key>
const Row *find_row(const Row (&rows)[COUNT], Key Row::*key, int32_t wanted)
{
    for (const Row &row : rows) {
        if (row.*key == wanted) {
            return &row;
        }
    }
    return nullptr;
}

// ---- Steps ----

int32_t refuse_without_record(const SettingWrite &write, const char *record)
{
    ZV_LOG(ZV_LOG_ERROR, "%s info is NULL, can't set setting %d", record, write.id);
    return ZV_ERR_INVALID_PARAM;
}

int32_t send_byte(const SettingWrite &write, RemoteCommand command, uint8_t value)
{
    return camera_if_settings_set_value(write.context, group_of(command), action_of(command), &value, sizeof value);
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

int32_t set_vellix(const SettingWrite &write, const VellixRow &row)
{
    if (write.settings == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "%s", row.no_settings);
        return ZV_ERR;
    }
    const uint8_t flat_mode = write.settings->bytes[SETTINGS_SETUP_CURRENT_FLAT_MODE];
    if (usesVideoSettings(flat_mode)) {
        return send_byte(write, RemoteCommand{remote_command(REMOTE_GROUP_VIDEO, row.video_action)}, write.low());
    }
    if (usesPhotoSettings(flat_mode)) {
        return send_byte(write, RemoteCommand{remote_command(REMOTE_GROUP_PHOTO, row.photo_action)}, write.low());
    }
    if (usesMultiShotSettings(flat_mode)) {
        return send_byte(write, RemoteCommand{remote_command(REMOTE_GROUP_MULTISHOT, row.multi_shot_action)},
                         write.low());
    }
    ZV_LOG(ZV_LOG_ERROR, row.no_family, DISPATCHER, __LINE__, static_cast<int8_t>(flat_mode));
    return ZV_ERR;
}

// A fixed ISO limit and the Auto value go with an ISO mode in the flat modes that have one. The limit's failure is only
// logged: the mode, written last, decides.
int32_t set_video_iso(const SettingWrite &write, int32_t (*set_limit)(zvc_msg_q_context_t *, int32_t),
                      const char *failure)
{
    constexpr uint32_t ISO_AUTO = 9;
    if (write.settings == nullptr) {
        return refuse_without_record(write, "Settings");
    }
    const int32_t flat_mode = write.setting(SETTINGS_SETUP_CURRENT_FLAT_MODE);
    if (flat_mode != 12 && flat_mode != 15 && flat_mode != 23) {
        return set_limit(write.context, write.signed_value());
    }
    if (write.value == ISO_AUTO) {
        return zvc_video_vellix_iso_mode_set(write.context, 0);
    }
    if (set_limit(write.context, write.signed_value()) != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "%s", failure);
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
    constexpr uint8_t AS_IT_IS_HELD = 255;
    constexpr uint8_t BY_ACTUAL_ORIENTATION[] = {1, 2, 4, 3};
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
    constexpr int32_t UX_MODE_EASY = 0;
    constexpr int32_t FLAT_MODE_VIDEO = 12;
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
    if (preset == EASY_VIDEO_PRESETS[0]) {
        easy_5_3k_video_get_res(&res, fps, write.value, aspect_ratio);
    } else if (preset == EASY_VIDEO_PRESETS[1]) {
        easy_4k_video_get_res(&res, fps, write.value, aspect_ratio);
    } else if (preset == EASY_VIDEO_PRESETS[2]) {
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
    const auto enabled = static_cast<uint8_t>(write.value & 1);
    const auto format = static_cast<uint8_t>(write.value >> 1 & 1);
    const auto minute = static_cast<uint8_t>(write.value >> 2 & 0x3F);
    const auto hour = static_cast<uint8_t>(write.value >> 8 & 0x1F);
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
    return camera_if_settings_set_value(write.context, group_of(REMOTE_APP_SCHEDULED_CAPTURE_SET),
                                        action_of(REMOTE_APP_SCHEDULED_CAPTURE_SET), schedule, sizeof schedule);
}

// Unlike the values of the plain writes a preset id goes out least significant byte first.
int32_t load_preset(const SettingWrite &write, std::span<const uint32_t> presets, const char *unknown)
{
    uint32_t preset = presets.front();
    if (write.low() < presets.size()) {
        preset = presets[write.low()];
    } else if (unknown != nullptr) {
        ZV_LOG(ZV_LOG_ERROR, unknown, write.low());
    }
    uint8_t payload[sizeof preset];
    put_le32(payload, preset);
    return camera_if_settings_set_value(write.context, group_of(REMOTE_PRESET_LOAD), action_of(REMOTE_PRESET_LOAD),
                                        payload, sizeof payload);
}

const EasySpeed *find_easy_speed(uint8_t speed)
{
    const EasySpeed *row = find_row(EASY_SPEEDS, &EasySpeed::speed, speed);
    return row != nullptr ? row : find_row(EASY_SPEEDS, &EasySpeed::speed_50hz_form, speed);
}

int32_t set_easy_speed(const SettingWrite &write)
{
    if (write.settings == nullptr) {
        return refuse_without_record(write, "Settings");
    }
    uint8_t speed = write.low();
    int32_t fov = write.setting(SETTINGS_VIDEO_FOV);
    if (fov == FOV_LINEAR_PLUS_HORIZON_LEVELING || fov == FOV_LINEAR_PLUS_HORIZON_LOCK) {
        const HorizonSpeed *horizon = find_row(HORIZON_SPEEDS, &HorizonSpeed::speed, speed);
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
    const uint8_t fps = write.setting(SETTINGS_SETUP_VIDEO_FORMAT) == 0 ? row->fps_60hz : row->fps_50hz;
    return zvc_video_set_easy_res_fps_fov(write.context, row->res, fps, static_cast<uint32_t>(fov));
}

// The camera offers neither setting while the sound cage's microphone has this status.
int32_t set_audio(const SettingWrite &write, int32_t (*set_option)(zvc_msg_q_context_t *, uint8_t))
{
    constexpr int32_t NO_AUDIO_SETTINGS = 3;
    if (write.status == nullptr) {
        return refuse_without_record(write, "Status");
    }
    if (write.state(STATUS_SYSTEM_SOUND_CAGE_MIC_STATUS) == NO_AUDIO_SETTINGS) {
        ZV_LOG(ZV_LOG_ERROR, "Setting %d can't be set in sound cage mic status %d", write.id, NO_AUDIO_SETTINGS);
        return ZV_ERR_INVALID_PARAM;
    }
    return set_option(write.context, write.low());
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
    const uint8_t low = write.low();
    const int32_t whole = write.signed_value();

    if (const ByteWrite *row = find_row(BYTE_WRITES, &ByteWrite::id, setting_id); row != nullptr) {
        return send_byte(write, row->command, low);
    }
    if (const VellixRow *row = find_row(VELLIX_ROWS, &VellixRow::id, setting_id); row != nullptr) {
        return set_vellix(write, *row);
    }
    switch (setting_id) {
    case 2: // modes/video/settings/resolution
        return zvc_video_set_res(context, low);
    case 3: // modes/video/settings/fps
        return zvc_video_set_fps(context, low);
    case 13: // modes/video/settings/vellix_iso
        return set_video_iso(write, zvc_video_vellix_iso_set, "Failed to set iso_max");
    case 19: // modes/photo/settings/exposure_time
        return set_plain(write, fit_to_photo_exposure);
    case 24: // modes/photo/settings/vellix_iso
        return zvc_photo_vellix_iso_set(context, whole);
    case 30: // modes/multi_shot/settings/timelapse_rate
        return zvc_multishot_timelapse_rate_set(context, whole);
    case 31: // modes/multi_shot/settings/exposure_time
        return set_plain(write, fit_to_multi_shot_exposure);
    case 32: // modes/multi_shot/settings/nightlapse_rate
        return zvc_multishot_nightlapse_rate_set(context, whole);
    case 37: // modes/multi_shot/settings/vellix_iso
        return zvc_multishot_vellix_iso_set(context, whole);
    case 43: // modes/broadcast/settings/fov
        return set_broadcast_fov(write);
    case 75: // modes/photo/settings/vellix_iso_min
        return zvc_photo_vellix_iso_min_set(context, whole);
    case 76: // modes/multi_shot/settings/vellix_iso_min
        return zvc_multishot_vellix_iso_min_set(context, whole);
    case 102: // modes/video/settings/vellix_iso_min
        return set_video_iso(write, zvc_video_vellix_iso_min_set, "Failed to set iso_min");
    case 105: // capture_delay
        return zvc_app_set_capture_delay(context, whole);
    case 112: // orientation
        return set_orientation(write);
    case 121: // fov
        return set_video_fov(write);
    case 129: // onscreen_shortcuts_1 to 4
    case 130:
    case 131:
    case 132:
        return zvc_settings_set_onscreen_control(context, low, setting_id - 129);
    case 149: // wind_option
        return set_audio(write, zvc_audio_set_audio_option);
    case 154: // front_lcd_display_mode
        return set_front_display(write);
    case 164: // sound_cage_audio
        return set_audio(write, zvc_audio_set_mic_option);
    case 168: // scheduled_capture
        return set_scheduled_capture(write);
    case 176: // easy_mode_speed
        return set_easy_speed(write);
    case 182: // video_bit_rate
        return zvc_video_set_video_bit_rate(context, value);
    case 183: // video_bit_depth
        return zvc_video_set_video_bit_depth(context, value);
    case 177: // easy_mode_night_photo
    case 191: // easy_presets, photo
        return load_preset(write, EASY_PHOTO_PRESETS, nullptr);
    case 186: // easy_presets, video
        return load_preset(write, EASY_VIDEO_PRESETS, NO_VIDEO_PRESET);
    case 187: // easy_presets, multi-shot
        return load_preset(write, EASY_MULTI_SHOT_PRESETS, NO_MULTI_SHOT_PRESET);
    case 190: // addon_lens_status
        return zvc_system_set_lens_status(context, static_cast<int8_t>(low));
    default:
        return set_plain(write);
    }
}
