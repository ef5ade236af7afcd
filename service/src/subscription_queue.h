// The events that one reader has not read yet: a Camera's thread offers them, the reader's thread takes them.
#pragma once

#include "subscription.h"

#include <cstdint>
#include <deque>
#include <mutex>

namespace zvservice {

// The reader owns it. A child after a fork can only let go of what its parent made: a thread that it lacks may have
// been at work inside, and what is read from the descriptor is lost for the parent.
class Subscription::Queue {
  public:
    // Begins with the whole. Throws std::system_error where no descriptor can be had.
    static std::shared_ptr<Queue> make(std::shared_ptr<const Snapshot> whole);

    explicit Queue(std::shared_ptr<const Snapshot> whole);
    ~Queue();
    Queue(const Queue &) = delete;
    Queue &operator=(const Queue &) = delete;

    // Never waits for the reader.
    void offer(const Event &event) noexcept;

    // No event comes after it.
    void end() noexcept;

    std::optional<Event> next(std::chrono::milliseconds patience);
    bool ended() const;
    int descriptor() const { return m_descriptor; }

  private:
    bool in_child() const;
    std::optional<Event> take();
    void show_readiness() noexcept;

    const int m_descriptor;
    const uint32_t m_generation;
    mutable std::mutex m_mutex;
    std::deque<Event> m_events;

    // The reader has yet to get the whole, in place of all events: what is the newest by then.
    bool m_whole = true;
    std::shared_ptr<const Snapshot> m_newest;
    bool m_ended = false;
    bool m_readable = false; // the descriptor
};

} // namespace zvservice
