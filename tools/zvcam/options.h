// Settings and options as a person names them, and as JSON shows them.
#pragma once

#include "json.h"

#include <cstdint>
#include <string>
#include <zvservice/catalogue.h>

namespace zvcam {

// The camera's. Made when it is first asked for, and so not before a link is open: the camera may just be coming up.
const zvservice::Catalogue &catalogue();

// What a person names; other texts end the command. `present` is the setting's option now.
uint32_t find_setting(const std::string &text);
uint32_t find_option(uint32_t setting, const std::string &text, uint32_t present = 0);

// The firmware's value of an option. A value above `high`, the largest that goes out whole, is wrong usage: a setting
// that lists no options takes any number.
uint32_t option_value(uint32_t setting, uint32_t id, int64_t high);

// The same for an option as a person names it.
uint32_t find_value(uint32_t setting, const std::string &text, int64_t high);

// The firmware's value as an option.
std::string value_text(uint32_t setting, uint32_t value);

// The members of an option: "id", and "key" and "name" where the setting lists it.
void write_option(Json &json, uint32_t setting, uint32_t id);

// The object of a firmware's value: "value", and the members of the option where `setting` lists one for it.
void write_value(Json &json, uint32_t setting, int64_t value);

} // namespace zvcam
