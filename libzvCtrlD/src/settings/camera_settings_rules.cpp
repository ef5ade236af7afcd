#include "camera_settings_rules.h"

#include "camera_settings_catalogue.h"
#include "camera_settings_options.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <string_view>

namespace zv {

namespace {

constexpr size_t RULE_COUNT = 202;
constexpr size_t STATUS_CONDITION_COUNT = 155;
constexpr size_t SETTING_CONDITION_COUNT = 351;
constexpr size_t CONSEQUENCE_COUNT = 439;
constexpr size_t ELEMENT_COUNT = STATUS_CONDITION_COUNT + SETTING_CONDITION_COUNT + CONSEQUENCE_COUNT;
constexpr size_t VALUE_COUNT = 2137;

constexpr uint32_t RULE_STATUSES[] = {65, 74, 89, 102, 108, 109, 110};
constexpr uint32_t STATUS_VALUE_END = 32;

// One element of a rule. Its values are positions in OPTIONS, or for a status the numbers themselves.
struct RuleElement {
    uint8_t type;
    uint8_t id;
    uint8_t include;
    uint8_t value_count;
    uint16_t first_value;
};

struct RuleTable {
    std::array<uint16_t, RULE_COUNT + 1> first_elements; // of each rule, and the end
    std::array<RuleElement, ELEMENT_COUNT> elements;
    std::array<uint16_t, VALUE_COUNT> values;
};

// ---- Reading the rows ----
// A row that cannot be read does not compile: the compiler stops at the throw that says why.

// Takes the text up to `separator`, or all of it, off the front.
constexpr std::string_view take(std::string_view &text, std::string_view separator)
{
    const size_t end = text.find(separator);
    const std::string_view front = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + separator.size());
    return front;
}

constexpr uint32_t number(std::string_view text)
{
    if (text.empty() || text.size() > 3 || text.find_first_not_of("0123456789") != text.npos) {
        throw "not a number";
    }
    uint32_t value = 0;
    for (const char digit : text) {
        value = value * 10 + static_cast<uint32_t>(digit - '0');
    }
    return value;
}

// A setting's options, and where in OPTIONS the first of them stands.
struct SettingPlace {
    size_t first;
    std::span<const Option> options;
};

constexpr SettingPlace place_of(uint32_t setting)
{
    size_t first = 0;
    for (const SettingOptions &row : SETTING_OPTIONS) {
        if (row.setting == setting) {
            return {first, row.options};
        }
        first += row.options.size();
    }
    throw "no such setting";
}

class RuleReader {
  public:
    constexpr void read(const RuleRow &row)
    {
        if (row.number != m_rule) {
            throw "a rule is out of order";
        }
        m_table.first_elements[m_rule++] = static_cast<uint16_t>(m_element);
        std::string_view consequences = row.text;
        std::string_view conditions = take(consequences, " then ");
        do {
            read_condition(take(conditions, "; "));
        } while (!conditions.empty());
        do {
            read_consequence(take(consequences, "; "));
        } while (!consequences.empty());
    }

    constexpr RuleTable finish()
    {
        if (m_rule != RULE_COUNT || m_element != ELEMENT_COUNT || m_value != VALUE_COUNT) {
            throw "rules are missing";
        }
        m_table.first_elements[m_rule] = static_cast<uint16_t>(m_element);
        return m_table;
    }

  private:
    constexpr void read_condition(std::string_view text)
    {
        std::string_view id = take(text, "=");
        const bool include = !id.ends_with('!');
        id.remove_suffix(include ? 0 : 1);
        if (id.starts_with('S')) {
            id.remove_prefix(1);
            add(FILTER_INFO_STATUS, number(id), include);
            read_numbers(text);
        } else {
            add(FILTER_INFO_SETTING, number(id), include);
            read_keys(text);
        }
    }

    constexpr void read_consequence(std::string_view text)
    {
        std::string_view ids = take(text, " ");
        const std::string_view verb = take(text, " ");
        const uint32_t first = number(take(ids, "-"));
        const uint32_t last = ids.empty() ? first : number(ids);
        for (uint32_t id = first; id <= last; ++id) {
            add(FILTER_INFO_BLOCK, id, verb != "only");
            if (verb == "without" || verb == "only") {
                read_keys(text);
            } else if (verb != "off" || !text.empty()) {
                throw "a consequence is off, without or only";
            }
        }
    }

    constexpr void add(FilterInfoType type, uint32_t id, bool include)
    {
        if (type != FILTER_INFO_STATUS && place_of(id).options.empty()) {
            throw "the setting has no options";
        }
        m_table.elements[m_element++] = {static_cast<uint8_t>(type), static_cast<uint8_t>(id), include, 0,
                                         static_cast<uint16_t>(m_value)};
    }

    constexpr void add_value(size_t value)
    {
        m_table.values[m_value++] = static_cast<uint16_t>(value);
        ++m_table.elements[m_element - 1].value_count;
    }

    constexpr void read_numbers(std::string_view list)
    {
        if (std::find(std::begin(RULE_STATUSES), std::end(RULE_STATUSES), m_table.elements[m_element - 1].id) ==
            std::end(RULE_STATUSES)) {
            throw "no such status";
        }
        do {
            const uint32_t value = number(take(list, ","));
            if (value >= STATUS_VALUE_END) {
                throw "a status value is too large";
            }
            add_value(value);
        } while (!list.empty());
    }

    // The keys' positions in OPTIONS.
    constexpr void read_keys(std::string_view list)
    {
        const SettingPlace place = place_of(m_table.elements[m_element - 1].id);
        do {
            const std::string_view key = take(list, ",");
            const auto option = std::find_if(place.options.begin(), place.options.end(),
                                             [key](const Option &candidate) { return key == candidate.key; });
            if (option == place.options.end()) {
                throw "the setting has no option of this key";
            }
            add_value(place.first + static_cast<size_t>(option - place.options.begin()));
        } while (!list.empty());
    }

    RuleTable m_table = {};
    size_t m_rule = 0;
    size_t m_element = 0;
    size_t m_value = 0;
};

constexpr RuleTable RULES = [] {
    RuleReader reader;
    for (const RuleRow &row : RULE_ROWS) {
        reader.read(row);
    }
    return reader.finish();
}();

constexpr size_t count_of(FilterInfoType type)
{
    return static_cast<size_t>(std::count_if(RULES.elements.begin(), RULES.elements.end(),
                                             [type](const RuleElement &element) { return element.type == type; }));
}

static_assert(count_of(FILTER_INFO_STATUS) == STATUS_CONDITION_COUNT);
static_assert(count_of(FILTER_INFO_SETTING) == SETTING_CONDITION_COUNT);
static_assert(count_of(FILTER_INFO_BLOCK) == CONSEQUENCE_COUNT);

// The texts of the status values.
constexpr auto NUMBERS = [] {
    struct Text {
        char text[3];
    };
    std::array<Text, STATUS_VALUE_END> texts = {};
    for (size_t value = 0; value < texts.size(); ++value) {
        char *next = texts[value].text;
        if (value >= 10) {
            *next++ = static_cast<char>('0' + value / 10);
        }
        *next = static_cast<char>('0' + value % 10);
    }
    return texts;
}();

filter_info_t *make_element(const RuleElement &element)
{
    auto *info = new filter_info_t{static_cast<FilterInfoType>(element.type), element.id, element.include, {}};
    info->values.reserve(element.value_count);
    for (size_t i = element.first_value; i < size_t{element.first_value} + element.value_count; ++i) {
        const uint16_t value = RULES.values[i];
        info->values.push_back(element.type == FILTER_INFO_STATUS ? NUMBERS[value].text : OPTIONS[value].key);
    }
    return info;
}

} // namespace

FilterRules make_filter_rules()
{
    FilterRules rules;
    for (uint32_t number = 0; number < RULE_COUNT; ++number) {
        std::vector<filter_info_t *> &rule = rules[number];
        for (size_t i = RULES.first_elements[number]; i < RULES.first_elements[number + 1]; ++i) {
            rule.push_back(make_element(RULES.elements[i]));
        }
    }
    return rules;
}

} // namespace zv
