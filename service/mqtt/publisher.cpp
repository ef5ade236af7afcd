#include "publisher.h"

#include "discovery.h"

#include <utility>
#include <zvservice/documents.h>
#include <zvservice/json.h>

namespace zvmqtt {

using zvservice::Event;
using zvservice::Json;
using zvservice::Snapshot;

namespace {

std::string camera_without_revision(const Snapshot &snapshot)
{
    Snapshot any_revision = snapshot;
    any_revision.revision = 0;
    return zvservice::camera_json(any_revision);
}

std::string change_json(const zvservice::Change &change, const std::string &epoch)
{
    Json json;
    json.open('{').member("revision", change.revision).member("epoch", epoch);
    json.key("status").raw("{" + change.status + "}").key("settings").raw("{" + change.settings + "}");
    return json.close().text();
}

std::string available_json(uint64_t revision, const std::string &settings)
{
    Json json;
    return json.open('{').member("revision", revision).key("settings").raw(settings).close().text();
}

} // namespace

Publisher::Publisher(Outbox &outbox, const Topics &topics, std::string discovery)
    : m_outbox(outbox), m_topics(topics), m_discovery(std::move(discovery)), m_link(outbox.add(topics.link(), 1)),
      m_camera(outbox.add(topics.camera(), 1)), m_status(outbox.add(topics.status(), 0)),
      m_settings(outbox.add(topics.settings(), 0)), m_available(outbox.add(topics.available(), 0)),
      m_availability(outbox.add(topics.availability(), 1))
{
}

void Publisher::publish_change(const Event &event)
{
    if (event.kind == Event::Kind::CHANGE) {
        m_outbox.put_change(m_topics.change(), change_json(*event.change, *event.snapshot->epoch));
    }
}

void Publisher::publish(const Event &event)
{
    const Snapshot &snapshot = *event.snapshot;
    m_outbox.put(m_link, zvservice::link_state_name(snapshot.link));
    // Each poll could tell another name or firmware, but it takes a look at files: an event is a good time.
    if (std::string camera = camera_without_revision(snapshot); m_known_camera != camera) {
        m_known_camera = std::move(camera);
        m_outbox.put(m_camera, zvservice::camera_json(snapshot));
    }
    if (snapshot.state != nullptr && event.kind != Event::Kind::LINK) {
        publish_state(snapshot);
    }
}

void Publisher::publish_state(const Snapshot &snapshot)
{
    m_outbox.put(m_status, zvservice::status_json(*snapshot.state));
    m_outbox.put(m_settings, zvservice::settings_json(*snapshot.state));
    const auto before = std::exchange(m_offered, snapshot.state);
    if (before != nullptr && before->model() == snapshot.state->model() &&
        zvservice::same_offers(before->values(), snapshot.state->values(), before->model())) {
        return;
    }
    std::string available = zvservice::available_json(*snapshot.state);
    if (m_known_available == available) {
        return;
    }
    m_known_available = std::move(available);
    m_outbox.put(m_available, available_json(snapshot.revision, m_known_available));
    if (m_discovery.empty()) {
        return;
    }
    for (Document &document : discovery_documents(m_discovery, m_topics, *snapshot.state)) {
        auto [known, is_new] = m_documents.try_emplace(document.topic);
        if (is_new) {
            known->second = m_outbox.add(document.topic, 1, m_status); // it tells how to read the state
        }
        m_outbox.put(known->second, std::move(document.payload));
    }
}

void Publisher::set_online(bool online)
{
    m_outbox.put(m_availability, online ? ONLINE : OFFLINE);
}

void Publisher::send_discovery_again()
{
    for (const auto &[topic, slot] : m_documents) {
        m_outbox.send_again(slot);
    }
}

} // namespace zvmqtt
