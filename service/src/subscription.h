// What a Camera tells as it happens, in order and bounded.
#pragma once

#include "snapshot.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace zvservice {

struct Event {
    enum class Kind : uint8_t {
        WHOLE,  // everything: the first event, and again for a reader that fell behind
        CHANGE, // the documents differ, by `change`
        LINK,   // the link is another one, or the camera was switched on or off; the revision stays
    };
    Kind kind = Kind::WHOLE;
    std::shared_ptr<const Snapshot> snapshot; // as it was then, never null
    std::shared_ptr<const Change> change;     // of a CHANGE, else null
};

// One reader's queue of events. It holds EVENT_MAX; a reader that is slower loses them all and gets the WHOLE in their
// place. May outlive its Camera. In a child after a fork it has ended. One thread at a time.
class ZV_API Subscription {
  public:
    static constexpr size_t EVENT_MAX = 64;

    class Queue;
    explicit Subscription(std::shared_ptr<Queue> queue); // for Camera
    ~Subscription();
    Subscription(Subscription &&) noexcept;
    Subscription &operator=(Subscription &&) noexcept;

    // The next event, waiting for it no longer than `patience`. Nothing when none came in time, or when the Camera has
    // ended: see ended().
    std::optional<Event> next(std::chrono::milliseconds patience);

    // The Camera has ended, and every event was read.
    bool ended() const;

    // Readable while next() has something to say or the Camera has ended: for poll() beside other descriptors. It is
    // the subscription's own, and only to be waited on.
    int descriptor() const;

  private:
    std::shared_ptr<Queue> m_queue;
};

} // namespace zvservice
