#include "links.h"

#include "failure.h"
#include "queue_names.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#include <zvctrl/zvc_state.h>
#include <zvctrl/zvcontrol_if.h>

namespace zvcam {

namespace {

constexpr char SIZE_LIMIT[] = "/proc/sys/fs/mqueue/msgsize_max";
constexpr long REPLY_DEPTH = 5;
constexpr uint8_t CALLER_ID = 1;
constexpr int ATTEMPTS = 12;
constexpr mqd_t NO_QUEUE = -1;

bool wait_for_queues = false;

// The process's own queues, for the signal handler.
char reply_queue[32];
char response_queue[32];
volatile sig_atomic_t interruption_expected = 0;

void on_signal(int signal)
{
    mq_unlink(reply_queue); // one system call each
    mq_unlink(response_queue);
    if (interruption_expected != 0 && (signal == SIGINT || signal == SIGTERM)) {
        _exit(EXIT_DONE);
    }
    raise(signal); // by now its default action again
}

// Opens a queue that somebody else made, or ends the command.
mqd_t open_peer(const char *name, const char *who)
{
    for (int attempt = 1;; ++attempt) {
        const mqd_t queue = mq_open(name, O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        if (queue >= 0) {
            return queue;
        }
        if (errno != ENOENT) {
            fail(EXIT_FAILED, "cannot open the queue %s of %s: %s", name, who, strerror(errno));
        }
        if (!wait_for_queues || attempt == ATTEMPTS) {
            fail(EXIT_NOT_THERE, "%s is not running: there is no queue %s", who, name);
        }
        sleep(1);
    }
}

[[noreturn]] void fail_to_create(const char *what, int error, long needed)
{
    long limit = needed;
    if (std::FILE *file = fopen(SIZE_LIMIT, "r"); file != nullptr) {
        char text[32] = {};
        if (fgets(text, sizeof text, file) != nullptr) {
            limit = strtol(text, nullptr, 10);
        }
        fclose(file);
    }
    if (limit < needed) {
        fail(EXIT_SYSTEM_LIMIT,
             "cannot create %s: it needs messages of %ld bytes and the kernel allows %ld; as root: sysctl -w "
             "fs.mqueue.msgsize_max=16384",
             what, needed, limit);
    }
    rlimit bytes = {};
    if (error == EMFILE && getrlimit(RLIMIT_MSGQUEUE, &bytes) == 0) { // so few descriptors are open that it is not they
        fail(EXIT_SYSTEM_LIMIT,
             "cannot create %s: this user's queues reach the limit of %llu bytes (RLIMIT_MSGQUEUE, ulimit -q); those "
             "that ended processes left behind are in /dev/mqueue",
             what, static_cast<unsigned long long>(bytes.rlim_cur));
    }
    fail(error == ENOSPC ? EXIT_SYSTEM_LIMIT : EXIT_FAILED, "cannot create %s: %s", what, strerror(error));
}

} // namespace

void wait_for_peers(bool wait)
{
    wait_for_queues = wait;
}

void remove_queues_at_signals()
{
    snprintf(reply_queue, sizeof reply_queue, "/to_zvcam%d", getpid());
    snprintf(response_queue, sizeof response_queue, "%s%d", zv::RESPONSE_QUEUE_PREFIX, getpid());
    struct sigaction action = {};
    action.sa_handler = on_signal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGABRT}) {
        sigaction(signal, &action, nullptr);
    }
}

void expect_interruption()
{
    interruption_expected = 1;
}

DaemonLink::DaemonLink()
{
    mq_close(open_peer(zv::DAEMON_QUEUE, "the control daemon"));
    errno = 0;
    if (zvcontrol_interface_open() != 0) {
        fail_to_create("the queue for the daemon's answers", errno, DAEMON_MSG_MAX);
    }
    zvcontrol_set_caller_id(CALLER_ID);
}

DaemonLink::~DaemonLink()
{
    zvcontrol_interface_close();
}

bool DaemonLink::poll(all_status_settings_t &record)
{
    uint16_t length = 0;
    const int32_t result = zvcontrol_send_command_param_response_ex_internal(
        ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0, record.bytes, sizeof record.bytes, &length);
    if (result == ZV_ERR_NO_RESPONSE) {
        record = m_last;
        record.bytes[STATUS_SYSTEM_SYSTEM_BUSY] = 1; // the status record comes first
        return false;
    }
    if (result == ZV_ERR) {
        fail(EXIT_FAILED,
             "the daemon refused to tell the camera's state, or its answer is no use; -v shows the library's log");
    }
    check(zvservice::Result::of_call(result, "read the camera's state"));
    if (length != sizeof record.bytes) {
        fail(EXIT_FAILED, "the daemon's answer has %u bytes where the camera's state has %zu", length,
             sizeof record.bytes);
    }
    m_last = record;
    return true;
}

all_status_settings_t DaemonLink::poll()
{
    all_status_settings_t record = {};
    if (!poll(record)) {
        check(zvservice::Result::of_call(ZV_ERR_NO_RESPONSE, "read the camera's state"));
    }
    return record;
}

CameraLink::CameraLink()
{
    m_context.mbox_name = reply_queue;
    m_context.mq_tx = NO_QUEUE;
    m_context.mq_rx = NO_QUEUE;
    open();
}

CameraLink::~CameraLink()
{
    close();
}

void CameraLink::open()
{
    m_context.mq_tx = open_peer(zv::RELAY_QUEUE, "the relay to the firmware");
    mq_attr attributes = {};
    attributes.mq_maxmsg = REPLY_DEPTH;
    attributes.mq_msgsize = ZVMSG_MAX;
    mq_unlink(reply_queue); // of a process long gone that had the same id
    m_context.mq_rx = mq_open(reply_queue, O_RDONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0664, &attributes);
    if (m_context.mq_rx < 0) {
        const int error = errno;
        close();
        fail_to_create("the queue for the camera's answers", error, ZVMSG_MAX);
    }
}

void CameraLink::close()
{
    if (m_context.mq_rx >= 0) {
        mq_close(m_context.mq_rx);
        mq_unlink(reply_queue);
    }
    if (m_context.mq_tx >= 0) {
        mq_close(m_context.mq_tx);
    }
    m_context.mq_rx = NO_QUEUE;
    m_context.mq_tx = NO_QUEUE;
}

CameraLink::operator zvc_msg_q_context_t *()
{
    if (m_context.rx_failed != 0) {
        close();
        open();
        m_context.rx_failed = 0;
    }
    zvc_reset_context(&m_context); // what is refused before it is sent leaves the code as it was
    return &m_context;
}

void CameraLink::check(int32_t result, const char *doing) const
{
    zvcam::check(zvservice::Result::of_call(result, doing, code()));
}

uint32_t camera_model()
{
    static const uint32_t model = zvc_state_get_model_number();
    return model;
}

} // namespace zvcam
