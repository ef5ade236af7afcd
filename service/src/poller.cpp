#include "poller.h"

#include "doing.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

namespace zvservice {

namespace {

using std::chrono::milliseconds;

constexpr uint32_t STATUS_NEXT_POLL = 60; // in milliseconds

// The daemon is looked after at this pace while it does not answer.
constexpr milliseconds LOOK_AGAIN(250);

// The camera's wish comes from a peer.
constexpr milliseconds SHORTEST_PACE(50);
constexpr milliseconds LONGEST_PACE(5000);

} // namespace

Poller::Poller(const CameraOptions &options, Publication &publication) : m_options(options), m_publication(publication)
{
    m_link.emplace(options.caller_id);
}

void Poller::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_ending) {
        const uint64_t number = ++m_begun;
        lock.unlock();
        Clock::duration time = {};
        Result outcome = poll(time);
        const Deadline next = deadline_after(pace());
        lock.lock();
        ++m_outcomes[static_cast<size_t>(outcome.outcome())];
        if (is_answer(outcome.outcome())) {
            m_time.add(time);
        }
        m_over = number;
        m_outcome = std::move(outcome);
        m_changed.notify_all();
        m_changed.wait_until(lock, next, [this] { return m_ending || m_wanted > m_begun; });
    }
    m_link.reset();
}

void Poller::stop()
{
    const std::lock_guard lock(m_mutex);
    m_ending = true;
    if (m_link) {
        m_link->interrupt();
    }
    m_changed.notify_all();
}

Result Poller::refresh(Deadline deadline)
{
    std::unique_lock lock(m_mutex);
    const uint64_t number = m_begun + 1;
    m_wanted = std::max(m_wanted, number);
    m_changed.notify_all();
    m_changed.wait_until(lock, deadline, [&] { return m_ending || m_over >= number; });
    if (m_over >= number) {
        return m_outcome;
    }
    return Result::cannot(Outcome::NO_ANSWER, READ_STATE,
                          m_ending ? "the program lets go of the camera" : "no answer in time");
}

void Poller::tell(Statistics &statistics)
{
    const std::lock_guard lock(m_mutex);
    statistics.polls = m_outcomes;
    statistics.poll_time = m_time;
}

bool Poller::pause(milliseconds time)
{
    std::unique_lock lock(m_mutex);
    return !m_changed.wait_until(lock, deadline_after(time), [this] { return m_ending; });
}

Result Poller::poll(Clock::duration &time)
try {
    all_status_settings_t record = {};
    const Clock::time_point start = Clock::now();
    Result outcome = m_link->poll(record, m_options.poll_patience);
    time = Clock::now() - start;
    m_publication.publish(outcome, record);
    return outcome;
} catch (const std::bad_alloc &) { // what is published stays
    return {Outcome::FAILED, "out of memory"};
}

milliseconds Poller::pace() const
{
    const std::shared_ptr<const Snapshot> snapshot = m_publication.snapshot();
    if (snapshot->link != LinkState::UP) {
        return LOOK_AGAIN;
    }
    if (m_options.poll_interval > milliseconds(0)) {
        return m_options.poll_interval;
    }
    return std::clamp(milliseconds(snapshot->state->values().statuses[STATUS_NEXT_POLL]), SHORTEST_PACE, LONGEST_PACE);
}

} // namespace zvservice
