// What a camera's events are on its topics.
#pragma once

#include "outbox.h"
#include "topics.h"

#include <map>
#include <memory>
#include <string>
#include <zvservice/subscription.h>

namespace zvmqtt {

// One thread.
class Publisher {
  public:
    // `discovery` is its prefix, empty for none. Outbox and topics outlive it.
    Publisher(Outbox &outbox, const Topics &topics, std::string discovery);

    // What changed, which takes little; then the rest, of which what is on offer takes some tenths of a millisecond.
    void publish_change(const zvservice::Event &event);
    void publish(const zvservice::Event &event);

    void set_online(bool online);

    // Home automation has come up, and knows nothing.
    void send_discovery_again();

  private:
    void publish_state(const zvservice::Snapshot &snapshot);

    Outbox &m_outbox;
    const Topics &m_topics;
    const std::string m_discovery;

    // In the order in which they are told: a camera that is online has its state there.
    const Outbox::Slot m_link;
    const Outbox::Slot m_camera;
    const Outbox::Slot m_status;
    const Outbox::Slot m_settings;
    const Outbox::Slot m_available;
    const Outbox::Slot m_availability;
    std::map<std::string, Outbox::Slot> m_documents; // of discovery, by their topics

    std::string m_known_camera;                        // without what is no reason to tell it anew
    std::shared_ptr<const zvservice::State> m_offered; // of which what is on offer was told last
    std::string m_known_available;
};

} // namespace zvmqtt
