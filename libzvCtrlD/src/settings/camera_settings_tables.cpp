#include "camera_settings_catalogue.h"

#include "camera_settings_options.h"
#include "zvc_commands.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>

namespace zv {

namespace {

enum Generations : uint8_t { DEFAULT, BOTH };

// A setting of the camera. One that belongs to no block of the record has a bare name and nothing else: it is written
// by a command of its own and its value is worked out.
struct Setting {
    uint8_t id;
    Generations generations;
    char path[44];
    int16_t action = -1;    // of a plain write, in the group of its block
    uint8_t write_size = 0; // payload bytes of a plain write
    uint8_t offset = 0;     // in appc_setup_all_settings
    uint8_t size = 1;       // bytes there
};

// clang-format off

constexpr Setting SETTINGS[] = {
    {  2, BOTH,    "modes/video/settings/resolution",              3, 1, SETTINGS_VIDEO_RESOLUTION},
    {  3, BOTH,    "modes/video/settings/fps",                     3, 1, SETTINGS_VIDEO_FPS},
    {  5, BOTH,    "modes/video/settings/timelapse_rate",         13, 1, SETTINGS_VIDEO_TIMELAPSE_RATE},
    {  6, BOTH,    "modes/video/settings/looping",                 7, 1, SETTINGS_VIDEO_LOOPING},
    { 13, BOTH,    "modes/video/settings/vellix_iso",             23, 1, SETTINGS_VIDEO_VELLIX_ISO},
    { 19, BOTH,    "modes/photo/settings/exposure_time",           9, 1, SETTINGS_PHOTO_EXPOSURE_TIME},
    { 24, BOTH,    "modes/photo/settings/vellix_iso",             19, 1, SETTINGS_PHOTO_VELLIX_ISO},
    { 30, BOTH,    "modes/multi_shot/settings/timelapse_rate",     7, 4, SETTINGS_MULTI_SHOT_TIMELAPSE_RATE},
    { 31, BOTH,    "modes/multi_shot/settings/exposure_time",     13, 1, SETTINGS_MULTI_SHOT_EXPOSURE_TIME},
    { 32, BOTH,    "modes/multi_shot/settings/nightlapse_rate",    9, 4, SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE},
    { 37, BOTH,    "modes/multi_shot/settings/vellix_iso",        23, 1, SETTINGS_MULTI_SHOT_VELLIX_ISO},
    { 41, BOTH,    "modes/broadcast/settings/resolution",          3, 1, SETTINGS_BROADCAST_RESOLUTION},
    { 42, BOTH,    "modes/broadcast/settings/fps",                 3, 1, SETTINGS_BROADCAST_FPS},
    { 43, BOTH,    "modes/broadcast/settings/fov",                 3, 1, SETTINGS_BROADCAST_FOV},
    { 44, BOTH,    "modes/broadcast/settings/record_resolution",   5, 1, SETTINGS_BROADCAST_RECORD_RESOLUTION},
    { 45, BOTH,    "modes/broadcast/settings/record_fps",          5, 1, SETTINGS_BROADCAST_RECORD_FPS},
    { 47, BOTH,    "modes/broadcast/settings/window_size",        23, 1, SETTINGS_BROADCAST_WINDOW_SIZE},
    { 54, BOTH,    "modes/setup/settings/quick_capture",          13, 1, SETTINGS_SETUP_QUICK_CAPTURE},
    { 59, BOTH,    "modes/setup/settings/auto_power_down",        23, 1, SETTINGS_SETUP_AUTO_POWER_DOWN},
    { 62, BOTH,    "modes/stream/settings/bit_rate",               7, 4, SETTINGS_STREAM_BIT_RATE, 4},
    { 64, BOTH,    "modes/stream/settings/window_size",            9, 1, SETTINGS_STREAM_WINDOW_SIZE},
    { 75, BOTH,    "modes/photo/settings/vellix_iso_min",         29, 1, SETTINGS_PHOTO_VELLIX_ISO_MIN},
    { 76, BOTH,    "modes/multi_shot/settings/vellix_iso_min",    34, 1, SETTINGS_MULTI_SHOT_VELLIX_ISO_MIN},
    { 83, DEFAULT, "modes/setup/settings/gps",                    52, 1, SETTINGS_SETUP_GPS},
    { 84, BOTH,    "modes/setup/settings/language",               32, 1, SETTINGS_SETUP_LANGUAGE},
    { 85, BOTH,    "modes/setup/settings/voice_control_language", 40, 1, SETTINGS_SETUP_VOICE_CONTROL_LANGUAGE},
    { 86, BOTH,    "modes/setup/settings/local_voice_control",    38, 1, SETTINGS_SETUP_LOCAL_VOICE_CONTROL},
    { 87, BOTH,    "modes/setup/settings/beep_volume",            17, 1, SETTINGS_SETUP_BEEP_VOLUME},
    { 88, BOTH,    "modes/setup/settings/lcd_brightness",          1, 1, SETTINGS_SETUP_LCD_BRIGHTNESS},
    { 91, BOTH,    "modes/setup/settings/led",                    15, 1, SETTINGS_SETUP_LED},
    {102, BOTH,    "modes/video/settings/vellix_iso_min",         48, 1, SETTINGS_VIDEO_VELLIX_ISO_MIN},
    {103, BOTH,    "modes/setup/settings/auto_screen_lock",       58, 1, SETTINGS_SETUP_AUTO_SCREEN_LOCK},
    {105, BOTH,    "capture_delay"},
    {108, BOTH,    "modes/video/settings/aspect_ratio",           53, 1, SETTINGS_VIDEO_ASPECT_RATIO},
    {111, BOTH,    "modes/video/settings/rushlapse_speed",        56, 1, SETTINGS_VIDEO_RUSHLAPSE_SPEED},
    {112, BOTH,    "modes/setup/settings/orientation",             9, 1, SETTINGS_SETUP_ORIENTATION},
    {114, BOTH,    "vellix"},
    {115, BOTH,    "vellix_white_balance"},
    {116, BOTH,    "vellix_color"},
    {117, BOTH,    "vellix_sharpness"},
    {118, BOTH,    "vellix_ev"},
    {121, BOTH,    "modes/video/settings/fov",                     3, 1, SETTINGS_VIDEO_FOV},
    {122, BOTH,    "modes/photo/settings/resolution",              3, 1, SETTINGS_PHOTO_RESOLUTION},
    {123, BOTH,    "modes/multi_shot/settings/resolution",         3, 1, SETTINGS_MULTI_SHOT_RESOLUTION},
    {124, DEFAULT, "modes/video/settings/bitrate",                68, 1, SETTINGS_VIDEO_BITRATE},
    {125, BOTH,    "modes/photo/settings/output",                 43, 1, SETTINGS_PHOTO_OUTPUT},
    {126, BOTH,    "modes/multi_shot/settings/output",            48, 1, SETTINGS_MULTI_SHOT_OUTPUT},
    {128, BOTH,    "format"},
    {129, BOTH,    "onscreen_shortcuts_1"},
    {130, BOTH,    "onscreen_shortcuts_2"},
    {131, BOTH,    "onscreen_shortcuts_3"},
    {132, BOTH,    "onscreen_shortcuts_4"},
    {134, BOTH,    "modes/setup/settings/video_format",           19, 1, SETTINGS_SETUP_VIDEO_FORMAT},
    {135, BOTH,    "modes/video/settings/eis",                    44, 1, SETTINGS_VIDEO_EIS_SETTING},
    {139, BOTH,    "modes/audio/settings/vellix_option",           5, 1, SETTINGS_AUDIO_VELLIX_OPTION},
    {144, BOTH,    "current_flat_mode"},
    {145, BOTH,    "modes/video/settings/exposure_time",          40, 1, SETTINGS_VIDEO_EXPOSURE_TIME},
    {146, BOTH,    "modes/photo/settings/vellix_exposure_time",   35, 1, SETTINGS_PHOTO_VELLIX_EXPOSURE_TIME},
    {147, BOTH,    "modes/multi_shot/settings/burst_rate",         5, 1, SETTINGS_MULTI_SHOT_BURST_RATE},
    {148, BOTH,    "max_glidara"},
    {149, BOTH,    "wind_option"},
    {153, BOTH,    "mode_button"},
    {154, BOTH,    "modes/setup/settings/front_lcd_display_mode", 66, 1, SETTINGS_SETUP_FRONT_LCD_DISPLAY_MODE},
    {155, DEFAULT, "rushlapse_speed_ramp"},
    {156, BOTH,    "modes/video/settings/short_clip_length",      51, 1, SETTINGS_VIDEO_SHORT_CLIP_LENGTH},
    {157, BOTH,    "modes/multi_shot/settings/short_clip_length", 50, 1, SETTINGS_MULTI_SHOT_SHORT_CLIP_LENGTH},
    {158, BOTH,    "modes/setup/settings/front_lcd_screen_saver", 68, 1, SETTINGS_SETUP_FRONT_LCD_SCREEN_SAVER},
    {159, BOTH,    "modes/setup/settings/lcd_sleep",               3, 1, SETTINGS_SETUP_LCD_SLEEP},
    {160, BOTH,    "modes/multi_shot/settings/bitrate",           68, 1, SETTINGS_MULTI_SHOT_BITRATE},
    {161, BOTH,    "default_camera_mode"},
    {162, DEFAULT, "wide_optic_enable"},
    {163, DEFAULT, "modes/setup/settings/lens_dashboard_button",  70, 1, SETTINGS_SETUP_LENS_DASHBOARD_BUTTON},
    {164, BOTH,    "sound_cage_audio"},
    {165, BOTH,    "horizon_lock"},
    {166, BOTH,    "modes/photo/settings/horizon_control",        45, 1, SETTINGS_PHOTO_HORIZON_CONTROL},
    {167, BOTH,    "modes/video/settings/retrocap_length",        85, 1, SETTINGS_VIDEO_RETROCAP_LENGTH},
    {168, BOTH,    "scheduled_capture"},
    {169, BOTH,    "acc_mic_mode"},
    {171, BOTH,    "modes/photo/settings/single_interval",        47, 1, SETTINGS_PHOTO_SINGLE_INTERVAL},
    {172, BOTH,    "modes/photo/settings/interval_duration",      49, 1, SETTINGS_PHOTO_INTERVAL_DURATION},
    {174, DEFAULT, "vellix_bitdepth"},
    {175, BOTH,    "modes/setup/settings/camera_ux_mode",         74, 1, SETTINGS_SETUP_CAMERA_UX_MODE},
    {176, BOTH,    "easy_mode_speed"},
    {177, DEFAULT, "easy_mode_night_photo"},
    {178, BOTH,    "wireless_band"},
    {179, BOTH,    "modes/multi_shot/settings/trail_length",      54, 1, SETTINGS_MULTI_SHOT_TRAIL_LENGTH},
    {180, DEFAULT, "power_profile"},
    {181, DEFAULT, "easy_mode_preset_pill"},
    {182, BOTH,    "video_bit_rate"},
    {183, BOTH,    "video_bit_depth"},
    {184, BOTH,    "modes/video/settings/profile",                98, 1, SETTINGS_VIDEO_PROFILE},
    {186, BOTH,    "easy_presets"},
    {187, BOTH,    "easy_presets"},
    {189, BOTH,    "addon_lens_active"},
    {190, BOTH,    "addon_lens_status"},
    {191, BOTH,    "easy_presets"},
    {192, BOTH,    "nlv_aspect_ratio"},
    {193, BOTH,    "easy_framing"},
};

// The blocks of the record and the remote API group of each.
constexpr struct { char path[20]; int32_t group; } BLOCKS[] = {
    {"modes/video/",      REMOTE_GROUP_VIDEO},
    {"modes/photo/",      REMOTE_GROUP_PHOTO},
    {"modes/multi_shot/", REMOTE_GROUP_MULTISHOT},
    {"modes/broadcast/",  REMOTE_GROUP_BROADCAST},
    {"modes/setup/",      REMOTE_GROUP_SETUP},
    {"modes/stream/",     REMOTE_GROUP_STREAM},
    {"modes/audio/",      REMOTE_GROUP_AUDIO},
};

// Settings of the camera as a whole: writing one opens no preset edit. Each generation bypasses those that it has.
constexpr uint8_t BYPASS_PRESET_EDIT_START[] = {
     47,  54,  59,  62,  64,  83,  84,  85,  86,  87,  88,  91, 103, 112, 134, 154,
    158, 159, 161, 162, 163, 169, 175, 177, 178, 180, 181, 182, 183, 189, 190,
};

// clang-format on

constexpr int32_t NO_GROUP = -1;

constexpr int32_t group_of(const Setting &setting)
{
    for (const auto &block : BLOCKS) {
        if (std::string_view(setting.path).starts_with(block.path)) {
            return block.group;
        }
    }
    return NO_GROUP;
}

constexpr bool has(bool sable_knoll, const Setting &setting)
{
    return !sable_knoll || setting.generations == BOTH;
}

constexpr bool has(bool sable_knoll, uint32_t id)
{
    return std::any_of(std::begin(SETTINGS), std::end(SETTINGS),
                       [=](const Setting &setting) { return setting.id == id && has(sable_knoll, setting); });
}

constexpr auto count_of(bool sable_knoll)
{
    return std::count_if(std::begin(SETTINGS), std::end(SETTINGS),
                         [=](const Setting &setting) { return has(sable_knoll, setting); });
}

constexpr auto bypass_count(bool sable_knoll)
{
    return std::count_if(std::begin(BYPASS_PRESET_EDIT_START), std::end(BYPASS_PRESET_EDIT_START),
                         [=](uint32_t id) { return has(sable_knoll, id); });
}

static_assert(count_of(false) == 98 && count_of(true) == 89);
static_assert(std::size(SETTING_OPTIONS) == count_of(true) &&
                  std::all_of(std::begin(SETTING_OPTIONS), std::end(SETTING_OPTIONS),
                              [](const SettingOptions &options) { return has(true, options.setting); }),
              "the settings of sable_knoll are those that have options");
static_assert(bypass_count(false) == 31 && bypass_count(true) == 25);
static_assert(std::adjacent_find(std::begin(SETTINGS), std::end(SETTINGS),
                                 [](const Setting &a, const Setting &b) { return a.id >= b.id; }) == std::end(SETTINGS),
              "the rows ascend, each id once");
static_assert(std::all_of(std::begin(SETTINGS), std::end(SETTINGS),
                          [](const Setting &setting) {
                              const bool plain = group_of(setting) != NO_GROUP;
                              return plain == (setting.action >= 0) && plain == (setting.write_size > 0) &&
                                     plain == (setting.offset > 0) && setting.id < SETTINGS_END_ROW &&
                                     setting.offset + setting.size <= sizeof(appc_setup_all_settings::bytes);
                          }),
              "a row is a plain one or a bare name, and lies in the record");

constexpr SettingsFields make_fields(bool sable_knoll)
{
    SettingsFields fields = {};
    for (const Setting &setting : SETTINGS) {
        if (has(sable_knoll, setting)) {
            fields[setting.id] = {setting.id, setting.offset, setting.size};
        }
    }
    fields[SETTINGS_END_ROW] = {SETTINGS_END_ID, -1, SETTINGS_END_ID};
    return fields;
}

template <size_t COUNT>
constexpr auto make_live_fields(const SettingsFields &fields)
{
    std::array<settings_field_t, COUNT> live = {};
    std::copy_if(fields.begin(), fields.end() - 1, live.begin(),
                 [](const settings_field_t &row) { return row.id != 0; });
    return live;
}

using SettingsIds = std::array<settings_id_entry_t, SETTINGS_ID_TABLE_COUNT>;

SettingsIds make_ids(bool sable_knoll)
{
    SettingsIds ids;
    ids.fill({0, "", -1, -1, 0, settings_empty_setter, nullptr});
    for (const Setting &setting : SETTINGS) {
        if (has(sable_knoll, setting)) {
            settings_id_entry_t &row = ids[setting.id];
            row.json_path = setting.path;
            row.group_id = group_of(setting);
            row.action_id = setting.action;
            row.value_size = setting.write_size;
        }
    }
    ids[SETTINGS_END_ROW].end_marker = -1;
    ids[SETTINGS_END_ROW].json_path = "-1";
    return ids;
}

} // namespace

constexpr SettingsFields settings_all_fields = make_fields(false);
constexpr SettingsFields settings_all_fields_sable_knoll = make_fields(true);

std::span<const settings_field_t> live_fields(uint32_t model)
{
    static constexpr auto live = make_live_fields<count_of(false)>(settings_all_fields);
    static constexpr auto live_sable_knoll = make_live_fields<count_of(true)>(settings_all_fields_sable_knoll);
    if (is_sable_knoll(model)) {
        return live_sable_knoll;
    }
    return live;
}

bool bypasses_preset_edit(uint32_t setting, bool sable_knoll)
{
    return std::binary_search(std::begin(BYPASS_PRESET_EDIT_START), std::end(BYPASS_PRESET_EDIT_START), setting) &&
           has(sable_knoll, setting);
}

} // namespace zv

const settings_id_entry_t *camera_settings_id_table(uint32_t model, uint32_t *count)
{
    if (count == nullptr) {
        return nullptr;
    }
    // Rows of addresses are made when first asked for: as constants, every start would pay for relocating them.
    if (zv::is_sable_knoll(model)) {
        static const zv::SettingsIds settings_id_table_sable_knoll = zv::make_ids(true);
        *count = SETTINGS_ID_TABLE_SABLE_KNOLL_COUNT;
        return settings_id_table_sable_knoll.data();
    }
    static const zv::SettingsIds settings_id_table = zv::make_ids(false);
    *count = SETTINGS_ID_TABLE_COUNT;
    return settings_id_table.data();
}

int32_t settings_empty_setter(int32_t, int32_t, int32_t, void *, int32_t)
{
    fprintf(stderr, "%s(%d)\n", __func__, __LINE__);
    return 0;
}
