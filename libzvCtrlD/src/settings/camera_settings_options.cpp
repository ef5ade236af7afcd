#include "camera_settings_options.h"

#include "camera_settings_catalogue.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace zv {

namespace {

constexpr uint32_t SETTING_STREAM_BIT_RATE = 62;

constexpr bool well_formed(const SettingOptions &row)
{
    const auto &options = row.options;
    for (size_t i = 0; i < options.size(); ++i) {
        for (size_t j = 0; j < i; ++j) {
            if (options[i].id == options[j].id || std::string_view(options[i].key) == options[j].key) {
                return false;
            }
        }
    }
    return std::any_of(options.begin(), options.end(), [&](const Option &o) { return o.id == row.default_id; });
}

static_assert(std::size(SETTING_OPTIONS) == 89);
static_assert(std::all_of(std::begin(SETTING_OPTIONS), std::end(SETTING_OPTIONS), well_formed),
              "keys and ids are unique in a list, and the default is one of them");
static_assert(std::adjacent_find(std::begin(SETTING_OPTIONS), std::end(SETTING_OPTIONS),
                                 [](const auto &a, const auto &b) { return a.setting >= b.setting; }) ==
                  std::end(SETTING_OPTIONS),
              "the settings ascend");

// A setting's place in OPTIONS.
struct OptionRange {
    uint8_t setting;
    uint16_t first;
    uint16_t count;
};

constexpr auto OPTION_RANGES = [] {
    std::array<OptionRange, std::size(SETTING_OPTIONS)> ranges = {};
    uint16_t first = 0;
    std::transform(std::begin(SETTING_OPTIONS), std::end(SETTING_OPTIONS), ranges.begin(), [&](const auto &row) {
        const auto count = static_cast<uint16_t>(row.options.size());
        const OptionRange range = {static_cast<uint8_t>(row.setting), first, count};
        first = static_cast<uint16_t>(first + count);
        return range;
    });
    return ranges;
}();

static_assert(OPTION_RANGES.back().first + OPTION_RANGES.back().count == OPTION_COUNT);

std::span<const Option> options_of(const OptionRange &range)
{
    return std::span(OPTIONS).subspan(range.first, range.count);
}

// ---- Value to id ----

constexpr Reading reading_of(const SettingOptions &row)
{
    if (is_shortcut(row.setting)) {
        return Reading::SHORTCUT;
    }
    if (row.setting == SETTING_STREAM_BIT_RATE) {
        return Reading::RATE;
    }
    return skips_option_check(row.setting, UINT32_MAX) ? Reading::TABLE_OR_ITSELF : Reading::TABLE;
}

constexpr uint32_t table_end(const SettingOptions &row)
{
    uint32_t end = 0;
    for (const Option &option : row.options) {
        end = std::max(end, option.value + 1);
    }
    return end;
}

constexpr uint32_t id_of(const SettingOptions &row, uint32_t value)
{
    for (const Option &option : row.options) {
        if (option.value == value) {
            return option.id;
        }
    }
    return skips_option_check(row.setting, value) ? value : row.default_id;
}

constexpr auto VALUE_TABLES = [] {
    struct {
        std::array<ValueRow, SETTINGS_END_ROW> rows;
        std::array<uint16_t, VALUE_ID_COUNT> ids;
    } tables = {};
    size_t next = 0;
    for (const SettingOptions &row : SETTING_OPTIONS) {
        const Reading reading = reading_of(row);
        if (reading == Reading::RATE) {
            tables.rows[row.setting] = {0, 0, reading};
            continue;
        }
        const uint32_t end = table_end(row);
        tables.rows[row.setting] = {static_cast<uint16_t>(next), static_cast<uint16_t>(end), reading};
        for (uint32_t value = 0; value <= end; ++value) {
            const uint32_t id = id_of(row, value);
            if (id > UINT16_MAX) {
                throw "an id does not fit in the table";
            }
            tables.ids[next++] = static_cast<uint16_t>(id);
        }
    }
    if (next != VALUE_ID_COUNT) {
        throw "VALUE_ID_COUNT is another";
    }
    return tables;
}();

constexpr auto BIT_RATES = [] {
    std::array<uint32_t, std::size(STREAM_BIT_RATE)> rates = {};
    std::transform(std::begin(STREAM_BIT_RATE), std::end(STREAM_BIT_RATE), rates.begin(),
                   [](const Option &option) { return option.value; });
    return rates;
}();

constexpr uint32_t DEFAULT_BIT_RATE =
    std::find_if(std::begin(SETTING_OPTIONS), std::end(SETTING_OPTIONS), [](const SettingOptions &row) {
        return row.setting == SETTING_STREAM_BIT_RATE;
    })->default_id;

static_assert(std::all_of(std::begin(STREAM_BIT_RATE), std::end(STREAM_BIT_RATE),
                          [](const Option &option) { return option.id == option.value; }));

} // namespace

constinit const std::array<Option, OPTION_COUNT> OPTIONS = [] {
    std::array<Option, OPTION_COUNT> options = {};
    auto next = options.begin();
    for (const SettingOptions &row : SETTING_OPTIONS) {
        next = std::copy(row.options.begin(), row.options.end(), next);
    }
    return options;
}();

constinit const std::array<ValueRow, SETTINGS_END_ROW> VALUE_ROWS = VALUE_TABLES.rows;
constinit const std::array<uint16_t, VALUE_ID_COUNT> VALUE_IDS = VALUE_TABLES.ids;

uint32_t bit_rate_id(uint32_t value)
{
    bool known = false;
    for (const uint32_t rate : BIT_RATES) {
        known |= rate == value;
    }
    return known ? value : DEFAULT_BIT_RATE;
}

OptionLists make_option_lists()
{
    OptionLists lists;
    for (const OptionRange &range : OPTION_RANGES) {
        std::vector<option_t *> &list = lists[range.setting];
        list.reserve(range.count);
        for (const Option &option : options_of(range)) {
            list.push_back(new option_t(option.key, option.name, option.value, option.id));
        }
    }
    return lists;
}

OptionValues make_option_values()
{
    OptionValues values;
    for (const OptionRange &range : OPTION_RANGES) {
        std::map<uint32_t, uint32_t> &by_id = values[range.setting];
        for (const Option &option : options_of(range)) {
            by_id.emplace(option.id, option.value);
        }
    }
    return values;
}

} // namespace zv
