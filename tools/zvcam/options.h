// Settings and options as a person names them. A name may fit several; then the message lists them.
#pragma once

#include "json.h"

#include <cstdint>
#include <string>
#include <vector>
#include <zvctrl/camera_settings.h>

namespace zvcam {

// The row of a setting; it must be one.
const settings_id_entry_t &setting_row(uint32_t setting);

// "video/resolution" for "modes/video/settings/resolution"; a bare name as it is.
std::string setting_name(uint32_t setting);

// The setting with this number, path, or name; other texts are wrong usage.
uint32_t find_setting(const std::string &text);

// In menu order. Empty for a camera without a catalogue, whose options are the firmware's values.
const std::vector<option_t *> &options_of(uint32_t setting);

// The option that a person names: for the scheduled capture a time of day or off, which keeps the clock format of
// `present`; for the others as find_option says.
uint32_t parse_option(uint32_t setting, const std::string &text, uint32_t present);

// The option with this id, key or name, or an id that the setting takes without listing it; other texts are wrong
// usage. Keys go before names.
uint32_t find_option(uint32_t setting, const std::string &text);

// An option as a person calls it: its name, with the key after it where another option has the same name.
std::string option_text(uint32_t setting, uint32_t id);
std::string option_text(uint32_t setting, const std::string &id);

// The id of the option that an unknown value reads as; false for a setting that takes every value.
bool default_option(uint32_t setting, uint32_t &id);

// The firmware's value of an option. A value above `high`, the largest that goes out whole, is wrong usage: a setting
// that lists no options takes any number.
uint32_t option_value(uint32_t setting, uint32_t id, int64_t high);

// The same for an option given by id, key or name.
uint32_t find_value(uint32_t setting, const std::string &text, int64_t high);

// The firmware's value as an option.
std::string value_text(uint32_t setting, uint32_t value);

// The members of an option: "id", and "key" and "name" where the setting lists it.
void write_option(Json &json, uint32_t setting, uint32_t id);

// The object of a firmware's value: "value", and the members of the option where `setting` lists one for it.
void write_value(Json &json, uint32_t setting, int64_t value);

} // namespace zvcam
