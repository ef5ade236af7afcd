// Makes of what the camera tells the events that clients get: state, change, available, link.
#pragma once

#include "event_log.h"
#include "rendering.h"
#include "reply.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <zvservice/camera.h>

namespace zvweb {

class Events {
  public:
    // A comment goes out so often, which lets both ends notice a connection that is gone.
    static constexpr std::chrono::seconds COMMENT_INTERVAL{15};

    // Both outlive it.
    Events(zvservice::Camera &camera, Renderings &renderings);

    // Waits for the next event of the camera, no longer than `patience`, and publishes it. False when the camera was
    // let go of. One thread.
    bool pass_on(std::chrono::milliseconds patience);

    // Lets a client in. Any thread.
    void join(EventLog::Reader &reader, const Stream &stream);

    EventLog &log() { return m_log; }
    const EventLog &log() const { return m_log; }

  private:
    // With whether the camera is switched off, which a client asks for when it hears of the link.
    using Link = std::pair<zvservice::LinkState, bool>;

    static Link link_of(const zvservice::Snapshot &snapshot) { return {snapshot.link, snapshot.switched_off}; }
    void publish(const zvservice::Event &event);

    zvservice::Camera &m_camera;
    Renderings &m_renderings;
    zvservice::Subscription m_subscription;
    std::chrono::steady_clock::time_point m_commented = std::chrono::steady_clock::now();
    EventLog m_log;

    // Held while an event goes out and while a client comes in: it begins with the whole of the last event.
    std::mutex m_mutex;
    std::shared_ptr<const zvservice::Snapshot> m_present;
    std::shared_ptr<const Rendering> m_rendering; // of the present, or null
    Link m_link;                                  // that clients know of
};

} // namespace zvweb
