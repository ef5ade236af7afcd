#include "body.h"
#include "handlers.h"

#include <string>
#include <zvservice/catalogue.h>
#include <zvservice/documents.h>
#include <zvservice/json.h>

namespace zvweb {

using std::chrono::milliseconds;
using zvprogram::JsonMember;
using zvservice::Camera;
using zvservice::Catalogue;
using zvservice::Result;
using zvservice::Written;

namespace {

using nlohmann::json;

constexpr JsonMember SET_MEMBERS[] = {zvprogram::OPTION_MEMBER, zvprogram::FORCE_MEMBER};
constexpr JsonMember CONFIRM_MEMBERS[] = {{"confirm", true, zvprogram::is_true, "true"}};
constexpr JsonMember TAG_MEMBERS[] = {zvprogram::FILE_MEMBER, zvprogram::OFFSET_MEMBER, zvprogram::REMOVE_MEMBER};

Answer answer_of(const Result &result)
{
    return result.done() ? without_body(MHD_HTTP_NO_CONTENT) : problem(result);
}

// An operation without arguments, for a body of these members.
Reply operate(Service &service, const Request &request, std::span<const JsonMember> members,
              Result (Camera::*operation)(milliseconds patience))
{
    json body;
    if (std::optional<Answer> wrong = read_body(request, members, body)) {
        return *wrong;
    }
    return [&camera = service.camera, operation](milliseconds patience) {
        return answer_of((camera.*operation)(patience));
    };
}

// {"setting":3,"option":{...},"change":{...}}, once the camera tells the option; else without the change.
Answer written_answer(const Catalogue &catalogue, uint32_t setting, uint32_t option, const Written &written)
{
    if (!written.result.done()) {
        return problem(written.result);
    }
    zvservice::Json text;
    text.open('{').member("setting", setting).raw(zvservice::option_member_json(catalogue, setting, option));
    if (written.shown) {
        text.key("change").raw(written.change.json());
    }
    Answer answer = json_answer(text.close().text());
    answer.status = written.shown ? MHD_HTTP_OK : MHD_HTTP_ACCEPTED;
    return answer;
}

} // namespace

Reply set_setting(Service &service, const Request &request, std::string_view parameter)
{
    json body;
    if (std::optional<Answer> wrong = read_body(request, SET_MEMBERS, body)) {
        return *wrong;
    }
    const auto snapshot = service.camera.snapshot();
    if (snapshot->state == nullptr) {
        return snapshot->switched_off ? problem(Result::switched_off("change the setting")) : no_state_yet();
    }
    const Catalogue catalogue(snapshot->state->model());
    uint32_t setting = 0;
    if (const Result found = catalogue.find_setting(std::string(parameter), setting); !found.done()) {
        return problem(found);
    }
    const std::string name = zvprogram::option_name(body["option"]);
    uint32_t id = 0;
    if (const Result found = catalogue.find_option(setting, name, snapshot->state->option(setting), id);
        !found.done()) {
        return problem(found);
    }
    zvservice::SetOptions options;
    options.force = body.value("force", false);
    return [&camera = service.camera, catalogue, setting, id, options](milliseconds patience) mutable {
        options.patience = patience;
        return written_answer(catalogue, setting, id, camera.set(setting, id, options));
    };
}

Reply start_capture(Service &service, const Request &request, std::string_view)
{
    return operate(service, request, {}, &Camera::start_capture);
}

Reply stop_capture(Service &service, const Request &request, std::string_view)
{
    return operate(service, request, {}, &Camera::stop_capture);
}

Reply delete_last(Service &service, const Request &request, std::string_view)
{
    return operate(service, request, CONFIRM_MEMBERS, &Camera::delete_last);
}

Reply delete_all(Service &service, const Request &request, std::string_view)
{
    return operate(service, request, CONFIRM_MEMBERS, &Camera::delete_all);
}

Reply tag_media(Service &service, const Request &request, std::string_view)
{
    json body;
    if (std::optional<Answer> wrong = read_body(request, TAG_MEMBERS, body)) {
        return *wrong;
    }
    return [&camera = service.camera, file = body["file"].get<std::string>(),
            offset = body["offset_ms"].get<uint32_t>(), remove = body.value("remove", false)](milliseconds patience) {
        return answer_of(camera.tag(file, offset, remove, patience));
    };
}

} // namespace zvweb
