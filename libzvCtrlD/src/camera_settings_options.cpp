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

// ---- Value to id ----

// What a value reads as that stands in no table.
enum class Otherwise : uint8_t {
    ITSELF_UNKNOWN, // the setting has no options
    ITSELF,
    DEFAULT,
    BIT_RATE, // itself if it is a bit rate, else the default
};

// A value below `limit` reads as VALUE_IDS.ids[first + value].
struct ValueRow {
    uint16_t first;
    uint16_t limit;
    Otherwise otherwise;
    uint32_t default_id;
};

constexpr uint32_t lowest_unlisted(const SettingOptions &row)
{
    uint32_t limit = 0;
    for (const Option &option : row.options) {
        limit = std::max(limit, option.value + 1);
    }
    return row.setting == SETTING_STREAM_BIT_RATE ? 0 : limit;
}

constexpr size_t value_id_count()
{
    size_t count = 0;
    for (const SettingOptions &row : SETTING_OPTIONS) {
        count += lowest_unlisted(row);
    }
    return count;
}

constexpr uint32_t listed_id(const SettingOptions &row, uint32_t value)
{
    for (const Option &option : row.options) {
        if (option.value == value) {
            return option.id;
        }
    }
    return skips_option_check(row.setting, value) ? value : row.default_id;
}

constexpr Otherwise otherwise(const SettingOptions &row)
{
    if (row.setting == SETTING_STREAM_BIT_RATE) {
        return Otherwise::BIT_RATE;
    }
    return skips_option_check(row.setting, UINT32_MAX) ? Otherwise::ITSELF : Otherwise::DEFAULT;
}

struct ValueIds {
    std::array<ValueRow, SETTINGS_END_ROW> rows;
    std::array<uint16_t, value_id_count()> ids;
};

constexpr ValueIds make_value_ids()
{
    ValueIds table = {};
    uint16_t first = 0;
    for (const SettingOptions &row : SETTING_OPTIONS) {
        const auto limit = static_cast<uint16_t>(lowest_unlisted(row));
        table.rows[row.setting] = {first, limit, otherwise(row), row.default_id};
        for (uint32_t value = 0; value < limit; ++value) {
            const uint32_t id = listed_id(row, value);
            if (id > UINT16_MAX) {
                throw "an id of the direct table does not fit";
            }
            table.ids[first + value] = static_cast<uint16_t>(id);
        }
        first = static_cast<uint16_t>(first + limit);
    }
    return table;
}

constexpr ValueIds VALUE_IDS = make_value_ids();

constexpr auto BIT_RATES = [] {
    std::array<uint32_t, std::size(STREAM_BIT_RATE)> rates = {};
    std::transform(std::begin(STREAM_BIT_RATE), std::end(STREAM_BIT_RATE), rates.begin(),
                   [](const Option &option) { return option.value; });
    return rates;
}();

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

OptionId option_id_of_value(uint32_t setting, uint32_t value)
{
    if (setting >= VALUE_IDS.rows.size()) {
        return {false, value};
    }
    const ValueRow &row = VALUE_IDS.rows[setting];
    if (value < row.limit) {
        return {true, VALUE_IDS.ids[row.first + value]};
    }
    switch (row.otherwise) {
    case Otherwise::ITSELF_UNKNOWN:
        return {false, value};
    case Otherwise::ITSELF:
        return {true, value};
    case Otherwise::BIT_RATE:
        return {true, std::find(BIT_RATES.begin(), BIT_RATES.end(), value) != BIT_RATES.end() ? value : row.default_id};
    case Otherwise::DEFAULT:
        break;
    }
    return {true, row.default_id};
}

OptionLists make_option_lists()
{
    OptionLists lists;
    for (const OptionRange &range : OPTION_RANGES) {
        std::vector<option_t *> &list = lists[range.setting];
        list.reserve(range.count);
        for (size_t i = range.first; i < size_t{range.first} + range.count; ++i) {
            const Option &option = OPTIONS[i];
            list.push_back(new option_t(option.key, option.name, option.value, option.id));
        }
    }
    return lists;
}

OptionValues make_option_values()
{
    OptionValues values;
    for (const OptionRange &range : OPTION_RANGES) {
        for (size_t i = range.first; i < size_t{range.first} + range.count; ++i) {
            values[range.setting].emplace(OPTIONS[i].id, OPTIONS[i].value);
        }
    }
    return values;
}

} // namespace zv
