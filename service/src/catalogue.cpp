#include "catalogue.h"

#include "generation.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <strings.h>

namespace zvservice {

namespace {

constexpr uint32_t NO_VALUE = UINT32_MAX; // no setting lists it

bool same(const std::string &a, const char *b)
{
    return a.size() == strlen(b) && strcasecmp(a.c_str(), b) == 0; // a zero byte of a client's is a letter like others
}

bool to_number(const std::string &text, uint32_t &number)
{
    if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    number = static_cast<uint32_t>(strtoul(text.c_str(), nullptr, 10));
    return true;
}

std::string last_part(const std::string &name)
{
    return name.substr(name.rfind('/') + 1);
}

// "one, two, three"
std::string listed(const std::vector<std::string> &words)
{
    std::string text;
    for (const std::string &word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

// "; did you mean one, two?", or nothing.
std::string suggestion(const std::string &word, const std::vector<std::string> &words)
{
    const std::vector<std::string> misses = near_misses(word, words);
    return misses.empty() ? "" : "; did you mean " + listed(misses) + "?";
}

// "0 240, 5 60"
template <class Options>
std::string ids_and_keys(const Options &options)
{
    std::vector<std::string> words(options.size());
    std::transform(options.begin(), options.end(), words.begin(),
                   [](const option_t *option) { return std::to_string(option->id) + " " + option->key; });
    return listed(words);
}

// The option whose `column` is `value`; null for none.
const option_t *find_row(const std::vector<option_t *> &options, uint32_t option_t::*column, uint32_t value)
{
    const auto found =
        std::find_if(options.begin(), options.end(), [=](const option_t *option) { return option->*column == value; });
    return found != options.end() ? *found : nullptr;
}

// The options whose `column`, key or name, is the text.
std::vector<const option_t *> options_with(const std::vector<option_t *> &options, const char *option_t::*column,
                                           const std::string &text)
{
    std::vector<const option_t *> found;
    std::copy_if(options.begin(), options.end(), std::back_inserter(found),
                 [&](const option_t *option) { return same(text, option->*column); });
    return found;
}

std::string schedule_text(uint32_t number)
{
    const camera_schedule_t schedule = camera_schedule_unpack(number);
    if (schedule.enabled == 0) {
        return "off";
    }
    char text[16];
    snprintf(text, sizeof text, "%02u:%02u", schedule.hour, schedule.minute);
    return text;
}

// A scheduled capture of "07:30" or "off", in the clock format of `present`.
Result find_schedule(const std::string &text, uint32_t present, uint32_t &id)
{
    if (same(text, "off")) {
        id = 0;
        return {};
    }
    const size_t colon = std::min(text.find(':'), text.size());
    uint32_t hour = 0;
    uint32_t minute = 0;
    if (!to_number(text.substr(0, colon), hour) || !to_number(text.substr(std::min(colon + 1, text.size())), minute) ||
        hour > 23 || minute > 59) {
        return {Outcome::NO_SUCH_OPTION,
                "a scheduled capture is a time of day such as 07:30, or off, not \"" + text + "\""};
    }
    camera_schedule_t schedule = camera_schedule_unpack(present);
    schedule.enabled = 1;
    schedule.minute = static_cast<uint8_t>(minute);
    schedule.hour = static_cast<uint8_t>(hour);
    id = camera_schedule_pack(schedule);
    return {};
}

std::string lower(std::string word)
{
    std::transform(word.begin(), word.end(), word.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return word;
}

// How many letters have to be put in, left out or changed to make the one of the other, where that is no more than
// `near`; else a larger number. Lengths that differ by more are not compared any further: a client may send long words.
size_t distance(const std::string &one, const std::string &other, size_t near)
{
    const size_t longer = std::max(one.size(), other.size()) - std::min(one.size(), other.size());
    if (longer > near) {
        return longer;
    }
    std::vector<size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), size_t(0));
    for (size_t i = 0; i < one.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < other.size(); ++j) {
            const size_t changed = diagonal + (one[i] != other[j] ? 1 : 0);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row[other.size()];
}

} // namespace

bool Catalogue::has(uint32_t setting) const
{
    return setting < SETTINGS_ID_TABLE_COUNT && row(setting).end_marker == 0 && row(setting).json_path[0] != '\0';
}

std::vector<uint32_t> Catalogue::settings() const
{
    std::vector<uint32_t> numbers;
    for (uint32_t setting = 0; setting < SETTINGS_ID_TABLE_COUNT; ++setting) {
        if (has(setting)) {
            numbers.push_back(setting);
        }
    }
    return numbers;
}

const settings_id_entry_t &Catalogue::row(uint32_t setting) const
{
    uint32_t count = 0;
    return camera_settings_id_table(m_model, &count)[setting];
}

std::string Catalogue::name(uint32_t setting) const
{
    std::string path = row(setting).json_path;
    constexpr char HEAD[] = "modes/";
    constexpr char MIDDLE[] = "/settings/";
    const size_t block = strlen(HEAD);
    const size_t middle = path.find(MIDDLE);
    if (path.compare(0, block, HEAD) != 0 || middle == std::string::npos) {
        return path;
    }
    return path.substr(block, middle - block) + "/" + path.substr(middle + strlen(MIDDLE));
}

std::vector<uint32_t> Catalogue::settings_named(const std::string &text) const
{
    if (uint32_t number = 0; to_number(text, number)) {
        return has(number) ? std::vector<uint32_t>{number} : std::vector<uint32_t>{};
    }
    std::vector<uint32_t> exact;
    std::vector<uint32_t> by_last_part;
    for (const uint32_t setting : settings()) {
        const std::string whole = name(setting);
        if (same(text, whole.c_str()) || same(text, row(setting).json_path)) {
            exact.push_back(setting);
        } else if (same(text, last_part(whole).c_str())) {
            by_last_part.push_back(setting);
        }
    }
    return exact.empty() ? by_last_part : exact;
}

Result Catalogue::find_setting(const std::string &text, uint32_t &setting) const
{
    const std::vector<uint32_t> found = settings_named(text);
    if (found.size() > 1) {
        std::vector<std::string> candidates(found.size());
        std::transform(found.begin(), found.end(), candidates.begin(),
                       [this](uint32_t number) { return std::to_string(number) + " " + name(number); });
        return {Outcome::NO_SUCH_SETTING, "\"" + text + "\" names several settings: " + listed(candidates)};
    }
    if (!found.empty()) {
        setting = found.front();
        return {};
    }
    if (uint32_t number = 0; to_number(text, number)) {
        return {Outcome::NO_SUCH_SETTING, "this camera has no setting " + std::to_string(number)};
    }
    const std::vector<uint32_t> numbers = settings();
    std::vector<std::string> names(numbers.size());
    std::transform(numbers.begin(), numbers.end(), names.begin(), [this](uint32_t number) { return name(number); });
    return {Outcome::NO_SUCH_SETTING, "this camera has no setting \"" + text + "\"" + suggestion(text, names)};
}

const std::vector<option_t *> &Catalogue::options(uint32_t setting) const
{
    static const std::vector<option_t *> NONE;
    const auto &options = options_of(m_model);
    const auto found = options.find(setting);
    return found == options.end() ? NONE : found->second;
}

const option_t *Catalogue::option(uint32_t setting, uint32_t id) const
{
    return find_row(options(setting), &option_t::id, id);
}

const option_t *Catalogue::option_with_value(uint32_t setting, uint32_t value) const
{
    return find_row(options(setting), &option_t::value, value);
}

bool Catalogue::takes(uint32_t setting, uint32_t id) const
{
    return options(setting).empty() || optionIdExists(m_model, setting, id);
}

Result Catalogue::find_option(uint32_t setting, const std::string &text, uint32_t present, uint32_t &id) const
{
    if (setting == SETTING_SCHEDULED_CAPTURE) {
        return find_schedule(text, present, id);
    }
    const std::vector<option_t *> &all = options(setting);
    if (const auto keys = options_with(all, &option_t::key, text); !keys.empty()) {
        id = keys.front()->id;
        return {};
    }
    if (uint32_t number = 0; to_number(text, number) && takes(setting, number)) {
        id = number;
        return {};
    }
    const auto names = options_with(all, &option_t::name, text);
    if (names.size() > 1) {
        return {Outcome::NO_SUCH_OPTION, "\"" + text + "\" names several options of setting " +
                                             std::to_string(setting) + ": " + ids_and_keys(names)};
    }
    if (names.empty()) {
        std::vector<std::string> words;
        for (const option_t *option : all) {
            words.insert(words.end(), {option->key, option->name});
        }
        return {Outcome::NO_SUCH_OPTION, "setting " + std::to_string(setting) + ", " + name(setting) +
                                             ", has no option \"" + text + "\"; it has " +
                                             (all.empty() ? "numbers" : ids_and_keys(all)) + suggestion(text, words)};
    }
    id = names.front()->id;
    return {};
}

std::string Catalogue::option_text(uint32_t setting, uint32_t id) const
{
    if (setting == SETTING_SCHEDULED_CAPTURE) {
        return schedule_text(id);
    }
    const option_t *found = option(setting, id);
    if (found == nullptr) {
        return std::to_string(id);
    }
    if (options_with(options(setting), &option_t::name, found->name).size() > 1) {
        return std::string(found->name) + " [" + found->key + "]";
    }
    return found->name;
}

bool Catalogue::default_option(uint32_t setting, uint32_t &id) const
{
    if (options(setting).empty() || skipOptionCheck(setting, NO_VALUE)) {
        return false;
    }
    id = getOptionIdByValue(m_model, setting, NO_VALUE, 0);
    return true;
}

std::string Catalogue::condition_name(const filter_info_t &condition) const
{
    return zvservice::condition_name(condition) + " " +
           (condition.type == FILTER_INFO_STATUS ? status_name(condition.id) : name(condition.id));
}

std::string Catalogue::reason(const Removal &removal) const
{
    return "rule " + std::to_string(removal.rule) + ", because " +
           because(removal, [this](const filter_info_t &condition) { return condition_name(condition); });
}

const char *status_name(uint32_t status)
{
    const char *name = camera_status_name(status);
    return name != nullptr ? name : "?";
}

std::vector<std::string> near_misses(const std::string &word, const std::vector<std::string> &words)
{
    constexpr size_t MOST = 3;
    constexpr size_t SHORTEST_PART = 3; // of a word that others may contain
    const std::string wanted = lower(word);
    const size_t near = wanted.size() / 4 + 1;
    std::vector<std::pair<size_t, std::string>> found;
    for (const std::string &candidate : words) {
        const std::string whole = lower(candidate);
        const bool contains = wanted.size() >= SHORTEST_PART && whole.find(wanted) != std::string::npos;
        const size_t far = std::min(distance(wanted, whole, near), distance(wanted, last_part(whole), near));
        if (far <= near || contains) {
            found.emplace_back(std::min(far, near + 1), candidate);
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    std::vector<std::string> misses;
    for (const auto &[far, candidate] : found) {
        if (misses.size() < MOST && std::find(misses.begin(), misses.end(), candidate) == misses.end()) {
            misses.push_back(candidate);
        }
    }
    return misses;
}

} // namespace zvservice
