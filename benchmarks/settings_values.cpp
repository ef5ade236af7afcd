#include "settings_values.h"

namespace bench {

namespace {

constexpr uint32_t FLAT_MODES = 32;

OptionTable table_of(uint32_t setting, uint32_t flat_mode)
{
    OptionTable table = {};
    for (uint32_t value = 0; value < OptionTable::LISTED; ++value) {
        table.ids[value] = getOptionIdByValue(MODEL, setting, value, flat_mode);
    }
    constexpr uint32_t LARGE = 4000000; // a listed bit rate
    table.large = getOptionIdByValue(MODEL, setting, LARGE, flat_mode);
    table.large_is_itself = table.large == LARGE;
    return table;
}

SettingRow row_of(const settings_field_t &field)
{
    const zv::Read way = zv::info_of(field.id).read.way;
    SettingRow row = {field, way == zv::Read::PLAIN && field.size == 1, 0, {}};
    if (way == zv::Read::SHORTCUT) { // the slots share values, which the flat mode tells apart
        row.flat_modes = FLAT_MODES - 1;
    }
    for (uint32_t flat_mode = 0; flat_mode <= row.flat_modes; ++flat_mode) {
        row.tables.push_back(table_of(field.id, flat_mode));
    }
    return row;
}

} // namespace

const std::vector<SettingRow> &settings_rows()
{
    static const std::vector<SettingRow> rows = [] {
        std::vector<SettingRow> made;
        for (const settings_field_t &field : zv::settings_all_fields_sable_knoll) {
            if (field.id != 0 && field.id != zv::SETTINGS_END_ID) {
                made.push_back(row_of(field));
            }
        }
        return made;
    }();
    return rows;
}

} // namespace bench
