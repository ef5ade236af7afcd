#include "subscription.h"

#include "deadline.h"
#include "forks.h"
#include "subscription_queue.h"

#include <cerrno>
#include <new>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace zvservice {

namespace {

int make_descriptor()
{
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make a subscription's descriptor");
    }
    return descriptor;
}

// False when it is not readable at the deadline.
bool wait_readable(int descriptor, Deadline deadline)
{
    for (;;) {
        const auto left = left_until(deadline);
        pollfd source = {descriptor, POLLIN, 0};
        const int ready = poll(&source, 1, static_cast<int>(left.count()));
        if (ready > 0 || (ready == 0 && left.count() == 0)) {
            return ready > 0;
        }
        if (ready < 0 && errno != EINTR) {
            return false;
        }
    }
}

} // namespace

std::shared_ptr<Subscription::Queue> Subscription::Queue::make(std::shared_ptr<const Snapshot> whole)
{
    return {new Queue(std::move(whole)), [](Queue *queue) {
                if (!queue->in_child()) {
                    delete queue;
                } else {
                    close(queue->m_descriptor);
                }
            }};
}

Subscription::Queue::Queue(std::shared_ptr<const Snapshot> whole)
    : m_descriptor(make_descriptor()), m_generation(fork_generation()), m_newest(std::move(whole))
{
    show_readiness();
}

Subscription::Queue::~Queue()
{
    close(m_descriptor);
}

void Subscription::Queue::offer(const Event &event) noexcept
{
    const std::lock_guard lock(m_mutex);
    m_newest = event.snapshot;
    if (!m_whole && m_events.size() < EVENT_MAX) {
        try {
            m_events.push_back(event);
        } catch (const std::bad_alloc &) {
            m_whole = true;
        }
    } else {
        m_whole = true;
    }
    if (m_whole) {
        m_events.clear();
    }
    show_readiness();
}

void Subscription::Queue::end() noexcept
{
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    show_readiness();
}

std::optional<Event> Subscription::Queue::next(std::chrono::milliseconds patience)
{
    if (in_child()) {
        return std::nullopt;
    }
    const Deadline deadline = deadline_after(patience);
    std::optional<Event> event = take();
    while (!event && !ended() && wait_readable(m_descriptor, deadline)) {
        event = take();
    }
    return event;
}

bool Subscription::Queue::ended() const
{
    if (in_child()) {
        return true;
    }
    const std::lock_guard lock(m_mutex);
    return m_ended && !m_whole && m_events.empty();
}

bool Subscription::Queue::in_child() const
{
    return m_generation != fork_generation();
}

std::optional<Event> Subscription::Queue::take()
{
    const std::lock_guard lock(m_mutex);
    std::optional<Event> event;
    if (m_whole) {
        event = Event{Event::Kind::WHOLE, m_newest, nullptr};
        m_whole = false;
    } else if (!m_events.empty()) {
        event = std::move(m_events.front());
        m_events.pop_front();
    }
    show_readiness();
    return event;
}

// Under the lock.
void Subscription::Queue::show_readiness() noexcept
{
    const bool readable = m_whole || !m_events.empty() || m_ended;
    if (readable == m_readable) {
        return;
    }
    eventfd_t count = 1;
    if (readable ? eventfd_write(m_descriptor, count) == 0 : eventfd_read(m_descriptor, &count) == 0) {
        m_readable = readable;
    }
}

Subscription::Subscription(std::shared_ptr<Queue> queue) : m_queue(std::move(queue)) {}
Subscription::~Subscription() = default;
Subscription::Subscription(Subscription &&) noexcept = default;
Subscription &Subscription::operator=(Subscription &&) noexcept = default;

std::optional<Event> Subscription::next(std::chrono::milliseconds patience)
{
    return m_queue->next(patience);
}

bool Subscription::ended() const
{
    return m_queue->ended();
}

int Subscription::descriptor() const
{
    return m_queue->descriptor();
}

} // namespace zvservice
