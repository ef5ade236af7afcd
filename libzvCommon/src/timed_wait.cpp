#include "timed_wait.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/select.h>

namespace zv {

namespace {

constexpr int64_t SECOND = 1'000'000; // in microseconds

timespec monotonic_now()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now;
}

// A wait on a descriptor that fits into a set. Returns what select does.
int select_one(QueueEvent event, int fd, timeval limit)
{
    fd_set set;
    FD_ZERO(&set);
    FD_SET(fd, &set);
    return event == QueueEvent::MESSAGE ? select(fd + 1, &set, nullptr, nullptr, &limit)
                                        : select(fd + 1, nullptr, &set, nullptr, &limit);
}

// The same on a descriptor of any size.
int poll_one(QueueEvent event, int fd, const timeval &limit)
{
    pollfd entry = {fd, static_cast<short>(event == QueueEvent::MESSAGE ? POLLIN : POLLOUT), 0};
    const timespec time = {limit.tv_sec, limit.tv_usec * 1000};
    const int ready = ppoll(&entry, 1, &time, nullptr);
    return ready == 1 && (entry.revents & entry.events) == 0 ? 0 : ready; // a closed descriptor is never ready
}

} // namespace

int64_t TimeLimit::microseconds_left() const
{
    const timespec now = monotonic_now();
    const int64_t passed = (now.tv_sec - m_begin.tv_sec) * SECOND + (now.tv_nsec - m_begin.tv_nsec) / 1000;
    return std::max<int64_t>(m_seconds * SECOND - passed, 0);
}

timeval TimeLimit::left()
{
    if (!m_begun) {
        m_begun = true;
        m_begin = monotonic_now();
        return {m_seconds, 0};
    }
    const int64_t left = microseconds_left();
    return {static_cast<time_t>(left / SECOND), static_cast<suseconds_t>(left % SECOND)};
}

bool TimeLimit::is_over() const
{
    return m_begun && microseconds_left() == 0;
}

bool wait_for(QueueEvent event, mqd_t queue, TimeLimit &limit)
{
    if (queue < 0) {
        return false;
    }
    while (!limit.is_over()) {
        const int ready =
            queue < FD_SETSIZE ? select_one(event, queue, limit.left()) : poll_one(event, queue, limit.left());
        if (ready >= 0 || errno != EINTR) {
            return ready == 1;
        }
    }
    return false;
}

} // namespace zv
