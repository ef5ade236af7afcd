#include "events.h"

#include <charconv>
#include <optional>
#include <string_view>
#include <utility>

namespace zvweb {

using zvservice::Event;
using zvservice::Snapshot;

namespace {

// How long a client waits before it connects again, in milliseconds.
constexpr char RETRY[] = "retry: 1000\n";

constexpr char COMMENT[] = ":\n\n";

std::string event_text(const Snapshot &snapshot, std::string_view name, std::string_view data)
{
    std::string text;
    text.reserve(data.size() + 64);
    text.append("id: ").append(*snapshot.epoch).append("-").append(std::to_string(snapshot.revision));
    text.append("\nevent: ").append(name).append("\ndata: ").append(data).append("\n\n");
    return text;
}

std::string state_data(const Snapshot &snapshot, const Rendering *rendering)
{
    std::string text("{");
    text.append(state_head(snapshot));
    if (rendering != nullptr) {
        text.append(rendering->status()).append(",").append(rendering->settings());
    } else {
        text.append(EMPTY_DOCUMENTS);
    }
    return text.append("}");
}

// The number of "EPOCH-REVISION" where it is of this epoch.
std::optional<uint64_t> revision_of(std::string_view id, std::string_view epoch)
{
    if (id.substr(0, epoch.size()) != epoch || id.substr(epoch.size(), 1) != "-") {
        return std::nullopt;
    }
    const std::string_view digits = id.substr(epoch.size() + 1);
    uint64_t revision = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), revision);
    return error == std::errc() && end == digits.data() + digits.size() ? std::optional(revision) : std::nullopt;
}

} // namespace

Events::Events(zvservice::Camera &camera, Renderings &renderings)
    : m_camera(camera), m_renderings(renderings), m_subscription(camera.subscribe()), m_present(camera.snapshot()),
      m_link(link_of(*m_present))
{
}

bool Events::pass_on(std::chrono::milliseconds patience)
{
    const std::optional<Event> event = m_subscription.next(patience);
    if (event) {
        publish(*event);
    }
    if (const auto now = std::chrono::steady_clock::now(); now - m_commented >= COMMENT_INTERVAL) {
        m_commented = now;
        m_log.publish(EventLog::Kind::OTHER, m_present->revision, COMMENT);
    }
    return !m_subscription.ended();
}

void Events::publish(const Event &event)
{
    const std::lock_guard lock(m_mutex);
    m_present = event.snapshot;
    const std::shared_ptr<const Rendering> before = std::exchange(m_rendering, m_renderings.of(*m_present));
    switch (event.kind) {
    case Event::Kind::WHOLE:
        m_log.publish(EventLog::Kind::WHOLE, m_present->revision,
                      event_text(*m_present, "state", state_data(*m_present, m_rendering.get())));
        break;
    case Event::Kind::CHANGE:
        m_log.publish(EventLog::Kind::CHANGE, m_present->revision,
                      event_text(*m_present, "change", event.change->json()));
        break;
    case Event::Kind::LINK:
        break;
    }
    if (m_rendering != before && m_rendering != nullptr &&
        (before == nullptr || before->available() != m_rendering->available())) {
        m_log.publish(EventLog::Kind::OTHER, m_present->revision,
                      event_text(*m_present, "available", available_document(*m_rendering)));
    }
    // A change may be the first to bring another link: who comes in before the link's own event has it already.
    if (const Link known = std::exchange(m_link, link_of(*m_present));
        known != m_link && event.kind != Event::Kind::WHOLE) {
        const std::string link = zvservice::link_state_name(m_present->link);
        m_log.publish(EventLog::Kind::OTHER, m_present->revision,
                      event_text(*m_present, "link", "{\"link\":\"" + link + "\"}"));
    }
}

void Events::join(EventLog::Reader &reader, const Stream &stream)
{
    const std::lock_guard lock(m_mutex);
    if (stream.last_event) {
        const std::optional<uint64_t> revision = revision_of(*stream.last_event, *m_present->epoch);
        if (revision && m_log.join_after(reader, *revision)) {
            return;
        }
    }
    Snapshot whole = *m_present;
    if (const auto now = m_camera.snapshot(); now->revision == whole.revision) {
        whole.taken = now->taken; // polls that bring nothing new are no events
    }
    m_log.join(reader, RETRY + event_text(whole, "state", state_data(whole, m_rendering.get())));
}

} // namespace zvweb
