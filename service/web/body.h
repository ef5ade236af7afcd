// The JSON bodies of requests.
#pragma once

#include "reply.h"
#include "request.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <span>

namespace zvweb {

// A member that a body may have.
struct BodyMember {
    const char *name;
    bool required;
    bool (*fits)(const nlohmann::json &value);
    const char *shape; // "a number or a text"
};

bool is_true(const nlohmann::json &value);
bool is_bool(const nlohmann::json &value);
bool is_number(const nlohmann::json &value); // whole, of 32 bits, without a sign
bool is_option(const nlohmann::json &value); // a number or a text

// Reads an object of these members and no others into `body`; what is wrong with it otherwise. Where no member is
// required a request may come without a body, which is read as an empty object.
std::optional<Answer> read_body(const Request &request, std::span<const BodyMember> members, nlohmann::json &body);

} // namespace zvweb
