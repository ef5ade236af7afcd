#include "body.h"

#include <algorithm>
#include <string>
#include <text.h>

namespace zvweb {

using nlohmann::json;
using zvprogram::JsonMember;

namespace {

bool is_json(std::string_view content_type)
{
    return zvprogram::lower_case(zvprogram::trim(content_type.substr(0, content_type.find(';')))) == JSON_TYPE;
}

} // namespace

std::optional<Answer> read_body(const Request &request, std::span<const JsonMember> members, json &body)
{
    const std::optional<std::string_view> type = request.header(MHD_HTTP_HEADER_CONTENT_TYPE);
    const bool present = request.body_size() > 0;
    if (type ? !is_json(*type) : present) {
        return problem(MHD_HTTP_UNSUPPORTED_MEDIA_TYPE, "a body is to be application/json");
    }
    if (request.body_size() > BODY_MAX) {
        return body_too_large();
    }
    const bool optional = std::ranges::none_of(members, &JsonMember::required);
    body = present || !optional ? json::parse(request.body(), nullptr, false) : json::object();
    if (body.is_discarded()) {
        return problem(MHD_HTTP_BAD_REQUEST, "the body is no JSON");
    }
    if (!body.is_object()) {
        return problem(MHD_HTTP_UNPROCESSABLE_CONTENT, "the body is to be an object");
    }
    const std::string wrong = zvprogram::misfit(members, body);
    return wrong.empty() ? std::nullopt : std::optional(problem(MHD_HTTP_UNPROCESSABLE_CONTENT, wrong));
}

} // namespace zvweb
