#include "peer_queue.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zvservice {

namespace {

constexpr char MESSAGE_SIZE_LIMIT[] = "/proc/sys/fs/mqueue/msgsize_max";
constexpr char QUEUE_COUNT_LIMIT[] = "/proc/sys/fs/mqueue/queues_max";

// A limit of the kernel, or `otherwise` where it can't be read.
long kernel_limit(const char *path, long otherwise)
{
    long limit = otherwise;
    std::ifstream(path) >> limit;
    return limit > 0 ? limit : otherwise;
}

std::string resource_limit(decltype(RLIMIT_NOFILE) resource)
{
    rlimit limit = {};
    getrlimit(resource, &limit);
    return std::to_string(limit.rlim_cur);
}

Result beyond(const std::string &cannot, const std::string &limit)
{
    return {Outcome::SYSTEM_LIMIT, cannot + ": " + limit};
}

} // namespace

Result PeerQueue::open()
{
    if (m_descriptor >= 0 && !is_removed(m_descriptor)) {
        return {};
    }
    close();
    m_descriptor = mq_open(m_name, O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_descriptor < 0) {
        return errno == ENOENT
                   ? not_there()
                   : queue_failure(std::string("cannot open the queue ") + m_name + " of " + m_who, errno, 0);
    }
    ++m_generation;
    return {};
}

Result PeerQueue::not_there() const
{
    return {Outcome::NOT_THERE, std::string(m_who) + " is not running: there is no queue " + m_name};
}

PeerQueue::Fill PeerQueue::fill() const
{
    mq_attr state = {};
    mq_getattr(m_descriptor, &state);
    return {state.mq_curmsgs, state.mq_maxmsg};
}

void PeerQueue::close()
{
    if (m_descriptor >= 0) {
        mq_close(m_descriptor);
        m_descriptor = -1;
    }
}

bool is_removed(mqd_t queue)
{
    struct stat state = {};
    return fstat(queue, &state) != 0 || state.st_nlink == 0;
}

Result queue_failure(const std::string &cannot, int error, long message_size)
{
    if (const long limit = kernel_limit(MESSAGE_SIZE_LIMIT, message_size); limit < message_size) {
        return beyond(cannot, "it needs messages of " + std::to_string(message_size) + " bytes and the kernel allows " +
                                  std::to_string(limit) + "; as root: sysctl -w fs.mqueue.msgsize_max=16384");
    }
    if (message_size != 0 && is_out_of_queue_bytes(error)) {
        return beyond(cannot, "this user's queues reach the limit of " + resource_limit(RLIMIT_MSGQUEUE) +
                                  " bytes (RLIMIT_MSGQUEUE, ulimit -q; LimitMSGQUEUE= of a service): raise it; those "
                                  "that ended processes left behind are in /dev/mqueue");
    }
    if (error == EMFILE) {
        return beyond(cannot, "this process reaches the limit of " + resource_limit(RLIMIT_NOFILE) +
                                  " open files (RLIMIT_NOFILE, ulimit -n; LimitNOFILE= of a service): raise it");
    }
    if (error == ENOSPC) {
        return beyond(cannot, "the machine's queues reach the limit of " +
                                  std::to_string(kernel_limit(QUEUE_COUNT_LIMIT, 0)) +
                                  "; as root: sysctl -w fs.mqueue.queues_max=1024");
    }
    return {Outcome::FAILED, cannot + ": " + strerror(error)};
}

bool may_open_files(int count)
{
    const int file = eventfd(0, EFD_CLOEXEC);
    if (file < 0) {
        return false;
    }
    const bool more = count <= 1 || may_open_files(count - 1);
    close(file);
    return more;
}

bool is_out_of_queue_bytes(int error)
{
    return error == EMFILE && may_open_files(1); // the same error says that too many files are open
}

} // namespace zvservice
