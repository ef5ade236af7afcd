#include "setting_writes.h"

#include "firmware_peer.h"
#include "own_fields.h"

#include <zvctrl/camera_settings.h>
#include <zvctrl/zvc_commands.h>

#include <algorithm>
#include <iterator>

namespace zv::sim {

namespace {

constexpr uint32_t RAW_AUDIO_TRACK_SETTING = 79; // has no row: the daemon writes it beside 139
constexpr uint32_t SHORTCUTS_FIRST = 129;
constexpr uint32_t SHORTCUTS_LAST = 132;
constexpr uint32_t SCHEDULED_CAPTURE = 168;
constexpr uint32_t EASY_SPEED = 176;

struct Command {
    uint8_t group;
    uint8_t action;
};

// Settings whose command is another than their row's, or that have none there.
struct SettingCommand {
    uint32_t setting;
    Command command;
};
constexpr SettingCommand COMMANDS[] = {
    {2, {REMOTE_GROUP_VIDEO, 95}},
    {3, {REMOTE_GROUP_VIDEO, 97}},
    {105, {REMOTE_GROUP_APP, 15}},
    {121, {REMOTE_GROUP_VIDEO, 96}},
    {128, {REMOTE_GROUP_PRESET, 19}},
    {144, {REMOTE_GROUP_PRESET, 23}},
    {148, {REMOTE_GROUP_VIDEO, 44}},
    {149, {REMOTE_GROUP_AUDIO, 3}},
    {153, {REMOTE_GROUP_VIDEO, 79}},
    {155, {REMOTE_GROUP_VIDEO, 81}},
    {161, {REMOTE_GROUP_SETUP, 11}},
    {162, {REMOTE_GROUP_SYSTEM, 38}},
    {164, {REMOTE_GROUP_AUDIO, 11}},
    {165, {REMOTE_GROUP_VIDEO, 77}},
    {169, {REMOTE_GROUP_SETUP, 56}},
    {174, {REMOTE_GROUP_VIDEO, 93}},
    {178, {6, 19}},
    {180, {REMOTE_GROUP_SYSTEM, 42}},
    {182, {REMOTE_GROUP_VIDEO, 68}},
    {183, {REMOTE_GROUP_VIDEO, 93}},
    {189, {REMOTE_GROUP_SYSTEM, 38}},
    {190, {REMOTE_GROUP_SYSTEM, 47}},
    {192, {REMOTE_GROUP_VIDEO, 53}},
    {193, {REMOTE_GROUP_VIDEO, 53}},
};

// Image controls, by the block of the present mode.
struct BlockCommand {
    uint32_t setting;
    Command commands[3];
};
constexpr BlockCommand BLOCK_COMMANDS[] = {
    {114, {{REMOTE_GROUP_VIDEO, 15}, {REMOTE_GROUP_PHOTO, 11}, {REMOTE_GROUP_MULTISHOT, 15}}},
    {115, {{REMOTE_GROUP_VIDEO, 17}, {REMOTE_GROUP_PHOTO, 13}, {REMOTE_GROUP_MULTISHOT, 17}}},
    {116, {{REMOTE_GROUP_VIDEO, 19}, {REMOTE_GROUP_PHOTO, 15}, {REMOTE_GROUP_MULTISHOT, 19}}},
    {117, {{REMOTE_GROUP_VIDEO, 21}, {REMOTE_GROUP_PHOTO, 17}, {REMOTE_GROUP_MULTISHOT, 21}}},
    {118, {{REMOTE_GROUP_VIDEO, 25}, {REMOTE_GROUP_PHOTO, 21}, {REMOTE_GROUP_MULTISHOT, 25}}},
};

struct SettingPreset {
    uint32_t setting;
    uint32_t value;
    uint32_t preset;
};
constexpr SettingPreset PRESETS[] = {
    {177, 0, 0xC0000},  {177, 1, 0xC0001},  {186, 0, 0xA0000},  {186, 1, 0xA0001}, {186, 2, 0xA0002},
    {187, 0, 0xD0000},  {187, 1, 0xD0001},  {187, 2, 0xD0002},  {187, 3, 0xD0003}, {187, 4, 0x180000},
    {187, 5, 0x180001}, {187, 6, 0x180002}, {187, 7, 0x180003}, {191, 0, 0xC0000}, {191, 1, 0xC0001},
};

// A speed of the easy mode is a resolution and a frame rate; it has a twin for mains of 50 Hz.
struct Speed {
    uint8_t speed;
    uint8_t speed_50hz;
    uint8_t resolution;
    uint8_t fps;
    uint8_t fps_50hz;
};
constexpr Speed SPEEDS[] = {
    {100, 104, 4, 0, 13}, {101, 105, 1, 1, 2},  {102, 106, 24, 5, 6}, {103, 107, 24, 8, 9}, {108, 112, 9, 0, 13},
    {109, 113, 9, 1, 2},  {110, 114, 9, 5, 6},  {111, 115, 9, 8, 9},  {116, 117, 1, 5, 6},  {118, 119, 29, 8, 9},
    {120, 121, 29, 5, 6}, {122, 123, 26, 8, 9}, {124, 125, 28, 5, 6}, {126, 127, 1, 8, 9},  {128, 129, 4, 8, 9},
    {130, 131, 4, 5, 6},  {132, 133, 30, 5, 6}, {134, 135, 30, 8, 9}, {136, 137, 28, 8, 9},
};

template <class Row, size_t Count, class Test>
const Row *find(const Row (&rows)[Count], Test test)
{
    const Row *row = std::find_if(std::begin(rows), std::end(rows), test);
    return row == std::end(rows) ? nullptr : row;
}

int32_t run(Camera &camera, Command command, View payload)
{
    const Answer answer = run_remote_command(camera, command.group, command.action, payload);
    return answer.code == 0 && answer.error == 0 ? ZV_OK : ZV_ERR_INVALID_PARAM;
}

int32_t write_scheduled_capture(Camera &camera, uint32_t value)
{
    const auto enabled = static_cast<uint8_t>(value & 1);
    const auto format = static_cast<uint8_t>(value >> 1 & 1);
    const auto minute = static_cast<uint8_t>(value >> 2 & 0x3F);
    const auto hour = static_cast<uint8_t>(value >> 8 & 0x1F);
    if (hour > 23 || minute > 59) {
        return ZV_ERR_INVALID_PARAM;
    }
    run(camera, {REMOTE_GROUP_APP, 19}, Bytes{format});
    return run(camera, {REMOTE_GROUP_APP, 17}, Bytes{enabled, hour, minute});
}

int32_t write_easy_speed(Camera &camera, uint32_t value)
{
    const Speed *speed = find(SPEEDS, [&](const Speed &s) { return s.speed == value || s.speed_50hz == value; });
    if (speed == nullptr) {
        return ZV_ERR_INVALID_PARAM;
    }
    camera.state().set(settings(SETTINGS_VIDEO_RESOLUTION), speed->resolution);
    camera.state().set(settings(SETTINGS_VIDEO_FPS), speed->speed == value ? speed->fps : speed->fps_50hz);
    return ZV_OK;
}

bool has_setting(const Camera &camera, uint32_t setting)
{
    uint32_t count = 0;
    const settings_id_entry_t *table = camera_settings_id_table(camera.state().model(), &count);
    return setting < count && table[setting].end_marker == 0 && table[setting].json_path[0] != '\0';
}

Command row_command(const Camera &camera, uint32_t setting)
{
    uint32_t count = 0;
    const settings_id_entry_t &row = camera_settings_id_table(camera.state().model(), &count)[setting];
    return {static_cast<uint8_t>(row.group_id), static_cast<uint8_t>(row.action_id)};
}

// One byte where it fits, otherwise four, most significant first.
Bytes payload_of(uint32_t value)
{
    if (value <= UINT8_MAX) {
        return {static_cast<uint8_t>(value)};
    }
    return {static_cast<uint8_t>(value >> 24), static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 8),
            static_cast<uint8_t>(value)};
}

} // namespace

int32_t write_setting(Camera &camera, uint32_t setting, uint32_t value)
{
    if (setting == RAW_AUDIO_TRACK_SETTING) {
        camera.state().set(RAW_AUDIO_TRACK, value);
        return ZV_OK;
    }
    if (!has_setting(camera, setting)) {
        return ZV_ERR_INVALID_PARAM;
    }
    if (setting >= SHORTCUTS_FIRST && setting <= SHORTCUTS_LAST) {
        const auto slot = static_cast<uint8_t>(setting - SHORTCUTS_FIRST);
        return run(camera, {REMOTE_GROUP_PRESET, 17}, Bytes{slot, static_cast<uint8_t>(value)});
    }
    if (setting == SCHEDULED_CAPTURE) {
        return write_scheduled_capture(camera, value);
    }
    if (setting == EASY_SPEED) {
        return write_easy_speed(camera, value);
    }
    if (const auto *row = find(PRESETS, [&](const auto &p) { return p.setting == setting && p.value == value; })) {
        return !camera.capture().active() && camera.load_preset(row->preset) ? ZV_OK : ZV_ERR_INVALID_PARAM;
    }
    if (const auto *row = find(BLOCK_COMMANDS, [&](const auto &b) { return b.setting == setting; })) {
        return run(camera, row->commands[static_cast<size_t>(camera.mode().block)], payload_of(value));
    }
    if (const auto *row = find(COMMANDS, [&](const auto &c) { return c.setting == setting; })) {
        return run(camera, row->command, payload_of(value));
    }
    return run(camera, row_command(camera, setting), payload_of(value));
}

} // namespace zv::sim
