#include "reply.h"

#include "request.h"

#include <algorithm>
#include <microhttpd.h>
#include <text.h>
#include <zvservice/documents.h>
#include <zvservice/json.h>

namespace zvweb {

using zvservice::Outcome;
using zvservice::Result;

namespace {

constexpr char PROBLEM_TYPE[] = "application/problem+json";

// The tag's own text: weak or strong is the same here.
std::string_view opaque(std::string_view tag)
{
    return tag.substr(0, 2) == "W/" ? tag.substr(2) : tag;
}

// Whether a list of tags, or "*", has this one.
bool holds(std::string_view tags, std::string_view tag)
{
    while (!tags.empty()) {
        const size_t end = std::min(tags.find(','), tags.size());
        const std::string_view known = zvprogram::trim(tags.substr(0, end));
        if (known == "*" || opaque(known) == opaque(tag)) {
            return true;
        }
        tags.remove_prefix(std::min(end + 1, tags.size()));
    }
    return false;
}

} // namespace

void Answer::set_tag(std::string tag, std::optional<std::string_view> if_none_match)
{
    if (if_none_match && holds(*if_none_match, tag)) {
        status = MHD_HTTP_NOT_MODIFIED; // with the length of the body, which stays here
    }
    headers.emplace_back(MHD_HTTP_HEADER_ETAG, std::move(tag));
}

Answer json_answer(std::string text)
{
    Answer answer;
    answer.head = std::move(text);
    return answer;
}

Answer without_body(unsigned status)
{
    Answer answer;
    answer.status = status;
    answer.content_type = nullptr;
    return answer;
}

Answer problem(unsigned status, std::string_view detail, std::string_view members)
{
    zvservice::Json text;
    text.open('{').member("type", "about:blank").member("title", MHD_get_reason_phrase_for(status));
    text.member("status", status).member("detail", detail);
    if (!members.empty()) {
        text.raw(members);
    }
    Answer answer = json_answer(text.close().text());
    answer.status = status;
    answer.content_type = PROBLEM_TYPE;
    return answer;
}

Answer problem(const Result &result)
{
    const auto status = static_cast<unsigned>(result.http_status());
    switch (result.outcome()) {
    case Outcome::NO_ANSWER:
        return problem(status, result.sentence() + (result.sentence().ends_with(zvservice::NOTHING_SENT)
                                                        ? " (a frozen camera may still carry out what was before it)"
                                                        : " (a frozen camera may still carry it out)"));
    case Outcome::FORBIDDEN:
        return problem(status, result.sentence(), "\"why\":" + zvservice::why_json(result.reasons()));
    case Outcome::REFUSED:
    case Outcome::FIRMWARE_ERROR:
        return problem(status, result.sentence(), "\"code\":" + std::to_string(result.code()));
    case Outcome::NOT_THERE:
    case Outcome::SYSTEM_LIMIT:
        return unavailable(result.sentence());
    default:
        return problem(status, result.sentence());
    }
}

Answer unavailable(std::string_view detail)
{
    Answer answer = problem(MHD_HTTP_SERVICE_UNAVAILABLE, detail);
    answer.headers.emplace_back(MHD_HTTP_HEADER_RETRY_AFTER, "1");
    return answer;
}

Answer no_state_yet()
{
    return unavailable("the camera has not told its state yet");
}

Answer body_too_large()
{
    return problem(MHD_HTTP_CONTENT_TOO_LARGE, "a body has " + std::to_string(BODY_MAX) + " bytes at most");
}

Answer last(Answer answer)
{
    answer.headers.emplace_back(MHD_HTTP_HEADER_CONNECTION, "close");
    return answer;
}

std::string content_tag(std::string_view content)
{
    return std::string("\"").append(std::to_string(std::hash<std::string_view>()(content))).append("\"");
}

} // namespace zvweb
