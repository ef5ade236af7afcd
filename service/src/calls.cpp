#include "calls.h"

#include <cstddef>
#include <exception>
#include <string>
#include <utility>

namespace zvservice {

namespace {

// The link ends its work at the deadline by itself, and then the outcome is worth a moment.
constexpr std::chrono::milliseconds GRACE(100);

Result carry_out(const Calls::Work &work, CameraLink &link, std::chrono::milliseconds left)
try {
    return work(link, left);
} catch (const std::exception &error) { // the caller's operation, or no memory
    return {Outcome::FAILED, error.what()};
}

} // namespace

struct Calls::Job {
    enum class Stage { WAITING, RUNNING, OVER };

    Work work;
    Deadline deadline;
    Stage stage = Stage::WAITING;
    Result result;
    std::condition_variable changed;
};

Calls::Calls()
{
    m_link.emplace();
}

Calls::~Calls() = default;

void Calls::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_arrived.wait(lock, [this] { return m_ending || !m_waiting.empty(); });
        if (m_ending) {
            break;
        }
        const std::shared_ptr<Job> job = std::move(m_waiting.front());
        m_waiting.pop_front();
        const std::chrono::milliseconds left = left_until(job->deadline);
        if (left.count() == 0) {
            continue; // its caller is about to find out
        }
        m_running = job;
        job->stage = Job::Stage::RUNNING;
        Work work = std::move(job->work);
        lock.unlock();
        Result result = carry_out(work, *m_link, left);
        work = nullptr; // nothing of the caller's is held any more when it gets the result
        lock.lock();
        job->result = std::move(result);
        job->stage = Job::Stage::OVER;
        job->changed.notify_all();
        m_running = nullptr;
    }
    m_link.reset();
}

void Calls::stop()
{
    const std::lock_guard lock(m_mutex);
    m_ending = true;
    if (m_link) {
        m_link->interrupt();
    }
    m_arrived.notify_all();
    for (const std::shared_ptr<Job> &job : m_waiting) {
        job->changed.notify_all();
    }
    if (m_running != nullptr) {
        m_running->changed.notify_all();
    }
}

Result Calls::call(const char *doing, Work work, Deadline deadline)
{
    const Clock::time_point arrival = Clock::now();
    const auto job = std::make_shared<Job>();
    job->work = std::move(work);
    job->deadline = deadline;
    std::unique_lock lock(m_mutex);
    m_waiting.push_back(job);
    m_arrived.notify_one();
    Result result = wait_for(job, doing, lock);
    if (is_exchange(result.outcome())) {
        ++m_outcomes[static_cast<size_t>(result.outcome())];
        m_time.add(Clock::now() - arrival);
    }
    return result;
}

void Calls::tell(Statistics &statistics)
{
    const std::lock_guard lock(m_mutex);
    statistics.calls = m_outcomes;
    statistics.call_time = m_time;
}

Result Calls::wait_for(const std::shared_ptr<Job> &job, const char *doing, std::unique_lock<std::mutex> &lock)
{
    const auto over = [&] { return m_ending || job->stage == Job::Stage::OVER; };
    if (!job->changed.wait_until(lock, job->deadline, over) && job->stage == Job::Stage::RUNNING) {
        job->changed.wait_until(lock, job->deadline + GRACE, over);
    }
    if (job->stage == Job::Stage::OVER) {
        return job->result;
    }
    if (job->stage == Job::Stage::RUNNING) {
        return Result::cannot(Outcome::NO_ANSWER, doing,
                              m_ending ? "the program lets go of the camera; it may be carried out all the same"
                                       : "no answer in time; it may be carried out all the same");
    }
    std::erase(m_waiting, job);
    const std::string why =
        m_ending ? "the program lets go of the camera" : "other calls were before it for all of its time";
    return Result::cannot(Outcome::NO_ANSWER, doing, why + "; " + NOTHING_SENT);
}

} // namespace zvservice
