// From the firmware's values to the option ids, value by value: the library's look-up beside a direct table for each
// setting. A look-up is a call in both.
#include "measure.h"
#include "records.h"
#include "settings_values.h"

namespace {

using namespace bench;

// The firmware's values of one record, in the order of the settings.
struct Values {
    uint32_t flat_mode;
    std::vector<uint32_t> values;
};

std::vector<Values> values_of_records()
{
    std::vector<Values> all;
    for (const all_status_settings_t &record : records()) {
        Values &made = all.emplace_back(Values{flat_mode_of(record), {}});
        for (const SettingRow &row : settings_rows()) {
            made.values.push_back(setting_value(record, row));
        }
    }
    return all;
}

[[gnu::noinline]] uint32_t direct_id(uint32_t, uint32_t setting, uint32_t value, uint32_t flat_mode)
{
    static const auto rows = [] {
        std::array<const SettingRow *, zv::SETTINGS_END_ROW> by_id = {};
        for (const SettingRow &row : settings_rows()) {
            by_id[row.field.id] = &row;
        }
        return by_id;
    }();
    return rows[setting]->id(value, flat_mode);
}

using Convert = uint32_t (*)(uint32_t model, uint32_t setting, uint32_t value, uint32_t flat_mode);

void convert_values(benchmark::State &state, Convert convert)
{
    const std::vector<Values> all = values_of_records();
    const std::vector<SettingRow> &rows = settings_rows();
    size_t i = 0;
    measure(state, [&] {
        i = i + 1 < all.size() ? i + 1 : 0;
        uint32_t sum = 0;
        for (size_t k = 0; k < rows.size(); ++k) {
            sum += convert(MODEL, rows[k].field.id, all[i].values[k], all[i].flat_mode);
        }
        benchmark::DoNotOptimize(sum);
    });
}

BENCHMARK_CAPTURE(convert_values, library, getOptionIdByValue)->Name("option_ids/library");
BENCHMARK_CAPTURE(convert_values, direct, direct_id)->Name("option_ids/direct_tables");

} // namespace
