#include "setting_writes.h"

#include "bytes.h"
#include "easy_mode.h"
#include "field.h"
#include "find_row.h"
#include "firmware_peer.h"
#include "flat_modes.h"
#include "message.h"
#include "own_fields.h"
#include "remote_commands.h"
#include "request.h"

#include <cstdint>

#include <zvctrl/camera_records.h>
#include <zvctrl/camera_schedule.h>
#include <zvctrl/camera_setting_ids.h>
#include <zvctrl/camera_settings.h>
#include <zvctrl/zvDbg.h>

namespace zv::sim {

namespace {

// Settings whose command is another than their row's, or that have none there.
struct SettingCommand {
    uint32_t setting;
    RemoteCommand command;
};
constexpr SettingCommand COMMANDS[] = {
    {SETTING_VIDEO_RESOLUTION, REMOTE_VIDEO_RES_SET},
    {SETTING_VIDEO_FPS, REMOTE_VIDEO_FPS_SET},
    {SETTING_CAPTURE_DELAY, REMOTE_APP_CAPTURE_DELAY_SET},
    {SETTING_VIDEO_FOV, REMOTE_VIDEO_FOV_SET},
    {SETTING_FORMAT, REMOTE_PRESET_FORMAT_SET},
    {SETTING_CURRENT_FLAT_MODE, REMOTE_PRESET_FLAT_MODE_SET},
    {SETTING_MAX_GLIDARA, REMOTE_VIDEO_EIS_SET},
    {SETTING_WIND_OPTION, REMOTE_AUDIO_AUDIO_OPTION_SET},
    {SETTING_MODE_BUTTON, REMOTE_VIDEO_MODE_BUTTON_SET},
    {SETTING_RUSHLAPSE_SPEED_RAMP, REMOTE_VIDEO_RUSHLAPSE_SPEED_RAMP_SET},
    {SETTING_DEFAULT_CAMERA_MODE, REMOTE_SETUP_DEFAULT_CAMERA_MODE_SET},
    {SETTING_WIDE_OPTIC_ENABLE, REMOTE_SYSTEM_LENS_TYPE_SET},
    {SETTING_SOUND_CAGE_AUDIO, REMOTE_AUDIO_MIC_OPTION_SET},
    {SETTING_HORIZON_LOCK, REMOTE_VIDEO_HORIZON_LOCK_SET},
    {SETTING_ACC_MIC_MODE, REMOTE_SETUP_ACC_MIC_MODE_SET},
    {SETTING_VELLIX_BITDEPTH, REMOTE_VIDEO_BIT_DEPTH_SET},
    {SETTING_WIRELESS_BAND, REMOTE_WIRELESS_BAND_SET},
    {SETTING_POWER_PROFILE, REMOTE_SYSTEM_POWER_PROFILE_SET},
    {SETTING_VIDEO_BIT_RATE, REMOTE_VIDEO_BIT_RATE_SET},
    {SETTING_VIDEO_BIT_DEPTH, REMOTE_VIDEO_BIT_DEPTH_SET},
    {SETTING_ADDON_LENS_ACTIVE, REMOTE_SYSTEM_LENS_TYPE_SET},
    {SETTING_ADDON_LENS_STATUS, REMOTE_SYSTEM_LENS_STATUS_SET},
    {SETTING_NLV_ASPECT_RATIO, REMOTE_VIDEO_ASPECT_RATIO_SET},
    {SETTING_EASY_FRAMING, REMOTE_VIDEO_ASPECT_RATIO_SET},
};

// Image controls, by the block of the present mode.
struct BlockCommand {
    uint32_t setting;
    RemoteCommand commands[3];
};
constexpr BlockCommand BLOCK_COMMANDS[] = {
    {SETTING_VELLIX, {REMOTE_VIDEO_VELLIX_SET, REMOTE_PHOTO_VELLIX_SET, REMOTE_MULTISHOT_VELLIX_SET}},
    {SETTING_VELLIX_WHITE_BALANCE,
     {REMOTE_VIDEO_WHITE_BALANCE_SET, REMOTE_PHOTO_WHITE_BALANCE_SET, REMOTE_MULTISHOT_WHITE_BALANCE_SET}},
    {SETTING_VELLIX_COLOR, {REMOTE_VIDEO_COLOR_SET, REMOTE_PHOTO_COLOR_SET, REMOTE_MULTISHOT_COLOR_SET}},
    {SETTING_VELLIX_SHARPNESS,
     {REMOTE_VIDEO_SHARPNESS_SET, REMOTE_PHOTO_SHARPNESS_SET, REMOTE_MULTISHOT_SHARPNESS_SET}},
    {SETTING_VELLIX_EV, {REMOTE_VIDEO_EV_SET, REMOTE_PHOTO_EV_SET, REMOTE_MULTISHOT_EV_SET}},
};

// Settings that choose among a group of presets.
struct PresetSetting {
    uint32_t setting;
    PresetGroup group;
};
constexpr PresetSetting PRESET_SETTINGS[] = {
    {SETTING_EASY_MODE_NIGHT_PHOTO, PRESETS_PHOTO},
    {SETTING_EASY_VIDEO_PRESET, PRESETS_VIDEO},
    {SETTING_EASY_TIME_LAPSE_PRESET, PRESETS_TIME_LAPSE},
    {SETTING_EASY_PHOTO_PRESET, PRESETS_PHOTO},
};

int32_t run(Camera &camera, RemoteCommand command, View payload)
{
    const Answer answer = run_remote_command(camera, command, payload);
    return answer.code == 0 && answer.error == 0 ? ZV_OK : ZV_ERR_INVALID_PARAM;
}

int32_t write_shortcut(Camera &camera, uint32_t setting, uint32_t value)
{
    const auto place = static_cast<uint8_t>(setting - SETTING_ONSCREEN_SHORTCUTS_1);
    return run(camera, REMOTE_PRESET_ONSCREEN_CONTROL_SET, Bytes{place, static_cast<uint8_t>(value)});
}

int32_t write_scheduled_capture(Camera &camera, uint32_t value)
{
    const camera_schedule_t schedule = camera_schedule_unpack(value);
    if (schedule.hour > 23 || schedule.minute > 59) {
        return ZV_ERR_INVALID_PARAM;
    }
    run(camera, REMOTE_APP_SCHEDULED_FORMAT_SET, Bytes{schedule.format});
    return run(camera, REMOTE_APP_SCHEDULED_CAPTURE_SET, Bytes{schedule.enabled, schedule.hour, schedule.minute});
}

int32_t write_easy_speed(Camera &camera, uint32_t value)
{
    const EasySpeed *row = find_easy_speed(value);
    if (row == nullptr) {
        return ZV_ERR_INVALID_PARAM;
    }
    camera.state().set(settings(SETTINGS_VIDEO_RESOLUTION), row->resolution);
    camera.state().set(settings(SETTINGS_VIDEO_FPS), row->speed == value ? row->fps : row->fps_50hz);
    return ZV_OK;
}

int32_t write_preset(Camera &camera, PresetGroup group, uint32_t value)
{
    const EasyPreset *row = find_easy_preset(group, value);
    if (row == nullptr || camera.capture().active()) {
        return ZV_ERR_INVALID_PARAM;
    }
    return camera.load_preset(row->preset) ? ZV_OK : ZV_ERR_INVALID_PARAM;
}

// Null for a setting that a camera of this model does not have.
const settings_id_entry_t *setting_row(const Camera &camera, uint32_t setting)
{
    uint32_t count = 0;
    const settings_id_entry_t *table = camera_settings_id_table(camera.state().model(), &count);
    const bool found = setting < count && table[setting].end_marker == 0 && table[setting].json_path[0] != '\0';
    return found ? &table[setting] : nullptr;
}

// The command that writes the option's value as it is.
RemoteCommand command_of(const Camera &camera, uint32_t setting, const settings_id_entry_t &row)
{
    const auto same = [=](const auto &other) { return other.setting == setting; };
    if (const BlockCommand *other = find_row(BLOCK_COMMANDS, same)) {
        return other->commands[camera.mode().block];
    }
    if (const SettingCommand *other = find_row(COMMANDS, same)) {
        return other->command;
    }
    return RemoteCommand{remote_command(static_cast<uint8_t>(row.group_id), static_cast<uint8_t>(row.action_id))};
}

// One byte where it fits, otherwise four, most significant first.
Bytes payload_of(uint32_t value)
{
    if (value <= UINT8_MAX) {
        return {static_cast<uint8_t>(value)};
    }
    Bytes payload(sizeof value);
    put_be32(payload.data(), value);
    return payload;
}

} // namespace

int32_t write_setting(Camera &camera, uint32_t setting, uint32_t value)
{
    if (setting == SETTING_AUDIO_VELLIX_ON) {
        camera.state().set(AUDIO_VELLIX_ON, value);
        return ZV_OK;
    }
    const settings_id_entry_t *row = setting_row(camera, setting);
    if (row == nullptr) {
        return ZV_ERR_INVALID_PARAM;
    }
    if (setting >= SETTING_ONSCREEN_SHORTCUTS_1 && setting <= SETTING_ONSCREEN_SHORTCUTS_4) {
        return write_shortcut(camera, setting, value);
    }
    if (setting == SETTING_SCHEDULED_CAPTURE) {
        return write_scheduled_capture(camera, value);
    }
    if (setting == SETTING_EASY_MODE_SPEED) {
        return write_easy_speed(camera, value);
    }
    if (const auto *choice = find_row(PRESET_SETTINGS, [=](const PresetSetting &p) { return p.setting == setting; })) {
        return write_preset(camera, choice->group, value);
    }
    return run(camera, command_of(camera, setting, *row), payload_of(value));
}

} // namespace zv::sim
