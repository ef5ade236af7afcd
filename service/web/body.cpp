#include "body.h"

#include "text.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace zvweb {

using nlohmann::json;

namespace {

bool is_json(std::string_view content_type)
{
    return lower_case(trim(content_type.substr(0, content_type.find(';')))) == JSON_TYPE;
}

std::optional<Answer> check_members(std::span<const BodyMember> members, const json &body)
{
    for (const auto &[name, value] : body.items()) {
        const auto known = std::ranges::find(members, name, &BodyMember::name);
        if (known == members.end()) {
            return problem(MHD_HTTP_UNPROCESSABLE_CONTENT, "\"" + name + "\" is no member of this body");
        }
        if (!known->fits(value)) {
            return problem(MHD_HTTP_UNPROCESSABLE_CONTENT, "\"" + name + "\" is to be " + known->shape);
        }
    }
    for (const BodyMember &member : members) {
        if (member.required && !body.contains(member.name)) {
            return problem(MHD_HTTP_UNPROCESSABLE_CONTENT, std::string("\"") + member.name + "\" is missing");
        }
    }
    return std::nullopt;
}

} // namespace

bool is_true(const json &value)
{
    return value.is_boolean() && value.get<bool>();
}

bool is_bool(const json &value)
{
    return value.is_boolean();
}

bool is_number(const json &value)
{
    return value.is_number_unsigned() && value.get<uint64_t>() <= UINT32_MAX;
}

bool is_option(const json &value)
{
    return is_number(value) || value.is_string();
}

std::optional<Answer> read_body(const Request &request, std::span<const BodyMember> members, json &body)
{
    const std::optional<std::string_view> type = request.header(MHD_HTTP_HEADER_CONTENT_TYPE);
    const bool present = request.body_size() > 0;
    if (type ? !is_json(*type) : present) {
        return problem(MHD_HTTP_UNSUPPORTED_MEDIA_TYPE, "a body is to be application/json");
    }
    if (request.body_size() > BODY_MAX) {
        return body_too_large();
    }
    const bool optional = std::ranges::none_of(members, &BodyMember::required);
    body = present || !optional ? json::parse(request.body(), nullptr, false) : json::object();
    if (body.is_discarded()) {
        return problem(MHD_HTTP_BAD_REQUEST, "the body is no JSON");
    }
    if (!body.is_object()) {
        return problem(MHD_HTTP_UNPROCESSABLE_CONTENT, "the body is to be an object");
    }
    return check_members(members, body);
}

} // namespace zvweb
