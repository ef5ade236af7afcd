#include "publication.h"

#include "deadline.h"
#include "forks.h"
#include "links.h"
#include "subscription_queue.h"

#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <utility>

namespace zvservice {

namespace {

std::shared_ptr<const std::string> make_epoch()
{
    std::random_device random;
    char text[17];
    snprintf(text, sizeof text, "%08x%08x", random(), random());
    return std::make_shared<const std::string>(text);
}

LinkState link_state(Outcome poll, bool has_state, bool answered)
{
    if (poll == Outcome::DONE) {
        return LinkState::UP;
    }
    return poll != Outcome::NOT_THERE && has_state && answered ? LinkState::STALE : LinkState::DOWN;
}

bool same_record(const State &a, const State &b)
{
    return memcmp(a.record().bytes, b.record().bytes, sizeof a.record().bytes) == 0;
}

} // namespace

Publication::Publication()
{
    auto first = std::make_shared<Snapshot>();
    first->epoch = make_epoch();
    m_present = std::move(first);
}

std::shared_ptr<const Snapshot> Publication::snapshot() const
{
    const std::lock_guard lock(held_over_forks);
    return m_present;
}

std::shared_ptr<Subscription::Queue> Publication::subscribe()
{
    const std::lock_guard lock(m_mutex);
    auto queue = Subscription::Queue::make(snapshot());
    if (m_ended) {
        queue->end();
    }
    std::erase_if(m_readers, [](const auto &reader) { return reader.expired(); });
    m_readers.push_back(queue);
    return queue;
}

void Publication::publish(const Result &poll, const all_status_settings_t &record)
{
    const std::shared_ptr<const Snapshot> before = snapshot();
    const auto after = std::make_shared<Snapshot>(*before);
    std::shared_ptr<const Change> change;
    if (poll.done()) {
        after->taken = Clock::now();
        // Made also of a record that is the same: a few values come from the system information service.
        auto state = std::make_shared<const State>(record, camera_model());
        Change differences = difference(before->state.get(), *state);
        if (!differences.empty()) {
            differences.revision = ++after->revision;
            change = std::make_shared<const Change>(std::move(differences));
        }
        if (change != nullptr || before->state == nullptr || !same_record(*before->state, *state)) {
            after->state = std::move(state);
        }
    }
    m_answered = poll.outcome() != Outcome::NOT_THERE && (m_answered || is_answer(poll.outcome()));
    after->switched_off = poll.outcome() == Outcome::SWITCHED_OFF;
    after->link = link_state(poll.outcome(), after->state != nullptr, m_answered);

    const std::lock_guard lock(m_mutex);
    if (m_ended) {
        return;
    }
    {
        std::shared_ptr<const Snapshot> present = after; // what it replaces is freed after the lock
        const std::lock_guard present_lock(held_over_forks);
        m_present.swap(present);
    }
    if (change != nullptr) {
        tell({Event::Kind::CHANGE, after, change});
    }
    if (after->link != before->link || after->switched_off != before->switched_off) {
        tell({Event::Kind::LINK, after, nullptr});
    }
}

void Publication::end()
{
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    for (const std::weak_ptr<Subscription::Queue> &reader : m_readers) {
        if (const auto queue = reader.lock()) {
            queue->end();
        }
    }
}

// Under the lock.
void Publication::tell(const Event &event)
{
    std::erase_if(m_readers, [&event](const std::weak_ptr<Subscription::Queue> &reader) {
        const auto queue = reader.lock();
        if (queue != nullptr) {
            queue->offer(event);
        }
        return queue == nullptr;
    });
}

} // namespace zvservice
