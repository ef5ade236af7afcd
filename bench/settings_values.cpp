#include "settings_values.h"

namespace bench {

const std::vector<settings_field_t> &settings_rows()
{
    static const std::vector<settings_field_t> rows = [] {
        std::vector<settings_field_t> found;
        for (const settings_field_t &row : zv::settings_all_fields_sable_knoll) {
            if (row.id != 0 && row.id != zv::SETTINGS_END_ID) {
                found.push_back(row);
            }
        }
        return found;
    }();
    return rows;
}

OptionTables::Table OptionTables::make(uint32_t setting, uint32_t flat_mode)
{
    Table table = {};
    for (uint32_t value = 0; value < LISTED; ++value) {
        table.ids[value] = getOptionIdByValue(MODEL, setting, value, flat_mode);
    }
    constexpr uint32_t LARGE = 4000000; // a listed bit rate
    table.large = getOptionIdByValue(MODEL, setting, LARGE, flat_mode);
    table.large_is_itself = table.large == LARGE;
    return table;
}

OptionTables::OptionTables()
{
    for (const settings_field_t &row : settings_rows()) {
        m_tables[row.id] = make(row.id, 0);
    }
    for (uint32_t slot = 0; slot < m_shortcuts.size(); ++slot) {
        for (uint32_t flat_mode = 0; flat_mode < FLAT_MODES; ++flat_mode) {
            m_shortcuts[slot][flat_mode] = make(129 + slot, flat_mode);
        }
    }
}

const OptionTables &option_tables()
{
    static const OptionTables tables;
    return tables;
}

} // namespace bench
