#include "assets.h"
#include "handlers.h"

#include <memory>
#include <string>
#include <zvservice/catalogue.h>
#include <zvservice/documents.h>
#include <zvservice/statistics.h>

namespace zvweb {

using zvservice::Catalogue;
using zvservice::LinkState;
using zvservice::Result;
using zvservice::Snapshot;

namespace {

// Of documents that stay where they are, with braces around them.
Answer shared_documents(std::string_view head, const std::shared_ptr<const Rendering> &rendering,
                        std::vector<std::string_view> pieces)
{
    Answer answer = json_answer("{");
    answer.head.append(head);
    answer.shared = std::move(pieces);
    answer.shared.emplace_back("}");
    answer.owner = rendering;
    return answer;
}

// The revision names the values. A camera that is lost keeps its values, and its clients are to hear of it all the
// same.
std::string state_tag(const Snapshot &snapshot)
{
    std::string tag = "W/\"" + *snapshot.epoch + "-" + std::to_string(snapshot.revision);
    if (snapshot.link != LinkState::UP) {
        tag.append("-").append(zvservice::link_state_name(snapshot.link));
    }
    return tag + "\"";
}

} // namespace

Reply read_page(Service &, const Request &request, std::string_view)
{
    return asset(request);
}

Reply read_camera(Service &service, const Request &, std::string_view)
{
    return json_answer(zvservice::camera_json(*service.camera.snapshot()));
}

Reply read_state(Service &service, const Request &request, std::string_view)
{
    const std::shared_ptr<const Snapshot> snapshot = service.camera.snapshot();
    const std::shared_ptr<const Rendering> rendering = service.renderings.of(*snapshot);
    std::vector<std::string_view> documents = {EMPTY_DOCUMENTS};
    if (rendering != nullptr) {
        documents = {rendering->status(), ",", rendering->settings()};
    }
    Answer answer = shared_documents(state_head(*snapshot), rendering, std::move(documents));
    answer.set_tag(state_tag(*snapshot), request.header(MHD_HTTP_HEADER_IF_NONE_MATCH));
    return answer;
}

Reply read_status(Service &service, const Request &, std::string_view)
{
    const auto rendering = service.rendering();
    return rendering != nullptr ? shared_documents("", rendering, {rendering->status()}) : no_state_yet();
}

Reply read_settings(Service &service, const Request &, std::string_view)
{
    const auto rendering = service.rendering();
    return rendering != nullptr ? shared_documents("", rendering, {rendering->settings()}) : no_state_yet();
}

Reply read_setting(Service &service, const Request &, std::string_view parameter)
{
    const auto rendering = service.rendering();
    if (rendering == nullptr) {
        return no_state_yet();
    }
    uint32_t setting = 0;
    const Result found = Catalogue(rendering->state().model()).find_setting(std::string(parameter), setting);
    return found.done() ? json_answer(zvservice::setting_json(rendering->state(), setting)) : problem(found);
}

Reply read_catalogue(Service &service, const Request &request, std::string_view)
{
    const auto rendering = service.rendering();
    if (rendering == nullptr) {
        return no_state_yet();
    }
    const auto catalogue = service.renderings.catalogue(rendering->state().model());
    Answer answer;
    answer.shared = {*catalogue};
    answer.owner = catalogue;
    answer.cacheable = true;
    answer.set_tag(content_tag(*catalogue), request.header(MHD_HTTP_HEADER_IF_NONE_MATCH));
    return answer;
}

Reply read_available(Service &service, const Request &, std::string_view)
{
    const auto rendering = service.rendering();
    return rendering != nullptr ? json_answer(available_document(*rendering)) : no_state_yet();
}

Reply read_events(Service &, const Request &request, std::string_view)
{
    if (request.is_head()) { // no stream, not even its end
        Answer answer;
        answer.content_type = EVENTS_TYPE;
        return answer;
    }
    const auto last_event = request.header("Last-Event-ID");
    return Stream{last_event ? std::optional<std::string>(*last_event) : std::nullopt};
}

Reply read_metrics(Service &service, const Request &, std::string_view)
{
    zvservice::MetricsText text;
    zvservice::write_metrics(text, *service.camera.snapshot(), service.camera.statistics());
    text.family("zv_clients", "gauge", "Connections that are open.");
    text.sample("", static_cast<uint64_t>(service.connections.count()));
    text.family("zv_event_clients", "gauge", "Of these the event streams.");
    text.sample("", static_cast<uint64_t>(service.events.log().readers()));
    service.counters.write(text, "From a request's arrival to the end of its answer, event streams left out.");
    Answer answer = json_answer(text.end());
    answer.content_type = zvservice::METRICS_TYPE;
    return answer;
}

} // namespace zvweb
