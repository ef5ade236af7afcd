#include "camera_settings_values.h"

#include "bytes.h"
#include "camera_schedule.h"
#include "camera_settings_tables.h"
#include "easy_mode.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdio>

namespace {

using namespace zv;

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

// The lists of the image controls, in the order of their ids.
enum { ptGeneral, ptWhiteBalance, ptColor, ptSharpness, ptEV, REPORTED_LISTS };
static_assert(SETTING_VELLIX_EV - SETTING_VELLIX == ptEV);

ReportedModes reported_modes[REPORTED_LISTS];

// The shortcuts are read from the video block also in the broadcast, and know one mode more.
constexpr FlatModeSet VIDEO_SHORTCUT_MODES = VIDEO_MODES.with({FLAT_MODE_22});

// Modes without image controls, or without shortcuts, that are not worth a log line.
constexpr FlatModeSet SILENT_MODES{FLAT_MODE_BROADCAST};
constexpr FlatModeSet SHORTCUT_SILENT_MODES{FLAT_MODE_4, FLAT_MODE_9, FLAT_MODE_28};

// The camera whose third and fourth shortcuts are its first two.
constexpr uint32_t MODEL_WITH_TWO_SHORTCUTS = 51;

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
    return width == 4 ? static_cast<int32_t>(le32(bytes)) : *bytes;
}

int32_t block_value(const SettingsSource &source, const ReadWay &read)
{
    const uint32_t block = block_read_in(flat_mode_of(source));
    return block != NO_BLOCK ? source.settings[byte_offset(read, block)] : 0;
}

const char *path_of(uint32_t setting, uint32_t model)
{
    uint32_t count = 0;
    return camera_settings_id_table(model, &count)[setting].json_path;
}

int32_t image_control(const settings_field_t &field, const SettingsSource &source, const ReadWay &read)
{
    const uint8_t flat_mode = flat_mode_of(source);
    const uint32_t block = block_read_in(flat_mode);
    if (block != NO_BLOCK) {
        return source.settings[byte_offset(read, block)];
    }
    if (!SILENT_MODES.contains(flat_mode) && reported_modes[field.id - SETTING_VELLIX].add(flat_mode)) {
        ZV_LOG(ZV_LOG_DEBUG, "%s: Flat mode[%d] doesn't support %s", "get_field_value", flat_mode,
               path_of(field.id, source.model));
    }
    return plain_value(field, source);
}

int32_t shortcut_value(const settings_field_t &field, const SettingsSource &source, uint32_t slot)
{
    constexpr uint32_t OFFSETS[] = {SETTINGS_VIDEO_ONSCREEN_SHORTCUTS, SETTINGS_PHOTO_ONSCREEN_SHORTCUTS,
                                    SETTINGS_MULTI_SHOT_ONSCREEN_SHORTCUTS};
    const uint8_t flat_mode = flat_mode_of(source);
    const uint32_t block = VIDEO_SHORTCUT_MODES.contains(flat_mode) ? uint32_t{BLOCK_VIDEO} : block_read_in(flat_mode);
    if (block != NO_BLOCK) {
        return signed_setting(source, OFFSETS[block] + (source.model == MODEL_WITH_TWO_SHORTCUTS ? slot % 2 : slot));
    }
    if (!SHORTCUT_SILENT_MODES.contains(flat_mode)) {
        ZV_LOG(ZV_LOG_DEBUG, "%s: Flat mode[%d] doesn't support onscreen_control", "get_field_value", flat_mode);
    }
    return plain_value(field, source);
}

// As camera_if_settings_set_value_int takes it back. The firmware's format is added as it is, also where it is no flag.
int32_t scheduled_capture(const SettingsSource &source)
{
    const int32_t enabled = signed_status(source, STATUS_APP_SCHEDULED_ENABLED);
    if (enabled != 1) {
        return 0;
    }
    const uint8_t hour = source.status[STATUS_APP_SCHEDULED_HOUR];
    const uint8_t minute = source.status[STATUS_APP_SCHEDULED_MINUTE];
    const auto time = static_cast<int32_t>(camera_schedule_pack({0, 0, minute, hour}));
    return time + 2 * signed_status(source, STATUS_APP_SCHEDULED_FORMAT) + enabled;
}

// The speeds by resolution and frame rate; 0 for none.
constexpr auto SPEEDS = [] {
    constexpr size_t RESOLUTIONS = 31;
    constexpr size_t RATES = 14;
    std::array<std::array<uint8_t, RATES>, RESOLUTIONS> speeds = {};
    for (const EasySpeed &row : EASY_SPEEDS) {
        speeds[row.resolution][row.fps] = row.speed;
        speeds[row.resolution][row.fps_50hz] = row.speed_50hz;
    }
    return speeds;
}();

int32_t easy_speed(const SettingsSource &source)
{
    const uint8_t resolution = source.settings[SETTINGS_VIDEO_RESOLUTION];
    const uint8_t fps = source.settings[SETTINGS_VIDEO_FPS];
    if (resolution < SPEEDS.size() && fps < SPEEDS[0].size() && SPEEDS[resolution][fps] != 0) {
        return SPEEDS[resolution][fps];
    }
    const bool at_60hz = source.settings[SETTINGS_SETUP_VIDEO_FORMAT] == 0;
    return at_60hz ? EASY_SPEED_OTHERWISE.speed : EASY_SPEED_OTHERWISE.speed_50hz;
}

int32_t preset_value(const SettingsSource &source, uint32_t group, uint32_t offset)
{
    const EasyPreset *preset = find_preset(le32(source.status + offset));
    return preset != nullptr && preset->group == group ? preset->value : 0;
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
    if (field.size != 1) {
        return plain_value(field, source);
    }
    const ReadWay &read = info_of(field.id).read;
    const auto &numbers = read.numbers;
    switch (read.way) {
    case Read::PLAIN:
        break;
    case Read::REPLACED:
        return byte_value(read, static_cast<uint8_t>(plain_value(field, source)));
    case Read::BYTE:
    case Read::SIGNED:
    case Read::LOCKED_AS_ONE:
    case Read::MULTI_SHOT_OR:
        return byte_value(read, source.settings[byte_offset(read, block_read_in(flat_mode_of(source)))]);
    case Read::NUMBER:
        return static_cast<int32_t>(le32(source.settings + numbers[0]));
    case Read::STATUS:
        return signed_status(source, numbers[0]);
    case Read::OF_BLOCK:
        return block_value(source, read);
    case Read::OF_BLOCK_OR_PLAIN:
        return image_control(field, source, read);
    case Read::SHORTCUT:
        return shortcut_value(field, source, numbers[0]);
    case Read::SCHEDULE:
        return scheduled_capture(source);
    case Read::EASY_SPEED:
        return easy_speed(source);
    case Read::ACTIVE_PRESET:
        return preset_value(source, numbers[0], numbers[1]);
    }
    return plain_value(field, source);
}

} // namespace zv

int32_t get_field_value(const appc_setup_all_settings *settings, const settings_field_t *field, uint32_t model,
                        const appc_system_all_status *status, const zvcontrol_system_settings *)
{
    return zv::field_value(
        *field, {settings != nullptr ? settings->bytes : nullptr, status != nullptr ? status->bytes : nullptr, model});
}
