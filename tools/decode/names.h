// The names of what messages carry. All results are static text.
#pragma once

#include <cstdint>
#include <string>

namespace zv {

// An element's tag, such as "CMDARG"; null for an unknown one.
const char *tag_name(uint8_t tag);

// A group of the remote API, such as "VIDEO"; null for an unknown one.
const char *group_name(uint8_t group);

// An action of a group, such as "REMOTE_VIDEO_FPS_SET", or the setting that it writes; null for one without a name.
const char *action_name(uint8_t group, uint8_t action);

// A setting, such as "modes/video/settings/fps"; null for a number without one.
const char *setting_name(uint32_t id);

// A daemon command. Where the daemon's numbering is not settled, it is one of two names, both told. Empty for a number
// without a name.
std::string daemon_command_name(uint32_t command);

} // namespace zv
