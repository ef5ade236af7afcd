// The notation of the filter rules. The compiler reads each row where it is written: a row that says nothing, or names
// what is not there, does not compile, and the message shows its number and text. Internal to the library.
//
// A rule is conditions, "then", and consequences; semicolons separate either, commas the values of one. Settings and
// options go by name and key, a status by name and number; flat_mode is the status that holds the flat mode, whose
// values go by the keys of the setting current_flat_mode.
//
//     flat_mode=VIDEO,LOOPING             the status is one of these
//     ux_mode=EASY                        the setting's option is one of these
//     video_fov!=WIDE,LINEAR              the setting's option is none of these
//
//     sound_cage_audio off                the setting is not offered
//     video_fps without 240,200           these options are not offered
//     video_fps only 60,50                no options but these are offered
//     onscreen_shortcuts_* only OFF,ZOOM  the same for each setting whose name begins like this
#pragma once

#include "camera_settings.h"
#include "camera_status_names.h"
#include "setting_rows.h"

#include <array>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

namespace zv {

// ---- Names ----

// A setting's name in the rules is its enumerator's without the prefix, in small letters.
struct SettingName {
    char text[40];
    size_t length;

    constexpr std::string_view view() const { return {text, length}; }
};

template <camera_setting_id ID>
consteval SettingName make_setting_name()
{
    constexpr std::string_view PREFIX = "SETTING_";
    SettingName name = {};
    for (const char character : enumerator_name<ID>().substr(PREFIX.size())) {
        const bool capital = character >= 'A' && character <= 'Z';
        name.text[name.length++] = static_cast<char>(capital ? character - 'A' + 'a' : character);
    }
    return name;
}

// In the order of SETTINGS.
inline constexpr auto SETTING_NAMES = []<size_t... I>(std::index_sequence<I...>)
{
    return std::array<SettingName, sizeof...(I)>{make_setting_name<SETTINGS[I].id>()...};
}
(std::make_index_sequence<std::size(SETTINGS)>());

inline constexpr std::string_view FLAT_MODE = "flat_mode";

// 0, which is no status, for a name that is none's.
constexpr uint32_t status_named(std::string_view name)
{
    const std::string_view status = name == FLAT_MODE ? "app_current_mode" : name;
    for (const camera_status_name_t &row : camera_status_names) {
        if (status == row.name) {
            return row.id;
        }
    }
    return 0;
}

// Where the setting of a name is in SETTINGS; their number for a name that is none's.
constexpr size_t setting_named(std::string_view name)
{
    size_t index = 0;
    while (index < SETTING_NAMES.size() && SETTING_NAMES[index].view() != name) {
        ++index;
    }
    return index;
}

// ---- Reading ----

// Takes the text up to `separator`, or all of it, off the front.
constexpr std::string_view take(std::string_view &text, std::string_view separator)
{
    const size_t end = text.find(separator);
    const std::string_view front = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + separator.size());
    return front;
}

inline constexpr uint32_t STATUS_VALUE_END = 32;

constexpr uint32_t status_value(std::string_view text)
{
    uint32_t value = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9' || value >= STATUS_VALUE_END) {
            throw "a status value is a small number";
        }
        value = value * 10 + static_cast<uint32_t>(digit - '0');
    }
    if (text.empty() || value >= STATUS_VALUE_END) {
        throw "a status value is a small number";
    }
    return value;
}

// Reads a rule, and hands it to `sink` element by element:
//
//     sink.element(FilterInfoType, id, include)  a condition or consequence
//     sink.number(value)                         a value of the last element, a status
//     sink.option(index, option)                 a value of the last element, a setting: its place in SETTINGS
template <class Sink>
class RuleReader {
  public:
    explicit constexpr RuleReader(Sink &sink) : m_sink(sink) {}

    constexpr void read(std::string_view text)
    {
        std::string_view conditions = take(text, " then ");
        do {
            read_condition(take(conditions, "; "));
        } while (!conditions.empty());
        do {
            read_consequence(take(text, "; "));
        } while (!text.empty());
    }

  private:
    constexpr void read_condition(std::string_view text)
    {
        std::string_view name = take(text, "=");
        const bool include = !name.ends_with('!');
        name.remove_suffix(include ? 0 : 1);
        if (const size_t index = setting_named(name); index < std::size(SETTINGS)) {
            m_sink.element(FILTER_INFO_SETTING, SETTINGS[index].id, include);
            read_keys(index, text);
        } else if (const uint32_t status = status_named(name); status != 0) {
            m_sink.element(FILTER_INFO_STATUS, status, include);
            read_status_values(name, text);
        } else {
            throw "there is no setting or status of this name";
        }
    }

    constexpr void read_status_values(std::string_view name, std::string_view list)
    {
        do {
            const std::string_view value = take(list, ",");
            m_sink.number(name == FLAT_MODE ? option_with_key(CURRENT_FLAT_MODE, value).value : status_value(value));
        } while (!list.empty());
    }

    constexpr void read_consequence(std::string_view text)
    {
        const std::string_view name = take(text, " ");
        const std::string_view verb = take(text, " ");
        if (!name.ends_with('*')) {
            const size_t index = setting_named(name);
            if (index == std::size(SETTINGS)) {
                throw "there is no setting of this name";
            }
            read_consequence(index, verb, text);
            return;
        }
        bool any = false;
        for (size_t index = 0; index < std::size(SETTINGS); ++index) {
            if (SETTING_NAMES[index].view().starts_with(name.substr(0, name.size() - 1))) {
                read_consequence(index, verb, text);
                any = true;
            }
        }
        if (!any) {
            throw "there is no setting whose name begins like this";
        }
    }

    constexpr void read_consequence(size_t index, std::string_view verb, std::string_view keys)
    {
        m_sink.element(FILTER_INFO_BLOCK, SETTINGS[index].id, verb != "only");
        if (verb == "without" || verb == "only") {
            read_keys(index, keys);
        } else if (verb != "off" || !keys.empty()) {
            throw "a consequence is off, without or only";
        }
    }

    constexpr void read_keys(size_t index, std::string_view list)
    {
        do {
            m_sink.option(index, option_with_key(SETTINGS[index].options, take(list, ",")));
        } while (!list.empty());
    }

    Sink &m_sink;
};

// How much the rules hold.
struct RuleCounts {
    size_t elements = 0;
    size_t values = 0;

    constexpr void element(FilterInfoType, uint32_t, bool) { ++elements; }
    constexpr void number(uint32_t) { ++values; }
    constexpr void option(size_t, const Option &) { ++values; }
};

struct RuleRow {
    unsigned number;
    const char *text;

    consteval RuleRow(unsigned row_number, const char *row_text) : number(row_number), text(row_text)
    {
        RuleCounts counts;
        RuleReader(counts).read(text);
    }
};

} // namespace zv
