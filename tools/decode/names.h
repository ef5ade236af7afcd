// The names of what messages carry. All views are of static text, and empty for what has no name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

// An element's tag, such as "CMDARG".
std::string_view tag_name(uint8_t tag);

// A group of the remote API, such as "VIDEO".
std::string_view group_name(uint8_t group);

// An action of a group, such as "REMOTE_VIDEO_FPS_SET".
std::string_view action_name(uint8_t group, uint8_t action);

// A setting, such as "modes/video/settings/fps".
std::string_view setting_name(uint32_t id);

// A daemon command. Where the daemon's numbering is not settled, it is one of two names, and both are given.
std::string daemon_command_name(uint32_t command);

} // namespace zv
