// What a Camera knows now, and who wants to hear of each change.
#pragma once

#include "result.h"
#include "snapshot.h"
#include "subscription.h"

#include <memory>
#include <mutex>
#include <vector>

namespace zvservice {

// Whether a daemon answered that came to this: one that refuses, or says that the camera is off, does answer.
constexpr bool is_answer(Outcome poll)
{
    return poll == Outcome::DONE || poll == Outcome::SWITCHED_OFF || poll == Outcome::REFUSED;
}

class Publication {
  public:
    Publication();

    // Never null. Any thread, and a child after a fork, which gets what was there at the fork.
    std::shared_ptr<const Snapshot> snapshot() const;

    // A reader's queue, which begins with the whole and misses no change. Any thread.
    std::shared_ptr<Subscription::Queue> subscribe();

    // The outcome of a poll, with the record where it is DONE. One thread, the poller's.
    void publish(const Result &poll, const all_status_settings_t &record);

    // Ends all subscriptions, those to come too. The present stays as it is from then on: a poll that is cut short at
    // the end tells nothing about the camera.
    void end();

  private:
    void tell(const Event &event);

    std::shared_ptr<const Snapshot> m_present; // held_over_forks
    bool m_answered = false;                   // the poller's: since the daemon's queue came

    // Held while the present changes and the readers are told: a new one gets the change in its whole or as an event.
    std::mutex m_mutex;
    std::vector<std::weak_ptr<Subscription::Queue>> m_readers;
    bool m_ended = false;
};

} // namespace zvservice
