// How long to wait before the next attempt at what keeps failing.
#pragma once

#include <chrono>
#include <random>

namespace zvmqtt {

// Longer each time, up to a minute, and never the same for two that failed at once: a broker that comes back is not met
// by all of its cameras in one moment. One thread.
class Backoff {
  public:
    static constexpr std::chrono::milliseconds FIRST{2000};
    static constexpr std::chrono::milliseconds LAST{60000};

    // Another attempt failed. Returns how long to wait: between half of 2, 4, 8, 16, 32, 60 seconds and the whole.
    std::chrono::milliseconds next();

    // It worked: the next failure is a first one.
    void reset() { m_longest = FIRST; }

  private:
    std::chrono::milliseconds m_longest = FIRST;
    std::minstd_rand m_random{std::random_device()()};
};

} // namespace zvmqtt
