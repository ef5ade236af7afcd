// The payloads of requests: what they ask for, or what is wrong with them.
#pragma once

#include "orders.h"

#include <string>
#include <string_view>
#include <variant>

namespace zvmqtt {

inline constexpr size_t PAYLOAD_MAX = 65536;

// Of `5`, `60`, `"60"` or `{"option":"60","force":false}`, for a setting by its number or name.
std::variant<Work, Answer> read_set(zvservice::Camera &camera, const std::string &setting, std::string_view payload);

// Of `{"command":"capture/start"}`. The command's name is added to the request's where it is one.
std::variant<Work, Answer> read_command(zvservice::Camera &camera, std::string_view payload, std::string &request);

} // namespace zvmqtt
