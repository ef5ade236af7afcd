#include "daemon_link.h"

#include "bytes.h"
#include "exchange.h"
#include "message_format.h"
#include "queue_names.h"
#include "zvcontrol_if.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zv {

namespace {

union NeverDestroyed {
    DaemonLink link;

    constexpr NeverDestroyed() : link() {}
    ~NeverDestroyed() {}
};
constinit NeverDestroyed storage;

} // namespace

constinit DaemonLink &daemon_link = storage.link;

namespace {

constexpr int DAEMON_OPEN_ATTEMPTS = 12;
constexpr unsigned DAEMON_OPEN_PAUSE_SECONDS = 1;

constexpr size_t QUEUE_NAME_MAX = 256;
constexpr mode_t RESPONSE_QUEUE_MODE = 0664;

constexpr uint16_t PARAM_MAX = DAEMON_MSG_MAX - 1;

// The daemon's queue, or -1 with a line in the log.
mqd_t open_daemon_queue(const SourceLocation &where)
{
    const mqd_t queue = mq_open(DAEMON_QUEUE, O_WRONLY | O_NONBLOCK);
    if (queue < 0) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "mq_open() failed for '%s': %s\n", DAEMON_QUEUE, strerror(errno));
    }
    return queue;
}

bool wait_for_daemon_queue(const SourceLocation &where)
{
    for (int attempt = 0; attempt < DAEMON_OPEN_ATTEMPTS; ++attempt) {
        daemon_link.daemon = open_daemon_queue(where);
        if (daemon_link.daemon >= 0) {
            return true;
        }
        sleep(DAEMON_OPEN_PAUSE_SECONDS);
    }
    return false;
}

mqd_t make_response_queue(int flags)
{
    mq_attr attributes = {};
    attributes.mq_maxmsg = RESPONSE_QUEUE_DEPTH;
    attributes.mq_msgsize = DAEMON_MSG_MAX;
    return mq_open(daemon_link.response_queue_name, O_RDONLY | O_CREAT | flags, RESPONSE_QUEUE_MODE, &attributes);
}

// Whether an open queue is one that a process before us with our id left behind, and that is not like ours.
bool is_left_over(mqd_t queue)
{
    mq_attr found = {};
    return mq_getattr(queue, &found) == 0 &&
           (found.mq_maxmsg != RESPONSE_QUEUE_DEPTH || found.mq_msgsize != DAEMON_MSG_MAX);
}

// The kernel reports a user's full share of queue memory by the same error as too many open files.
bool is_out_of_queue_bytes(int error)
{
    const int spare = error == EMFILE ? fcntl(daemon_link.daemon, F_DUPFD_CLOEXEC, 0) : -1;
    if (spare >= 0) {
        close(spare);
    }
    return spare >= 0;
}

bool create_response_queue(const SourceLocation &where)
{
    const char *name = daemon_link.response_queue_name;
    daemon_link.opener = getpid();
    daemon_link.responses = make_response_queue(0);
    if (daemon_link.responses >= 0 && is_left_over(daemon_link.responses)) {
        mq_close(daemon_link.responses);
        mq_unlink(name);
        daemon_link.responses = make_response_queue(O_EXCL);
    }
    if (daemon_link.responses >= 0) {
        return true;
    }
    const int error = errno;
    ZV_LOG_AT(where, ZV_LOG_ERROR, "mq_open() failed for '%s': %s\n", name, strerror(error));
    if (is_out_of_queue_bytes(error)) {
        rlimit bytes = {};
        getrlimit(RLIMIT_MSGQUEUE, &bytes);
        ZV_LOG_AT(where, ZV_LOG_ERROR, "The user's message queues would take more than RLIMIT_MSGQUEUE, %llu bytes",
                  static_cast<unsigned long long>(bytes.rlim_cur));
    }
    return false;
}

// The name of the response queue, as a text of its own: the caller's, or the process's. Null when out of memory.
char *copy_queue_name(const char *queue_name)
{
    if (queue_name != nullptr) {
        return strdup(queue_name);
    }
    auto *name = static_cast<char *>(malloc(QUEUE_NAME_MAX + 1));
    if (name != nullptr) {
        snprintf(name, QUEUE_NAME_MAX, "%s%d", RESPONSE_QUEUE_PREFIX, getpid());
    }
    return name;
}

// Puts the queue's name, with its terminator, into the commands. False when out of memory.
bool set_source_name()
{
    const char *name = daemon_link.response_queue_name;
    try {
        daemon_link.source.setData(reinterpret_cast<const uint8_t *>(name), static_cast<uint16_t>(strlen(name) + 1));
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

// Writes a command into the link's buffer. Returns its length, or 0 when out of memory.
uint16_t write_command(uint32_t command, const Parameter &parameter)
{
    try {
        uint8_t number[sizeof command];
        put_le32(number, command);
        daemon_link.command.setData(number, sizeof number);
        daemon_link.argument.setData(parameter.bytes, parameter.length);
        daemon_link.issuer.setData(&daemon_link.caller_id, sizeof daemon_link.caller_id);

        CommandMsg msg;
        msg.addElement(&daemon_link.command);
        if (parameter.bytes != nullptr) {
            msg.addElement(&daemon_link.argument);
        }
        msg.addElement(&daemon_link.source);
        msg.addElement(&daemon_link.issuer);
        msg.addElement(&daemon_link.end);

        MemStream stream(daemon_link.buffer, DAEMON_MSG_MAX);
        stream << msg;
        msg.dump("Command to Daemon");
        return stream.getLength();
    } catch (const std::bad_alloc &) {
        return 0;
    }
}

} // namespace

int32_t open_daemon_link(const char *queue_name, const SourceLocation &where)
{
    if (queue_name != nullptr && strlen(queue_name) > QUEUE_NAME_MAX) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "queue name too long: %d!  Max is %d.", static_cast<int>(strlen(queue_name)),
                  static_cast<int>(QUEUE_NAME_MAX));
        return ZV_ERR;
    }
    if (!wait_for_daemon_queue(where)) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "Interface open failed after multiple attempts");
        return ZV_ERR;
    }
    daemon_link.response_queue_name = copy_queue_name(queue_name);
    daemon_link.buffer = static_cast<uint8_t *>(malloc(DAEMON_MSG_MAX));
    if (daemon_link.response_queue_name == nullptr || daemon_link.buffer == nullptr || !set_source_name()) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "Out of memory");
        return ZV_ERR_OUTOFMEM;
    }
    daemon_link.waits = queue_name == nullptr;
    return !daemon_link.waits || create_response_queue(where) ? ZV_OK : ZV_ERR;
}

void close_daemon_link()
{
    if (daemon_link.responses >= 0) {
        mq_close(daemon_link.responses);
        if (daemon_link.opener == getpid()) { // a forked child leaves its parent's queue alone
            mq_unlink(daemon_link.response_queue_name);
        }
        daemon_link.responses = -1;
    }
    if (daemon_link.daemon >= 0) {
        mq_close(daemon_link.daemon);
        daemon_link.daemon = -1;
    }
    free(daemon_link.response_queue_name);
    daemon_link.response_queue_name = nullptr;
    free(daemon_link.buffer);
    daemon_link.buffer = nullptr;
}

bool command_fits(const Parameter &parameter)
{
    const size_t argument = parameter.bytes != nullptr ? TLV_HEADER_SIZE + parameter.length : 0;
    const size_t size = TLV_HEADER_SIZE + TLV_HEADER_SIZE + sizeof(uint32_t) + argument + daemon_link.source.getSize() +
                        TLV_HEADER_SIZE + sizeof daemon_link.caller_id + daemon_link.end.getSize();
    return parameter.length <= PARAM_MAX && size <= DAEMON_MSG_MAX;
}

bool find_daemon_again(const SourceLocation &where)
{
    struct stat queue = {};
    if (fstat(daemon_link.daemon, &queue) != 0 || queue.st_nlink != 0) {
        return true;
    }
    const mqd_t found = open_daemon_queue(where);
    if (found < 0) {
        return false;
    }
    mq_close(daemon_link.daemon);
    daemon_link.daemon = found;
    ZV_LOG_AT(where, ZV_LOG_ERROR, "'%s' was removed and made anew, opened again", DAEMON_QUEUE);
    return true;
}

int32_t post_command(uint32_t command, const Parameter &parameter, TimeLimit &limit, const SourceLocation &where)
{
    const uint16_t length = write_command(command, parameter);
    if (length == 0) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "Out of memory");
        return ZV_ERR_OUTOFMEM;
    }
    while (mq_send(daemon_link.daemon, reinterpret_cast<const char *>(daemon_link.buffer), length, 0) < 0) {
        if (!wait_for_room(daemon_link.daemon, limit)) {
            const int error = errno;
            ZV_LOG_AT(where, ZV_LOG_ERROR, "mq_send() failed for '%s': %s", DAEMON_QUEUE, strerror(error));
            return error == ETIMEDOUT ? ZV_ERR_NO_RESPONSE : ZV_ERR;
        }
    }
    return ZV_OK;
}

} // namespace zv
