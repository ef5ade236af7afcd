#include "works.h"

#include <memory>
#include <new>
#include <pthread.h>
#include <utility>

namespace zvweb {

namespace {

// What a call of the camera needs, many times over; a thousand threads of the usual size would not fit everywhere.
constexpr size_t STACK_SIZE = 262144;

struct Call {
    Works *works;
    std::function<void()> work;
};

} // namespace

bool Works::start(std::function<void()> work) noexcept
{
    std::unique_ptr<Call> call(new (std::nothrow) Call{this, std::move(work)});
    const std::lock_guard lock(m_mutex);
    if (call == nullptr || m_ended) {
        return false;
    }
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, STACK_SIZE);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t thread = {};
    const bool started = pthread_create(&thread, &attributes, run, call.get()) == 0;
    pthread_attr_destroy(&attributes);
    if (started) {
        call.release(); // NOLINT(bugprone-unused-return-value): the thread's now
        ++m_running;
    }
    return started;
}

void Works::end()
{
    const std::lock_guard lock(m_mutex);
    m_ended = true;
}

void Works::wait()
{
    std::unique_lock lock(m_mutex);
    m_over.wait(lock, [this] { return m_running == 0; });
}

void *Works::run(void *argument)
{
    const std::unique_ptr<Call> call(static_cast<Call *>(argument));
    call->work();
    const std::lock_guard lock(call->works->m_mutex);
    --call->works->m_running;
    call->works->m_over.notify_all();
    return nullptr;
}

} // namespace zvweb
