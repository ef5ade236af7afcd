// The options of the settings, as the library looks them up. Internal to the library.
#pragma once

#include "camera_settings_tables.h"
#include "option_lists.h"
#include "setting_rows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <map>
#include <numeric>
#include <span>
#include <vector>

namespace zv {

inline constexpr size_t OPTION_COUNT =
    std::accumulate(std::begin(SETTINGS), std::end(SETTINGS), size_t{0},
                    [](size_t count, const Setting &setting) { return count + setting.options.size(); });

// The options of all settings, one list after the other.
extern const std::array<Option, OPTION_COUNT> OPTIONS;

// How the values of a setting read as option ids. A poll reads every setting, so that the common way has no branch that
// depends on the value.
enum class Reading : uint8_t {
    NONE,            // the setting has no options
    TABLE,           // VALUE_IDS[first + value]; the entry at `end` is for all values from there on
    TABLE_OR_ITSELF, // the same, but a value from `end` on reads as itself
    SHORTCUT,        // TABLE, and the flat mode decides which of two options a value is
    RATE,            // bit_rate_id(value)
};

constexpr Reading reading_of(const Setting &setting)
{
    if (setting.options.empty()) {
        return Reading::NONE;
    }
    if (setting.id == SETTING_STREAM_BIT_RATE) {
        return Reading::RATE;
    }
    if (setting.read.way == Read::SHORTCUT) {
        return Reading::SHORTCUT;
    }
    return setting.unlisted == AS_ITSELF ? Reading::TABLE_OR_ITSELF : Reading::TABLE;
}

// One more than the largest value; 0 for a setting that has no table.
constexpr uint32_t table_end(const Setting &setting)
{
    uint32_t end = 0;
    for (const Option &option : setting.options) {
        end = std::max(end, option.value + 1);
    }
    return end;
}

constexpr bool has_table(const Setting &setting)
{
    const Reading reading = reading_of(setting);
    return reading != Reading::NONE && reading != Reading::RATE;
}

inline constexpr size_t VALUE_ID_COUNT =
    std::accumulate(std::begin(SETTINGS), std::end(SETTINGS), size_t{0}, [](size_t count, const Setting &setting) {
        return count + (has_table(setting) ? table_end(setting) + 1 : 0);
    });

struct ValueRow {
    uint16_t first;
    uint16_t end;
    Reading reading;
};

extern const std::array<ValueRow, SETTINGS_END_ROW> VALUE_ROWS; // by setting id
extern const std::array<uint16_t, VALUE_ID_COUNT> VALUE_IDS;

inline uint32_t table_id(const ValueRow &row, uint32_t value)
{
    return VALUE_IDS[row.first + std::min<uint32_t>(value, row.end)];
}

// What of the settings record says a setting's option id, in the order of how little has to be known.
enum class Readout : uint8_t {
    BYTE,          // one byte
    BYTE_OF_BLOCK, // one byte, whose place depends on the block that the flat mode is read from
    OTHER,         // what field_value and getOptionIdByValue make of it
};

// A setting that a model has, as a document reads it.
struct SettingMember {
    uint8_t id;
    Readout readout;
    uint8_t offsets[3]; // of the byte in appc_setup_all_settings, by block
    uint8_t last;       // larger bytes read as this one does
    uint16_t first;     // where the id of byte 0 is in the model's byte_ids; those of the others follow
};

// The settings of a model in ascending order of id, and what their bytes read as.
struct SettingMembers {
    std::span<const SettingMember> rows;
    const uint16_t *byte_ids;

    uint32_t byte_id(const SettingMember &row, uint8_t byte) const
    {
        return byte_ids[size_t{row.first} + std::min(byte, row.last)];
    }
};

SettingMembers setting_members(uint32_t model);

// A bit rate of the stream reads as itself, any other value as the default.
uint32_t bit_rate_id(uint32_t value);

// Whether a value is good for a setting without being listed.
constexpr bool is_good_unlisted(Unlisted unlisted, uint32_t value)
{
    return unlisted == AS_ITSELF || (unlisted == PERCENTAGE_AS_ITSELF && value >= 10 && value <= 100);
}

// The option of a setting that has the id; null for a setting or an id that is none.
const Option *find_option(uint32_t setting, uint32_t id);

// The lists point into `options`, which stay where they are when the catalogue moves.
struct OptionCatalogue {
    std::vector<option_t> options;
    std::map<uint32_t, std::vector<option_t *>> lists;
};
OptionCatalogue make_option_catalogue();

using OptionValues = std::map<uint32_t, std::map<uint32_t, uint32_t>>;
OptionValues make_option_values();

} // namespace zv
