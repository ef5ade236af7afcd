#include "payload.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <members.h>
#include <span>
#include <zvservice/documents.h>
#include <zvservice/result.h>

namespace zvmqtt {

using nlohmann::json;
using std::chrono::milliseconds;
using zvprogram::JsonMember;
using zvservice::Camera;
using zvservice::Outcome;
using zvservice::Result;

namespace {

constexpr JsonMember COMMAND_MEMBER = {"command", true, [](const json &value) { return value.is_string(); }, "a text"};
constexpr JsonMember SET_MEMBERS[] = {zvprogram::OPTION_MEMBER, zvprogram::FORCE_MEMBER};
constexpr JsonMember NAME_ALONE[] = {COMMAND_MEMBER};
constexpr JsonMember TAG_MEMBERS[] = {COMMAND_MEMBER, zvprogram::FILE_MEMBER, zvprogram::OFFSET_MEMBER,
                                      zvprogram::REMOVE_MEMBER};

Answer answer_of(const Result &result, int done)
{
    if (result.done()) {
        return {done, "", "", 0};
    }
    Answer answer = {result.http_status(), result.sentence(), "", result.code()};
    if (result.outcome() == Outcome::FORBIDDEN) {
        answer.why = zvservice::why_json(result.reasons());
    }
    return answer;
}

// A command without arguments.
template <Result (Camera::*operation)(milliseconds patience)>
Work operate(Camera &camera, const json &)
{
    return [&camera](milliseconds patience) { return answer_of((camera.*operation)(patience), STATUS_NO_CONTENT); };
}

Work tag(Camera &camera, const json &body)
{
    return [&camera, file = body["file"].get<std::string>(), offset = body["offset_ms"].get<uint32_t>(),
            remove = body.value("remove", false)](milliseconds patience) {
        return answer_of(camera.tag(file, offset, remove, patience), STATUS_NO_CONTENT);
    };
}

struct CommandRow {
    const char *name;
    std::span<const JsonMember> members;
    Work (*work)(Camera &camera, const json &body);
};

constexpr CommandRow COMMANDS[] = {
    {"capture/start", NAME_ALONE, operate<&Camera::start_capture>},
    {"capture/stop", NAME_ALONE, operate<&Camera::stop_capture>},
    {"media/delete-last", NAME_ALONE, operate<&Camera::delete_last>},
    {"media/tag", TAG_MEMBERS, tag},
    {"poll", NAME_ALONE, operate<&Camera::refresh>},
};

Answer wrong(int status, std::string detail)
{
    return {status, std::move(detail), "", 0};
}

} // namespace

std::variant<Work, Answer> read_set(Camera &camera, const std::string &setting, std::string_view payload)
{
    json body = json::parse(payload, nullptr, false);
    if (body.is_discarded()) {
        return wrong(STATUS_BAD_REQUEST, "the payload is no JSON");
    }
    if (!body.is_object()) {
        body = json::object({{"option", std::move(body)}});
    }
    if (const std::string fault = zvprogram::misfit(SET_MEMBERS, body); !fault.empty()) {
        return wrong(STATUS_UNPROCESSABLE, fault);
    }
    zvservice::SetOptions options;
    options.force = body.value("force", false);
    return [&camera, setting, option = zvprogram::option_name(body["option"]), options](milliseconds patience) mutable {
        options.patience = patience;
        const zvservice::Written written = camera.set(setting, option, options);
        return answer_of(written.result, written.shown ? STATUS_OK : STATUS_ACCEPTED);
    };
}

std::variant<Work, Answer> read_command(Camera &camera, std::string_view payload, std::string &request)
{
    const json body = json::parse(payload, nullptr, false);
    if (body.is_discarded()) {
        return wrong(STATUS_BAD_REQUEST, "the payload is no JSON");
    }
    if (!body.is_object()) {
        return wrong(STATUS_UNPROCESSABLE, "the payload is to be an object");
    }
    const auto name = body.find(COMMAND_MEMBER.name);
    if (name == body.end() || !COMMAND_MEMBER.fits(*name)) {
        return wrong(STATUS_UNPROCESSABLE, "\"command\" is to be a text");
    }
    const auto *row = std::ranges::find(COMMANDS, name->get<std::string_view>(), &CommandRow::name);
    if (row == std::end(COMMANDS)) {
        return wrong(STATUS_NOT_FOUND, "there is no command \"" + name->get<std::string>() + "\"");
    }
    request.append("/").append(row->name);
    if (const std::string fault = zvprogram::misfit(row->members, body); !fault.empty()) {
        return wrong(STATUS_UNPROCESSABLE, fault);
    }
    return row->work(camera, body);
}

} // namespace zvmqtt
