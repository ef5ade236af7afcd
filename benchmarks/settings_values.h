// How the peers read the settings: plain bytes from their place, other values by the library's rules, which depend on
// the flat mode; and the option ids from a direct table for each setting.
#pragma once

#include "camera_settings_tables.h"
#include "camera_settings_values.h"
#include "records.h"

#include <array>
#include <vector>

namespace bench {

// The option id of every value of a setting.
struct OptionTable {
    static constexpr uint32_t LISTED = 256;

    std::array<uint32_t, LISTED> ids;
    uint32_t large; // for a value above those
    bool large_is_itself;

    uint32_t id(uint32_t value) const { return value < LISTED ? ids[value] : large_is_itself ? value : large; }
};

struct SettingRow {
    settings_field_t field;
    bool is_byte;                    // its value is the byte at its place, whatever the flat mode is
    uint32_t flat_modes;             // a mask: the bits of the flat mode that choose a table
    std::vector<OptionTable> tables; // one, or one for each flat mode

    uint32_t id(uint32_t value, uint32_t flat_mode) const { return tables[flat_mode & flat_modes].id(value); }
};

// The settings that the camera has, in the order of the document.
const std::vector<SettingRow> &settings_rows();

inline uint32_t setting_value(const all_status_settings_t &record, const SettingRow &row)
{
    const uint8_t *settings = settings_of(record).bytes;
    if (row.is_byte) {
        return settings[row.field.offset];
    }
    return static_cast<uint32_t>(zv::field_value(row.field, {settings, status_of(record).bytes, MODEL}));
}

inline uint32_t flat_mode_of(const all_status_settings_t &record)
{
    return settings_of(record).bytes[SETTINGS_SETUP_CURRENT_FLAT_MODE];
}

// The option id of one setting.
inline uint32_t read_setting(const all_status_settings_t &record, const SettingRow &row)
{
    return row.id(setting_value(record, row), flat_mode_of(record));
}

} // namespace bench
