// The thread that owns the daemon link: polls at the camera's pace, or at once where somebody waits for it.
#pragma once

#include "camera.h"
#include "deadline.h"
#include "publication.h"
#include "statistics.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>

namespace zvservice {

class Poller {
  public:
    // `publication` outlives it.
    Poller(const CameraOptions &options, Publication &publication);

    // The thread's body, until stop(). The link is closed at its end.
    void run();
    void stop();

    // The outcome of a poll that begins after this call.
    Result refresh(Deadline deadline);

    // Puts in how the polls went so far.
    void tell(Statistics &statistics);

    // Waits, and returns false where stop() ends the wait.
    bool pause(std::chrono::milliseconds time);

  private:
    // `time` is that of the exchange.
    Result poll(Clock::duration &time);
    std::chrono::milliseconds pace() const;

    const CameraOptions m_options;
    Publication &m_publication;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<DaemonLink> m_link; // taken away at the end
    bool m_ending = false;

    // Polls go by number: the last one that somebody waits for, that was begun, that is over.
    uint64_t m_wanted = 0;
    uint64_t m_begun = 0;
    uint64_t m_over = 0;
    Result m_outcome; // of the one that is over

    OutcomeCounts m_outcomes = {};
    Histogram m_time; // of the answered ones
};

} // namespace zvservice
