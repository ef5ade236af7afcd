// Threads for what waits for the camera, one for each request that does: there are never more than connections.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>

namespace zvweb {

class Works {
  public:
    // Runs `work` in a thread of its own. False where no thread or no memory can be had, and
    // after end(): nothing is kept of the work then.
    bool start(std::function<void()> work) noexcept;

    // Starts none from now on.
    void end();

    // Waits for those that run.
    void wait();

  private:
    static void *run(void *call);

    std::mutex m_mutex;
    std::condition_variable m_over;
    size_t m_running = 0;
    bool m_ended = false;
};

} // namespace zvweb
