#include "options.h"

#include "command.h"
#include "failure.h"
#include "links.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <strings.h>
#include <zvctrl/camera_schedule.h>
#include <zvctrl/camera_setting_ids.h>

namespace zvcam {

namespace {

constexpr uint32_t NO_VALUE = UINT32_MAX; // no setting lists it

bool same(const std::string &a, const char *b)
{
    return strcasecmp(a.c_str(), b) == 0;
}

bool to_number(const std::string &text, uint32_t &number)
{
    if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    number = static_cast<uint32_t>(strtoul(text.c_str(), nullptr, 10));
    return true;
}

bool is_setting(uint32_t setting)
{
    return setting < SETTINGS_ID_TABLE_COUNT && setting_row(setting).end_marker == 0 &&
           setting_row(setting).json_path[0] != '\0';
}

// What matches, the exact names before the last parts of names.
std::vector<uint32_t> settings_named(const std::string &text)
{
    std::vector<uint32_t> exact;
    std::vector<uint32_t> last_part;
    for (uint32_t setting = 0; setting < SETTINGS_ID_TABLE_COUNT; ++setting) {
        if (!is_setting(setting)) {
            continue;
        }
        const std::string name = setting_name(setting);
        if (same(text, name.c_str()) || same(text, setting_row(setting).json_path)) {
            exact.push_back(setting);
        } else if (same(text, name.substr(name.rfind('/') + 1).c_str())) {
            last_part.push_back(setting);
        }
    }
    return exact.empty() ? last_part : exact;
}

const option_t *option_with_id(uint32_t setting, uint32_t id)
{
    for (const option_t *option : options_of(setting)) {
        if (option->id == id) {
            return option;
        }
    }
    return nullptr;
}

const option_t *option_with_value(uint32_t setting, uint32_t value)
{
    for (const option_t *option : options_of(setting)) {
        if (option->value == value) {
            return option;
        }
    }
    return nullptr;
}

std::string listed(const std::vector<const option_t *> &options)
{
    std::string text;
    for (const option_t *option : options) {
        text += (text.empty() ? "" : ", ") + std::to_string(option->id) + " " + option->key;
    }
    return text;
}

// The options whose `column`, key or name, is the text.
std::vector<const option_t *> options_with(uint32_t setting, const char *option_t::*column, const std::string &text)
{
    std::vector<const option_t *> found;
    for (const option_t *option : options_of(setting)) {
        if (same(text, option->*column)) {
            found.push_back(option);
        }
    }
    return found;
}

// A scheduled capture, camera_schedule.h. `text` is "07:30" or "off".
uint32_t parse_schedule(const std::string &text, uint32_t present)
{
    if (same(text, "off")) {
        return 0;
    }
    const size_t colon = std::min(text.find(':'), text.size());
    uint32_t hour = 0;
    uint32_t minute = 0;
    if (!to_number(text.substr(0, colon), hour) || !to_number(text.substr(std::min(colon + 1, text.size())), minute) ||
        hour > 23 || minute > 59) {
        fail(WRONG_USAGE, "a scheduled capture is a time of day such as 07:30, or off, not \"%s\"", text.c_str());
    }
    camera_schedule_t schedule = camera_schedule_unpack(present);
    schedule.enabled = 1;
    schedule.minute = static_cast<uint8_t>(minute);
    schedule.hour = static_cast<uint8_t>(hour);
    return camera_schedule_pack(schedule);
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

} // namespace

const settings_id_entry_t &setting_row(uint32_t setting)
{
    uint32_t count = 0;
    return camera_settings_id_table(camera_model(), &count)[setting];
}

std::string setting_name(uint32_t setting)
{
    std::string path = setting_row(setting).json_path;
    constexpr char HEAD[] = "modes/";
    constexpr char MIDDLE[] = "/settings/";
    const size_t middle = path.find(MIDDLE);
    if (!path.starts_with(HEAD) || middle == std::string::npos) {
        return path;
    }
    const size_t block = sizeof HEAD - 1;
    return path.substr(block, middle - block) + "/" + path.substr(middle + sizeof MIDDLE - 1);
}

uint32_t find_setting(const std::string &text)
{
    uint32_t number = 0;
    if (to_number(text, number)) {
        if (!is_setting(number)) {
            fail(WRONG_USAGE, "this camera has no setting %u; \"zvcam settings\" lists them", number);
        }
        return number;
    }
    const std::vector<uint32_t> found = settings_named(text);
    if (found.empty()) {
        fail(WRONG_USAGE, "this camera has no setting \"%s\"; \"zvcam settings\" lists them", text.c_str());
    }
    if (found.size() > 1) {
        std::string candidates;
        for (const uint32_t setting : found) {
            candidates += (candidates.empty() ? "" : ", ") + std::to_string(setting) + " " + setting_name(setting);
        }
        fail(WRONG_USAGE, "\"%s\" names several settings: %s", text.c_str(), candidates.c_str());
    }
    return found.front();
}

const std::vector<option_t *> &options_of(uint32_t setting)
{
    static const std::vector<option_t *> NONE;
    const auto &options = getCameraOptions(camera_model());
    const auto found = options.find(setting);
    return found == options.end() ? NONE : found->second;
}

uint32_t parse_option(uint32_t setting, const std::string &text, uint32_t present)
{
    return setting == SETTING_SCHEDULED_CAPTURE ? parse_schedule(text, present) : find_option(setting, text);
}

uint32_t find_option(uint32_t setting, const std::string &text)
{
    const auto keys = options_with(setting, &option_t::key, text);
    if (!keys.empty()) {
        return keys.front()->id;
    }
    uint32_t number = 0;
    if (to_number(text, number) && (options_of(setting).empty() || optionIdExists(camera_model(), setting, number))) {
        return number;
    }
    const auto names = options_with(setting, &option_t::name, text);
    if (names.size() > 1) {
        fail(WRONG_USAGE, "\"%s\" names several options of setting %u: %s", text.c_str(), setting,
             listed(names).c_str());
    }
    if (names.empty()) {
        const auto &options = options_of(setting);
        fail(WRONG_USAGE, "setting %u, %s, has no option \"%s\"; it has %s", setting, setting_name(setting).c_str(),
             text.c_str(), options.empty() ? "numbers" : listed({options.begin(), options.end()}).c_str());
    }
    return names.front()->id;
}

std::string option_text(uint32_t setting, uint32_t id)
{
    if (setting == SETTING_SCHEDULED_CAPTURE) {
        return schedule_text(id);
    }
    const option_t *option = option_with_id(setting, id);
    if (option == nullptr) {
        return std::to_string(id);
    }
    if (options_with(setting, &option_t::name, option->name).size() > 1) {
        return std::string(option->name) + " [" + option->key + "]";
    }
    return option->name;
}

std::string option_text(uint32_t setting, const std::string &id)
{
    uint32_t number = 0;
    return to_number(id, number) ? option_text(setting, number) : id;
}

bool default_option(uint32_t setting, uint32_t &id)
{
    if (options_of(setting).empty() || skipOptionCheck(setting, NO_VALUE)) {
        return false;
    }
    id = getOptionIdByValue(camera_model(), setting, NO_VALUE, 0);
    return true;
}

uint32_t option_value(uint32_t setting, uint32_t id, int64_t high)
{
    const uint32_t value = getOptionValueById(camera_model(), setting, id);
    return static_cast<uint32_t>(parse_number(std::to_string(value), setting_name(setting).c_str(), 0, high));
}

uint32_t find_value(uint32_t setting, const std::string &text, int64_t high)
{
    return option_value(setting, find_option(setting, text), high);
}

std::string value_text(uint32_t setting, uint32_t value)
{
    const option_t *option = option_with_value(setting, value);
    return option != nullptr ? option_text(setting, option->id) : std::to_string(value);
}

void write_option(Json &json, uint32_t setting, uint32_t id)
{
    json.member("id", id);
    const option_t *option = option_with_id(setting, id);
    if (option != nullptr) {
        json.member("key", option->key);
    }
    if (setting == SETTING_SCHEDULED_CAPTURE) {
        json.member("name", schedule_text(id));
    } else if (option != nullptr) {
        json.member("name", option->name);
    }
}

void write_value(Json &json, uint32_t setting, int64_t value)
{
    json.open('{').member("value", value);
    if (value >= 0) {
        if (const option_t *option = option_with_value(setting, static_cast<uint32_t>(value)); option != nullptr) {
            write_option(json, setting, option->id);
        }
    }
    json.close();
}

} // namespace zvcam
