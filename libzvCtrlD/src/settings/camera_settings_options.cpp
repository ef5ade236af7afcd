#include "camera_settings_options.h"

#include "camera_settings_values.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

namespace zv {

namespace {

// ---- The lists ----

constexpr bool has_sound_options(const Setting &setting)
{
    const auto &options = setting.options;
    for (size_t i = 0; i < options.size(); ++i) {
        for (size_t j = 0; j < i; ++j) {
            if (options[i].id == options[j].id || std::string_view(options[i].key) == options[j].key) {
                return false;
            }
        }
    }
    return options.empty() || std::any_of(options.begin(), options.end(),
                                          [&](const Option &option) { return option.id == setting.default_id; });
}

static_assert(std::all_of(std::begin(SETTINGS), std::end(SETTINGS), has_sound_options),
              "keys and ids are unique in a list, and the default is one of them");

// A setting's place in OPTIONS, by setting id. A number without options has none.
struct OptionRange {
    uint16_t first;
    uint16_t count;
};

constexpr auto OPTION_RANGES = [] {
    std::array<OptionRange, SETTINGS_END_ROW> ranges = {};
    uint16_t first = 0;
    for (const Setting &setting : SETTINGS) {
        const auto count = static_cast<uint16_t>(setting.options.size());
        ranges[setting.id] = {first, count};
        first = static_cast<uint16_t>(first + count);
    }
    return ranges;
}();

std::span<const Option> options_of(uint32_t setting)
{
    if (setting >= OPTION_RANGES.size()) {
        return {};
    }
    const OptionRange &range = OPTION_RANGES[setting];
    return std::span(OPTIONS).subspan(range.first, range.count);
}

// ---- Value to id ----

constexpr uint32_t id_of(const Setting &setting, uint32_t value)
{
    for (const Option &option : setting.options) {
        if (option.value == value) {
            return option.id;
        }
    }
    return is_good_unlisted(setting.unlisted, value) ? value : setting.default_id;
}

constexpr auto VALUE_TABLES = [] {
    struct {
        std::array<ValueRow, SETTINGS_END_ROW> rows;
        std::array<uint16_t, VALUE_ID_COUNT> ids;
    } tables = {};
    size_t next = 0;
    for (const Setting &setting : SETTINGS) {
        ValueRow &row = tables.rows[setting.id];
        row.reading = reading_of(setting);
        if (!has_table(setting)) {
            continue;
        }
        const uint32_t end = table_end(setting);
        row.first = static_cast<uint16_t>(next);
        row.end = static_cast<uint16_t>(end);
        for (uint32_t value = 0; value <= end; ++value) {
            const uint32_t id = id_of(setting, value);
            if (id > UINT16_MAX) {
                throw "an id does not fit in the table";
            }
            tables.ids[next++] = static_cast<uint16_t>(id);
        }
    }
    return tables;
}();

// ---- Documents ----

constexpr Readout readout_of(const Setting &setting)
{
    if ((reading_of(setting) != Reading::TABLE && reading_of(setting) != Reading::TABLE_OR_ITSELF) ||
        setting.place.read_size != 1) {
        return Readout::OTHER;
    }
    switch (setting.read.way) {
    case Read::PLAIN:
    case Read::REPLACED:
    case Read::BYTE:
    case Read::SIGNED:
    case Read::LOCKED_AS_ONE:
        return Readout::BYTE;
    case Read::OF_BLOCK:
    case Read::OF_BLOCK_OR_PLAIN:
    case Read::MULTI_SHOT_OR:
        return Readout::BYTE_OF_BLOCK;
    default:
        return Readout::OTHER;
    }
}

constexpr uint8_t byte_offset(const Setting &setting, uint32_t block)
{
    const bool is_in_place = setting.read.way == Read::PLAIN || setting.read.way == Read::REPLACED;
    return is_in_place ? setting.place.offset : static_cast<uint8_t>(byte_offset(setting.read, block));
}

// What each byte of a setting reads as, and the smallest one from which on all read as one id.
struct ByteIds {
    std::array<uint16_t, 256> ids;
    uint8_t last;
};

constexpr ByteIds byte_ids(const Setting &setting)
{
    const ValueRow &row = VALUE_TABLES.rows[setting.id];
    ByteIds found = {};
    for (uint32_t byte = 0; byte < found.ids.size(); ++byte) {
        const auto value = static_cast<uint32_t>(byte_value(setting.read, static_cast<uint8_t>(byte)));
        const bool is_itself = row.reading == Reading::TABLE_OR_ITSELF && value >= row.end;
        found.ids[byte] =
            is_itself ? static_cast<uint16_t>(value) : VALUE_TABLES.ids[row.first + std::min<uint32_t>(value, row.end)];
    }
    found.last = UINT8_MAX;
    while (found.last > 0 && found.ids[found.last] == found.ids[found.last - 1U]) {
        --found.last;
    }
    return found;
}

constexpr size_t BYTE_ID_COUNT =
    std::accumulate(std::begin(SETTINGS), std::end(SETTINGS), size_t{0}, [](size_t count, const Setting &setting) {
        return count + (readout_of(setting) != Readout::OTHER ? byte_ids(setting).last + size_t{1} : 0);
    });

constexpr auto BYTE_TABLES = [] {
    struct {
        std::array<SettingMember, std::size(SETTINGS)> members;
        std::array<uint16_t, BYTE_ID_COUNT> ids;
    } tables = {};
    uint16_t count = 0;
    for (size_t i = 0; i < std::size(SETTINGS); ++i) {
        const Setting &setting = SETTINGS[i];
        SettingMember &member = tables.members[i];
        member = {static_cast<uint8_t>(setting.id), readout_of(setting), {}, 0, 0};
        if (member.readout == Readout::OTHER) {
            continue;
        }
        for (uint32_t block = 0; block < std::size(member.offsets); ++block) {
            member.offsets[block] = byte_offset(setting, block);
        }
        const ByteIds bytes = byte_ids(setting);
        member.last = bytes.last;
        member.first = count;
        for (size_t byte = 0; byte <= bytes.last; ++byte) {
            tables.ids[count++] = bytes.ids[byte];
        }
    }
    return tables;
}();

template <bool SABLE_KNOLL>
constexpr auto MEMBER_ROWS = [] {
    std::array<SettingMember, setting_count(SABLE_KNOLL)> members = {};
    auto next = members.begin();
    for (size_t i = 0; i < std::size(SETTINGS); ++i) {
        if (has_setting(SABLE_KNOLL, SETTINGS[i])) {
            *next++ = BYTE_TABLES.members[i];
        }
    }
    return members;
}();

// ---- Bit rates ----

constexpr auto BIT_RATES = [] {
    std::array<uint32_t, std::size(STREAM_BIT_RATE)> rates = {};
    std::transform(std::begin(STREAM_BIT_RATE), std::end(STREAM_BIT_RATE), rates.begin(),
                   [](const Option &option) { return option.value; });
    return rates;
}();

constexpr uint32_t DEFAULT_BIT_RATE =
    std::find_if(std::begin(SETTINGS), std::end(SETTINGS), [](const Setting &setting) {
        return setting.id == SETTING_STREAM_BIT_RATE;
    })->default_id;

static_assert(std::all_of(std::begin(STREAM_BIT_RATE), std::end(STREAM_BIT_RATE),
                          [](const Option &option) { return option.id == option.value; }));

} // namespace

constinit const std::array<Option, OPTION_COUNT> OPTIONS = [] {
    std::array<Option, OPTION_COUNT> options = {};
    auto next = options.begin();
    for (const Setting &setting : SETTINGS) {
        next = std::copy(setting.options.begin(), setting.options.end(), next);
    }
    return options;
}();

constinit const std::array<ValueRow, SETTINGS_END_ROW> VALUE_ROWS = VALUE_TABLES.rows;
constinit const std::array<uint16_t, VALUE_ID_COUNT> VALUE_IDS = VALUE_TABLES.ids;

SettingMembers setting_members(uint32_t model)
{
    static constexpr auto BYTE_IDS = BYTE_TABLES.ids;
    if (is_sable_knoll(model)) {
        return {MEMBER_ROWS<true>, BYTE_IDS.data()};
    }
    return {MEMBER_ROWS<false>, BYTE_IDS.data()};
}

uint32_t bit_rate_id(uint32_t value)
{
    bool known = false;
    for (const uint32_t rate : BIT_RATES) {
        known |= rate == value;
    }
    return known ? value : DEFAULT_BIT_RATE;
}

const Option *find_option(uint32_t setting, uint32_t id)
{
    const std::span<const Option> options = options_of(setting);
    const auto option = std::ranges::find(options, id, &Option::id);
    return option != options.end() ? &*option : nullptr;
}

OptionCatalogue make_option_catalogue()
{
    OptionCatalogue catalogue;
    catalogue.options.reserve(OPTION_COUNT);
    for (uint32_t setting = 0; setting < OPTION_RANGES.size(); ++setting) {
        const std::span<const Option> options = options_of(setting);
        if (options.empty()) {
            continue;
        }
        std::vector<option_t *> &list = catalogue.lists[setting];
        list.reserve(options.size());
        for (const Option &option : options) {
            list.push_back(&catalogue.options.emplace_back(option.key, option.name, option.value, option.id));
        }
    }
    return catalogue;
}

OptionValues make_option_values()
{
    OptionValues values;
    for (uint32_t setting = 0; setting < OPTION_RANGES.size(); ++setting) {
        for (const Option &option : options_of(setting)) {
            values[setting].emplace(option.id, option.value);
        }
    }
    return values;
}

} // namespace zv
