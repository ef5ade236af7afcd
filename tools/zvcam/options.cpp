#include "options.h"

#include "command.h"
#include "failure.h"

#include <cstdint>
#include <zvctrl/camera_setting_ids.h>
#include <zvctrl/camera_settings.h>
#include <zvservice/links.h>

namespace zvcam {

const zvservice::Catalogue &catalogue()
{
    static const zvservice::Catalogue catalogue(zvservice::camera_model());
    return catalogue;
}

uint32_t find_setting(const std::string &text)
{
    uint32_t setting = 0;
    const zvservice::Result found = catalogue().find_setting(text, setting);
    const bool unknown = !found.done() && catalogue().settings_named(text).empty();
    check(found, unknown ? "\"zvcam settings\" lists them" : nullptr);
    return setting;
}

uint32_t find_option(uint32_t setting, const std::string &text, uint32_t present)
{
    uint32_t id = 0;
    check(catalogue().find_option(setting, text, present, id));
    return id;
}

uint32_t option_value(uint32_t setting, uint32_t id, int64_t high)
{
    const uint32_t value = getOptionValueById(catalogue().model(), setting, id);
    return static_cast<uint32_t>(parse_number(std::to_string(value), catalogue().name(setting).c_str(), 0, high));
}

uint32_t find_value(uint32_t setting, const std::string &text, int64_t high)
{
    return option_value(setting, find_option(setting, text), high);
}

std::string value_text(uint32_t setting, uint32_t value)
{
    const option_t *option = catalogue().option_with_value(setting, value);
    return option != nullptr ? catalogue().option_text(setting, option->id) : std::to_string(value);
}

void write_option(Json &json, uint32_t setting, uint32_t id)
{
    json.member("id", id);
    const option_t *option = catalogue().option(setting, id);
    if (option != nullptr) {
        json.member("key", option->key);
    }
    if (setting == SETTING_SCHEDULED_CAPTURE) {
        json.member("name", catalogue().option_text(setting, id));
    } else if (option != nullptr) {
        json.member("name", option->name);
    }
}

void write_value(Json &json, uint32_t setting, int64_t value)
{
    json.open('{').member("value", value);
    if (value >= 0) {
        const option_t *option = catalogue().option_with_value(setting, static_cast<uint32_t>(value));
        if (option != nullptr) {
            write_option(json, setting, option->id);
        }
    }
    json.close();
}

} // namespace zvcam
