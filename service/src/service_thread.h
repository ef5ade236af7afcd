// A thread of a service core's object: no signal of the program is handled in it, and its end is waited for, but not
// for ever.
#pragma once

#include "deadline.h"

#include <functional>
#include <future>
#include <thread>

namespace zvservice {

class ServiceThread {
  public:
    // `body` must keep alive what it uses, in case the thread is left to itself. Throws std::system_error where a
    // thread can't be had.
    void start(std::function<void()> body);

    // Waits for the thread's end until the deadline, and then leaves it to itself. Nothing for one that never started.
    void join_until(Deadline deadline);

  private:
    std::thread m_thread;
    std::future<void> m_out;
};

} // namespace zvservice
