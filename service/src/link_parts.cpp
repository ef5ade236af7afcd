#include "link_parts.h"

#include "deadline.h"
#include "links.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace zvservice {

namespace {

using std::chrono::milliseconds;

// How long a look for room may last before it looks whether the call was interrupted.
constexpr milliseconds ROOM_SLICE{50};

} // namespace

LinkQueues::~LinkQueues()
{
    if (is_elsewhere()) {
        static_cast<void>(m_alarm.release());
    }
}

void LinkQueues::interrupt() noexcept
{
    if (!is_elsewhere()) {
        m_alarm->interrupt();
    }
}

void LinkQueues::settle()
{
    m_process = getpid();
}

bool LinkQueues::is_elsewhere() const
{
    const pid_t process = m_process;
    return process != 0 && process != getpid();
}

Result LinkQueues::open_peer()
{
    return is_elsewhere() ? in_a_child() : m_peer.open();
}

bool make_queue(const std::function<bool()> &make)
{
    errno = 0;
    if (make()) {
        return true;
    }
    const int error = errno;
    std::vector<std::string> removed;
    if (is_out_of_queue_bytes(error) && remove_leftover_queues(removed).done() && !removed.empty()) {
        return make();
    }
    errno = error;
    return false;
}

mqd_t open_bell(const char *name)
{
    return mq_open(name, O_WRONLY | O_NONBLOCK | O_CLOEXEC);
}

void close_queue(mqd_t &queue)
{
    if (queue >= 0) {
        mq_close(queue);
        queue = -1;
    }
}

bool wait_for_room(const PeerQueue &peer, Alarm &alarm)
{
    const Deadline end = deadline_after(LIBRARY_PATIENCE);
    while (Clock::now() < end) {
        const milliseconds slice = alarm.left(ROOM_SLICE);
        if (slice == milliseconds::zero()) {
            return false;
        }
        pollfd entry = {peer.descriptor(), POLLOUT, 0};
        if (poll(&entry, 1, static_cast<int>(slice.count())) > 0) {
            return (entry.revents & POLLOUT) != 0;
        }
    }
    return false;
}

Result in_a_child()
{
    return {Outcome::NOT_THERE, "this link belongs to the process that it was opened in, and not to its child"};
}

Result no_answer(const char *doing, Alarm &alarm)
{
    return Result::cannot(Outcome::NO_ANSWER, doing,
                          alarm.interrupted() ? "the call was interrupted"
                                              : "no answer in time; is the camera's side still running?");
}

Result not_sent(const char *doing, Alarm &alarm)
{
    return Result::cannot(Outcome::NO_ANSWER, doing,
                          alarm.interrupted() ? "the call was interrupted"
                                              : "the camera's side takes no requests; is it still running?");
}

Result no_alarm(const char *doing, int error)
{
    return Result::cannot(Outcome::FAILED, doing, std::string("no thread can be started: ") + strerror(error));
}

} // namespace zvservice
