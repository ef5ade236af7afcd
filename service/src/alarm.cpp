#include "alarm.h"

#include <algorithm>
#include <csignal>
#include <cstddef>

namespace zvservice {

namespace {

constexpr std::chrono::milliseconds BETWEEN_RINGS{10};
constexpr size_t STACK_SIZE = 131072; // with room for what a sanitizer adds

} // namespace

Alarm::~Alarm()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_one();
    if (m_started) {
        pthread_join(m_thread, nullptr);
    }
}

bool Alarm::interrupted()
{
    const std::lock_guard lock(m_mutex);
    return m_interrupted;
}

std::chrono::milliseconds Alarm::left(std::chrono::milliseconds most)
{
    const std::lock_guard lock(m_mutex);
    if (is_due()) {
        return std::chrono::milliseconds::zero();
    }
    return m_limited ? std::min(most, left_until(m_deadline)) : most;
}

int Alarm::arm(mqd_t queue)
{
    const std::lock_guard lock(m_mutex);
    m_queue = queue;
    if (!m_limited && !m_interrupted) {
        return 0;
    }
    const int error = start();
    m_changed.notify_one();
    return error;
}

bool Alarm::disarm()
{
    const std::lock_guard lock(m_mutex);
    m_queue = -1;
    return m_rang;
}

void Alarm::interrupt() noexcept
{
    const std::lock_guard lock(m_mutex);
    m_interrupted = true;
    if (m_queue >= 0) {
        ring(); // which suffices nearly always, should there be no thread
        start();
    }
    m_changed.notify_one();
}

void Alarm::begin(std::chrono::milliseconds patience)
{
    const std::lock_guard lock(m_mutex);
    m_rang = false;
    m_limited = patience < LONGEST_WAIT;
    m_deadline = deadline_after(patience);
}

void Alarm::end()
{
    const std::lock_guard lock(m_mutex);
    m_queue = -1;
    m_interrupted = false;
}

void Alarm::ring()
{
    m_rang = true;
    mq_send(m_queue, reinterpret_cast<const char *>(&ALARM_BYTE), sizeof ALARM_BYTE, 0); // full: nobody waits
}

// Starts the thread unless it runs, with all signals blocked.
int Alarm::start()
{
    if (m_started) {
        return 0;
    }
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, STACK_SIZE);
    const int error = pthread_create(
        &m_thread, &attributes,
        [](void *alarm) -> void * {
            static_cast<Alarm *>(alarm)->run();
            return nullptr;
        },
        this);
    pthread_attr_destroy(&attributes);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    m_started = error == 0;
    return error;
}

void Alarm::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_ending) {
        if (m_queue < 0 || (!m_limited && !m_interrupted)) {
            m_changed.wait(lock);
        } else if (is_due()) {
            ring();
            m_changed.wait_for(lock, BETWEEN_RINGS);
        } else {
            m_changed.wait_until(lock, m_deadline);
        }
    }
}

} // namespace zvservice
