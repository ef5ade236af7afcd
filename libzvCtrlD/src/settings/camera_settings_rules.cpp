#include "camera_settings_rules.h"

#include "camera_settings_options.h"
#include "rule_rows.h"

#include <array>
#include <cstdint>
#include <iterator>

namespace zv {

namespace {

// One element of a rule. Its values are positions in OPTIONS, or for a status the numbers themselves.
struct RuleElement {
    uint8_t type;
    uint8_t id;
    uint8_t include;
    uint8_t value_count;
    uint16_t first_value;
};

constexpr size_t RULE_COUNT = std::size(RULE_ROWS);

constexpr RuleCounts COUNTS = [] {
    RuleCounts counts;
    for (const RuleRow &row : RULE_ROWS) {
        RuleReader(counts).read(row.text);
    }
    return counts;
}();

// Where the options of each setting begin in OPTIONS, in the order of SETTINGS.
constexpr auto FIRST_OPTIONS = [] {
    std::array<uint16_t, std::size(SETTINGS)> firsts = {};
    for (size_t i = 1; i < firsts.size(); ++i) {
        firsts[i] = static_cast<uint16_t>(firsts[i - 1] + SETTINGS[i - 1].options.size());
    }
    return firsts;
}();

struct RuleTable {
    std::array<uint16_t, RULE_COUNT + 1> first_elements; // of each rule, and the end
    std::array<RuleElement, COUNTS.elements> elements;
    std::array<uint16_t, COUNTS.values> values;
};

// Fills a table, whose counts fit.
class RuleTableSink {
  public:
    constexpr void begin_rule() { m_table.first_elements[m_rule++] = static_cast<uint16_t>(m_element); }

    constexpr void element(FilterInfoType type, uint32_t id, bool include)
    {
        m_table.elements[m_element++] = {static_cast<uint8_t>(type), static_cast<uint8_t>(id), include, 0,
                                         static_cast<uint16_t>(m_value)};
    }
    constexpr void number(uint32_t value)
    {
        m_table.values[m_value++] = static_cast<uint16_t>(value);
        ++m_table.elements[m_element - 1].value_count;
    }
    constexpr void option(size_t index, const Option &option)
    {
        number(FIRST_OPTIONS[index] + static_cast<uint32_t>(&option - SETTINGS[index].options.data()));
    }

    constexpr const RuleTable &table() const { return m_table; }

  private:
    RuleTable m_table = {};
    size_t m_rule = 0;
    size_t m_element = 0;
    size_t m_value = 0;
};

constexpr RuleTable RULES = [] {
    RuleTableSink sink;
    for (const RuleRow &row : RULE_ROWS) {
        sink.begin_rule();
        RuleReader(sink).read(row.text);
    }
    sink.begin_rule();
    return sink.table();
}();

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

filter_info_t make_element(const RuleElement &element)
{
    filter_info_t info = {static_cast<FilterInfoType>(element.type), element.id, element.include, {}};
    info.values.reserve(element.value_count);
    for (size_t i = element.first_value; i < size_t{element.first_value} + element.value_count; ++i) {
        const uint16_t value = RULES.values[i];
        info.values.push_back(element.type == FILTER_INFO_STATUS ? NUMBERS[value].text : OPTIONS[value].key);
    }
    return info;
}

} // namespace

RuleCatalogue make_rule_catalogue()
{
    RuleCatalogue catalogue;
    catalogue.elements.reserve(COUNTS.elements);
    for (uint32_t number = 0; number < RULE_COUNT; ++number) {
        const size_t first = RULES.first_elements[number];
        const size_t end = RULES.first_elements[number + 1];
        std::vector<filter_info_t *> &rule = catalogue.rules[number];
        rule.reserve(end - first);
        for (size_t i = first; i < end; ++i) {
            rule.push_back(&catalogue.elements.emplace_back(make_element(RULES.elements[i])));
        }
    }
    return catalogue;
}

} // namespace zv
