// The thread that owns the camera link: carries operations out, one after the other in order of arrival.
#pragma once

#include "deadline.h"
#include "links.h"
#include "result.h"
#include "statistics.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace zvservice {

class Calls {
  public:
    // What is done on the link, within what is left of the call's time.
    using Work = std::function<Result(CameraLink &link, std::chrono::milliseconds left)>;

    Calls();
    ~Calls();

    // The thread's body, until stop(). The link is closed at its end.
    void run();
    void stop();

    // Waits for its turn and its end. After the deadline, or at a stop, it is taken out where it has not begun; where
    // it has, it goes on without its caller.
    Result call(const char *doing, Work work, Deadline deadline);

    // Puts in how the calls went so far, those that gave up included.
    void tell(Statistics &statistics);

  private:
    struct Job;

    // Under the lock, which it lets go of while it waits.
    Result wait_for(const std::shared_ptr<Job> &job, const char *doing, std::unique_lock<std::mutex> &lock);

    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::optional<CameraLink> m_link; // taken away at the end
    std::deque<std::shared_ptr<Job>> m_waiting;
    std::shared_ptr<Job> m_running; // or null
    bool m_ending = false;

    OutcomeCounts m_outcomes = {};
    Histogram m_time;
};

} // namespace zvservice
