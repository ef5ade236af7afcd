// How the peers read the settings: the firmware's values by the library's rules, which depend on the flat mode, and the
// option ids from a direct table for each setting.
#pragma once

#include "camera_settings_tables.h"
#include "camera_settings_values.h"
#include "records.h"

#include <array>
#include <vector>

namespace bench {

// The settings that the camera has, in the order of the document.
const std::vector<settings_field_t> &settings_rows();

inline uint32_t setting_value(const all_status_settings_t &record, const settings_field_t &row)
{
    return static_cast<uint32_t>(zv::field_value(row, {settings_of(record).bytes, status_of(record).bytes, MODEL}));
}

inline uint32_t flat_mode_of(const all_status_settings_t &record)
{
    return settings_of(record).bytes[SETTINGS_SETUP_CURRENT_FLAT_MODE];
}

// The option id of every value, per setting. A shortcut has one table for each flat mode.
class OptionTables {
  public:
    OptionTables();

    uint32_t id(uint32_t setting, uint32_t value, uint32_t flat_mode) const
    {
        const Table &table = zv::info_of(setting).read.way == zv::Read::SHORTCUT ? m_shortcuts[setting - 129][flat_mode]
                                                                                 : m_tables[setting];
        return value < LISTED ? table.ids[value] : table.large_is_itself ? value : table.large;
    }

  private:
    static constexpr uint32_t LISTED = 256;
    static constexpr uint32_t FLAT_MODES = 32;

    struct Table {
        std::array<uint32_t, LISTED> ids;
        uint32_t large; // for a value above those
        bool large_is_itself;
    };

    static Table make(uint32_t setting, uint32_t flat_mode);

    std::array<Table, zv::SETTINGS_END_ROW> m_tables;
    std::array<std::array<Table, FLAT_MODES>, 4> m_shortcuts;
};

const OptionTables &option_tables();

// The option id of one setting.
inline uint32_t read_setting(const all_status_settings_t &record, const settings_field_t &row)
{
    return option_tables().id(row.id, setting_value(record, row), flat_mode_of(record));
}

} // namespace bench
