// What the sources of the settings catalogue share. Internal to the library.
#pragma once

#include "camera_settings.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>

namespace zv {

// The two camera generations differ in the settings that they have.
constexpr bool is_sable_knoll(uint32_t model)
{
    return model == 58 || model == 62;
}

// The index and the id of the setting tables' end row; all rows of settings stand before it.
inline constexpr uint32_t SETTINGS_END_ROW = SETTINGS_ALL_FIELDS_COUNT - 1;
inline constexpr uint32_t SETTINGS_END_ID = 0xFFFFFFFF;

// ---- Setting tables, camera_settings_tables.cpp ----

using SettingsFields = std::array<settings_field_t, SETTINGS_ALL_FIELDS_COUNT>;
extern const SettingsFields settings_all_fields;
extern const SettingsFields settings_all_fields_sable_knoll;

// The rows of the model's table that are settings, in ascending order: what a document walks.
std::span<const settings_field_t> live_fields(uint32_t model);

// Whether a setting is one of the camera as a whole, in the bypass set of a generation.
bool bypasses_preset_edit(uint32_t setting, bool sable_knoll);

// ---- Flat modes ----

class FlatModes {
  public:
    constexpr FlatModes(std::initializer_list<uint32_t> modes)
    {
        for (const uint32_t mode : modes) {
            m_bits |= bit(mode);
        }
    }
    constexpr bool contains(uint32_t mode) const { return mode < 64 && (m_bits & bit(mode)) != 0; }

  private:
    static constexpr uint64_t bit(uint32_t mode) { return uint64_t{1} << mode; }

    uint64_t m_bits = 0;
};

inline constexpr FlatModes PHOTO_MODES{16, 17, 18};
inline constexpr FlatModes MULTI_SHOT_MODES{19, 20, 21, 26, 29, 30, 31};

// ---- Read-out, camera_settings_values.cpp ----

// Where a setting is read from: the two records' bytes, null where the caller has none, and the camera.
struct SettingsSource {
    const uint8_t *settings;
    const uint8_t *status;
    uint32_t model;
};

// The firmware's value of one setting. A missing record gives 0, after a message on standard error; a row that reaches
// past the record reads as 0.
int32_t field_value(const settings_field_t &field, const SettingsSource &source);

// ---- Options, camera_settings_options.cpp ----

// LCD brightness is any percentage from 10, the LED any value, a schedule a packed time.
constexpr bool skips_option_check(uint32_t setting, uint32_t value)
{
    return setting == 168 || setting == 91 || (setting == 88 && value >= 10 && value <= 100);
}

// Four slots of one kind, the only settings where two options share a value.
constexpr bool is_shortcut(uint32_t setting)
{
    return setting >= 129 && setting <= 132;
}

// How the values of a setting read as option ids. A poll reads every setting, so that the common way has no branch that
// depends on the value.
enum class Reading : uint8_t {
    NO_OPTIONS,
    TABLE,           // VALUE_IDS[first + value]; the entry at `end` stands for all values from there on
    TABLE_OR_ITSELF, // the same, but a value from `end` on reads as itself
    SHORTCUT,        // TABLE, and the flat mode tells which of two options a value is
    RATE,            // bit_rate_id(value)
};

struct ValueRow {
    uint16_t first;
    uint16_t end;
    Reading reading;
};

inline constexpr size_t VALUE_ID_COUNT = 1736;
extern const std::array<ValueRow, SETTINGS_END_ROW> VALUE_ROWS; // by setting id
extern const std::array<uint16_t, VALUE_ID_COUNT> VALUE_IDS;

inline uint32_t table_id(const ValueRow &row, uint32_t value)
{
    return VALUE_IDS[row.first + std::min<uint32_t>(value, row.end)];
}

// A bit rate of the stream reads as itself, any other value as the default.
uint32_t bit_rate_id(uint32_t value);

using OptionLists = std::map<uint32_t, std::vector<option_t *>>;
using OptionValues = std::map<uint32_t, std::map<uint32_t, uint32_t>>;
OptionLists make_option_lists();
OptionValues make_option_values();

// ---- Filter rules, camera_settings_rules.cpp ----

using FilterRules = std::map<uint32_t, std::vector<filter_info_t *>>;
FilterRules make_filter_rules();

} // namespace zv

extern "C" int32_t get_field_value(const appc_setup_all_settings *settings, const settings_field_t *field,
                                   uint32_t model, const appc_system_all_status *status,
                                   const zvcontrol_system_settings *system);
