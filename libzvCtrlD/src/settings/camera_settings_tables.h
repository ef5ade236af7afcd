// The settings by id, as the library looks them up. Internal to the library.
#pragma once

#include "camera_settings.h"
#include "setting_row.h"

#include <array>

namespace zv {

// The two camera generations differ in the settings that they have.
constexpr bool is_sable_knoll(uint32_t model)
{
    return model == 58 || model == 62;
}

// The index and the id of the setting tables' end row; all rows of settings are before it.
inline constexpr uint32_t SETTINGS_END_ROW = SETTINGS_ALL_FIELDS_COUNT - 1;
inline constexpr uint32_t SETTINGS_END_ID = 0xFFFFFFFF;

using SettingsFields = std::array<settings_field_t, SETTINGS_ALL_FIELDS_COUNT>;
extern const SettingsFields settings_all_fields;
extern const SettingsFields settings_all_fields_sable_knoll;

// The row of a setting, which is the same in all tables that have it.
inline const settings_field_t &field_of(uint8_t setting)
{
    return settings_all_fields[setting];
}

// What is looked up by id, beside the public tables. A number without a setting is read and written plainly.
struct SettingInfo {
    ReadWay read;
    WriteWay write;
    Unlisted unlisted;
    bool bypasses; // a preset edit, in the default generation
    bool bypasses_sable_knoll;
};

using SettingInfos = std::array<SettingInfo, SETTINGS_END_ROW>;
extern const SettingInfos SETTING_INFOS;

inline const SettingInfo &info_of(uint32_t setting)
{
    constexpr uint32_t NO_SETTING = 0;
    return SETTING_INFOS[setting < SETTINGS_END_ROW ? setting : NO_SETTING];
}

} // namespace zv
