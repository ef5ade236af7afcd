// The JSON bodies of requests.
#pragma once

#include "reply.h"
#include "request.h"

#include <nlohmann/json.hpp>

#include <members.h>
#include <optional>
#include <span>

namespace zvweb {

// Reads an object of these members and no others into `body`; what is wrong with it otherwise. Where no member is
// required a request may come without a body, which is read as an empty object.
std::optional<Answer> read_body(const Request &request, std::span<const zvprogram::JsonMember> members,
                                nlohmann::json &body);

} // namespace zvweb
