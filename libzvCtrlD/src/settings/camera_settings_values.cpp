#include "camera_settings_catalogue.h"

#include "bytes.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <iterator>

namespace {

using zv::FlatModes;
using zv::MULTI_SHOT_MODES;
using zv::PHOTO_MODES;
using zv::SettingsSource;

// Flat modes that a setting was already reported not to support: each is logged once in a process.
class ReportedModes {
  public:
    // Whether `mode` is new, and no longer is.
    bool add(uint8_t mode)
    {
        std::atomic<uint64_t> &word = m_words[mode / 64];
        const uint64_t bit = uint64_t{1} << mode % 64;
        return (word.load(std::memory_order_relaxed) & bit) == 0 &&
               (word.fetch_or(bit, std::memory_order_relaxed) & bit) == 0;
    }

  private:
    std::atomic<uint64_t> m_words[4] = {};
};

ReportedModes ptGeneral;
ReportedModes ptWhiteBalance;
ReportedModes ptColor;
ReportedModes ptSharpness;
ReportedModes ptEV;

// The flat modes that read the video block; the shortcuts know two more.
constexpr FlatModes VIDEO_MODES{12, 13, 14, 15, 24, 25, 27};
constexpr FlatModes SHORTCUT_VIDEO_MODES{12, 13, 14, 15, 22, 23, 24, 25, 27};

// Modes without vellix settings, or without shortcuts, that are not worth a log line.
constexpr FlatModes SILENT_MODES{23};
constexpr FlatModes SHORTCUT_SILENT_MODES{4, 9, 28};

// The camera whose third and fourth shortcuts are its first two.
constexpr uint32_t MODEL_WITH_TWO_SHORTCUTS = 51;

// The offset of the same field in each block.
struct BlockOffsets {
    uint32_t video;
    uint32_t photo;
    uint32_t multi_shot;
};

constexpr uint32_t NO_BLOCK = UINT32_MAX;

uint32_t offset_for(uint8_t flat_mode, const FlatModes &video_modes, const BlockOffsets &offsets)
{
    if (video_modes.contains(flat_mode)) {
        return offsets.video;
    }
    if (PHOTO_MODES.contains(flat_mode)) {
        return offsets.photo;
    }
    return MULTI_SHOT_MODES.contains(flat_mode) ? offsets.multi_shot : NO_BLOCK;
}

uint8_t flat_mode_of(const SettingsSource &source)
{
    return source.settings[SETTINGS_SETUP_CURRENT_FLAT_MODE];
}

int32_t signed_byte(uint8_t byte)
{
    return static_cast<int8_t>(byte);
}

int32_t signed_setting(const SettingsSource &source, uint32_t offset)
{
    return signed_byte(source.settings[offset]);
}

int32_t signed_status(const SettingsSource &source, uint32_t offset)
{
    return signed_byte(source.status[offset]);
}

// What the row itself says.
int32_t plain_value(const settings_field_t &field, const SettingsSource &source)
{
    constexpr uint32_t RECORD_SIZE = sizeof(appc_setup_all_settings::bytes);
    const auto offset = static_cast<uint32_t>(field.offset);
    const uint32_t width = field.size == 4 ? 4 : 1;
    if (offset > RECORD_SIZE - width) {
        return 0;
    }
    const uint8_t *bytes = source.settings + offset;
    return width == 4 ? static_cast<int32_t>(zv::le32(bytes)) : *bytes;
}

int32_t capture_delay(const SettingsSource &source)
{
    const uint32_t offset =
        offset_for(flat_mode_of(source), VIDEO_MODES,
                   {SETTINGS_VIDEO_CAPTURE_DELAY, SETTINGS_PHOTO_CAPTURE_DELAY, SETTINGS_MULTI_SHOT_CAPTURE_DELAY});
    return offset != NO_BLOCK ? source.settings[offset] : 0;
}

int32_t orientation(const SettingsSource &source)
{
    const int32_t value = signed_setting(source, SETTINGS_SETUP_ORIENTATION);
    return value >= 1 && value <= 4 ? 255 : value;
}

int32_t vellix(const SettingsSource &source, int32_t fallback, const BlockOffsets &offsets, ReportedModes &reported,
               const char *feature)
{
    const uint8_t flat_mode = flat_mode_of(source);
    const uint32_t offset = offset_for(flat_mode, VIDEO_MODES, offsets);
    if (offset != NO_BLOCK) {
        return source.settings[offset];
    }
    if (!SILENT_MODES.contains(flat_mode) && reported.add(flat_mode)) {
        ZV_LOG(ZV_LOG_DEBUG, "%s: Flat mode[%d] doesn't support %s", "get_field_value", flat_mode, feature);
    }
    return fallback;
}

int32_t shortcut(const SettingsSource &source, int32_t fallback, uint32_t slot)
{
    const uint8_t flat_mode = flat_mode_of(source);
    const uint32_t offset = offset_for(
        flat_mode, SHORTCUT_VIDEO_MODES,
        {SETTINGS_VIDEO_ONSCREEN_SHORTCUTS, SETTINGS_PHOTO_ONSCREEN_SHORTCUTS, SETTINGS_MULTI_SHOT_ONSCREEN_SHORTCUTS});
    if (offset != NO_BLOCK) {
        return signed_setting(source, offset + (source.model == MODEL_WITH_TWO_SHORTCUTS ? slot % 2 : slot));
    }
    if (!SHORTCUT_SILENT_MODES.contains(flat_mode)) {
        ZV_LOG(ZV_LOG_DEBUG, "%s: Flat mode[%d] doesn't support onscreen_control", "get_field_value", flat_mode);
    }
    return fallback;
}

// The time as camera_if_settings_set_value_int takes it back: hour in bits 8 to 12, minute in bits 2 to 7, then format
// and enabled.
int32_t scheduled_capture(const SettingsSource &source)
{
    const int32_t enabled = signed_status(source, STATUS_APP_SCHEDULED_ENABLED);
    if (enabled != 1) {
        return 0;
    }
    const int32_t hour = source.status[STATUS_APP_SCHEDULED_HOUR];
    const int32_t minute = source.status[STATUS_APP_SCHEDULED_MINUTE];
    return ((hour << 8 & 0x1F00) | (minute * 4 & 0xFF)) + 2 * signed_status(source, STATUS_APP_SCHEDULED_FORMAT) +
           enabled;
}

// The easy mode's speed by what the camera is set to: a resolution a row, a frame rate a column, 0 for none.
constexpr uint8_t SPEED_FPS[] = {8, 9, 5, 6, 1, 2, 0, 13};

struct SpeedRow {
    uint8_t resolution;
    uint8_t speeds[sizeof SPEED_FPS];
};

// clang-format off
constexpr SpeedRow SPEEDS[] = {
    {24, {103, 107, 102, 106}},
    { 1, {126, 127, 116, 117, 101, 105}},
    { 4, {128, 129, 130, 131,   0,   0, 100, 104}},
    { 9, {111, 115, 110, 114, 109, 113, 108, 112}},
    {26, {122, 123}},
    {28, {136, 137, 124, 125}},
    {29, {118, 119, 120, 121}},
    {30, {134, 135, 132, 133}},
};
// clang-format on

constexpr int32_t SPEED_OTHERWISE_60_HZ = 103;
constexpr int32_t SPEED_OTHERWISE_50_HZ = 107;

int32_t easy_mode_speed(const SettingsSource &source)
{
    const uint8_t resolution = source.settings[SETTINGS_VIDEO_RESOLUTION];
    const uint8_t fps = source.settings[SETTINGS_VIDEO_FPS];
    const auto row = std::find_if(std::begin(SPEEDS), std::end(SPEEDS),
                                  [=](const SpeedRow &candidate) { return candidate.resolution == resolution; });
    const auto column = std::find(std::begin(SPEED_FPS), std::end(SPEED_FPS), fps);
    if (row != std::end(SPEEDS) && column != std::end(SPEED_FPS)) {
        if (const uint8_t speed = row->speeds[column - SPEED_FPS]; speed != 0) {
            return speed;
        }
    }
    return source.settings[SETTINGS_SETUP_VIDEO_FORMAT] == 0 ? SPEED_OTHERWISE_60_HZ : SPEED_OTHERWISE_50_HZ;
}

// The easy presets, by the preset that is active.
int32_t easy_video_preset(const SettingsSource &source)
{
    switch (zv::le32(source.status + STATUS_APP_ACTIVE_VIDEO_PRESETS)) {
    case 0xA0001:
        return 1;
    case 0xA0002:
        return 2;
    default:
        return 0;
    }
}

int32_t easy_photo_preset(const SettingsSource &source)
{
    return zv::le32(source.status + STATUS_APP_ACTIVE_PHOTO_PRESETS) == 0xC0001 ? 1 : 0;
}

int32_t easy_timelapse_preset(const SettingsSource &source)
{
    switch (zv::le32(source.status + STATUS_APP_ACTIVE_TIMELAPSE_PRESETS)) {
    case 0xD0001:
        return 1;
    case 0xD0002:
        return 2;
    case 0xD0003:
        return 3;
    case 0x180000:
    case 0x150000:
        return 4;
    case 0x180001:
        return 5;
    case 0x180002:
        return 6;
    case 0x180003:
        return 7;
    default:
        return 0;
    }
}

int32_t aspect_ratio(const SettingsSource &source)
{
    const bool multi_shot = MULTI_SHOT_MODES.contains(flat_mode_of(source));
    return signed_setting(source, multi_shot ? SETTINGS_MULTI_SHOT_ASPECT_RATIO : SETTINGS_VIDEO_ASPECT_RATIO);
}

int32_t replaced(int32_t value, int32_t from, int32_t to)
{
    return value == from ? to : value;
}

} // namespace

namespace zv {

int32_t field_value(const settings_field_t &field, const SettingsSource &source)
{
    if (source.settings == nullptr) {
        fputs("settings ptr is NULL, cannot get setting values", stderr);
        return 0;
    }
    if (source.status == nullptr) {
        fputs("status ptr is NULL, cannot get status values", stderr);
        return 0;
    }
    const int32_t plain = plain_value(field, source);
    if (field.size != 1) {
        return plain;
    }
    switch (field.id) {
    case 2: // modes/video/settings/resolution
        return replaced(plain, 13, 17);
    case 105: // capture_delay
        return capture_delay(source);
    case 112: // modes/setup/settings/orientation
        return orientation(source);
    case 114: // vellix
        return vellix(source, plain, {SETTINGS_VIDEO_VELLIX, SETTINGS_PHOTO_VELLIX, SETTINGS_MULTI_SHOT_VELLIX},
                      ptGeneral, "vellix");
    case 115: // vellix_white_balance
        return vellix(source, plain,
                      {SETTINGS_VIDEO_VELLIX_WHITE_BALANCE, SETTINGS_PHOTO_VELLIX_WHITE_BALANCE,
                       SETTINGS_MULTI_SHOT_VELLIX_WHITE_BALANCE},
                      ptWhiteBalance, "vellix_white_balance");
    case 116: // vellix_color
        return vellix(source, plain,
                      {SETTINGS_VIDEO_VELLIX_COLOR, SETTINGS_PHOTO_VELLIX_COLOR, SETTINGS_MULTI_SHOT_VELLIX_COLOR},
                      ptColor, "vellix_color");
    case 117: // vellix_sharpness
        return vellix(
            source, plain,
            {SETTINGS_VIDEO_VELLIX_SHARPNESS, SETTINGS_PHOTO_VELLIX_SHARPNESS, SETTINGS_MULTI_SHOT_VELLIX_SHARPNESS},
            ptSharpness, "vellix_sharpness");
    case 118: // vellix_ev
        return vellix(source, plain,
                      {SETTINGS_VIDEO_VELLIX_EV, SETTINGS_PHOTO_VELLIX_EV, SETTINGS_MULTI_SHOT_VELLIX_EV}, ptEV,
                      "vellix_ev");
    case 128: // format
    case 144: // current_flat_mode
        return flat_mode_of(source);
    case 129: // onscreen_shortcuts_1
    case 130:
    case 131:
    case 132: // onscreen_shortcuts_4
        return shortcut(source, plain, field.id - 129);
    case 135: // modes/video/settings/eis: what holds now, not what was set
        return signed_status(source, STATUS_VIDEO_EIS);
    case 148: // max_glidara
        return signed_setting(source, SETTINGS_VIDEO_EIS_SETTING);
    case 149: // wind_option
        return replaced(signed_setting(source, SETTINGS_AUDIO_WIND_OPTION), 3, 2);
    case 153: // mode_button
        return signed_setting(source, SETTINGS_VIDEO_MODE_BUTTON);
    case 155: // rushlapse_speed_ramp
        return signed_setting(source, SETTINGS_VIDEO_RUSHLAPSE_SPEED_RAMP);
    case 161: // default_camera_mode
        return static_cast<int32_t>(le32(source.settings + SETTINGS_SETUP_DEFAULT_CAMERA_MODE));
    case 162: // wide_optic_enable
    case 189: // addon_lens_active
        return signed_status(source, STATUS_SYSTEM_CAMERA_LENS_TYPE);
    case 163: // modes/setup/settings/lens_dashboard_button
    case 190: // addon_lens_status
        return signed_setting(source, SETTINGS_SETUP_LENS_DASHBOARD_BUTTON);
    case 164: // sound_cage_audio
        return replaced(signed_setting(source, SETTINGS_AUDIO_SOUND_CAGE_AUDIO), 7, 1);
    case 165: // horizon_lock
        return signed_setting(source, SETTINGS_VIDEO_HORIZON_LOCK);
    case 168: // scheduled_capture
        return scheduled_capture(source);
    case 169: // acc_mic_mode
        return signed_setting(source, SETTINGS_SETUP_ACC_MIC_MODE);
    case 174: // vellix_bitdepth
        return signed_setting(source, SETTINGS_VIDEO_VELLIX_BITDEPTH);
    case 176: // easy_mode_speed
        return easy_mode_speed(source);
    case 177: // easy_mode_night_photo
    case 191: // easy_presets of photo
        return easy_photo_preset(source);
    case 178: // wireless_band
        return signed_status(source, STATUS_WIRELESS_WIRELESS_BAND);
    case 180: // power_profile
        return signed_status(source, STATUS_SYSTEM_POWER_PROFILE);
    case 182: // video_bit_rate
        return signed_setting(source, SETTINGS_SETUP_VIDEO_BIT_RATE);
    case 183: // video_bit_depth
        return signed_setting(source, SETTINGS_SETUP_VIDEO_BIT_DEPTH);
    case 186: // easy_presets of video
        return easy_video_preset(source);
    case 187: // easy_presets of time lapse
        return easy_timelapse_preset(source);
    case 192: // nlv_aspect_ratio
    case 193: // easy_framing
        return aspect_ratio(source);
    default:
        return plain;
    }
}

} // namespace zv

int32_t get_field_value(const appc_setup_all_settings *settings, const settings_field_t *field, uint32_t model,
                        const appc_system_all_status *status, const zvcontrol_system_settings *)
{
    return zv::field_value(
        *field, {settings != nullptr ? settings->bytes : nullptr, status != nullptr ? status->bytes : nullptr, model});
}
