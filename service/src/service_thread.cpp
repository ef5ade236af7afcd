#include "service_thread.h"

#include <csignal>
#include <utility>

namespace zvservice {

namespace {

// All signals of the calling thread, and so of the threads that it starts.
class BlockedSignals {
  public:
    BlockedSignals()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    BlockedSignals(const BlockedSignals &) = delete;
    BlockedSignals &operator=(const BlockedSignals &) = delete;

  private:
    sigset_t m_before = {};
};

} // namespace

void ServiceThread::start(std::function<void()> body)
{
    const BlockedSignals blocked;
    std::promise<void> out;
    m_out = out.get_future();
    m_thread = std::thread([body = std::move(body), out = std::move(out)]() mutable {
        body();
        out.set_value();
    });
}

void ServiceThread::join_until(Deadline deadline)
{
    if (!m_thread.joinable()) {
        return;
    }
    if (m_out.wait_until(deadline) == std::future_status::ready) {
        m_thread.join();
    } else {
        m_thread.detach();
    }
}

} // namespace zvservice
