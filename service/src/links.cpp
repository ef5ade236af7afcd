#include "links.h"

#include "alarm.h"
#include "catalogue.h"
#include "doing.h"
#include "own_queues.h"
#include "peer_queue.h"
#include "queue_names.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <unistd.h>
#include <zvctrl/camera_interface.h>
#include <zvctrl/zvc_state.h>
#include <zvctrl/zvcontrol_if.h>

namespace zvservice {

namespace {

using std::chrono::milliseconds;
using Clock = Alarm::Clock;

// How long a look for room may last before it looks whether the call was interrupted.
constexpr milliseconds ROOM_SLICE{50};
constexpr milliseconds LIBRARY_PATIENCE{10000};

// Old answers may come before the echo of a fresh key: it is tried so often, but no longer than this.
constexpr int STEP_ATTEMPTS = 3;
constexpr milliseconds STEP_PATIENCE{1000};

// How long a daemon that takes nothing is left alone before it gets one more request.
constexpr milliseconds SILENCE{10000};

constexpr char CANNOT_OPEN_DAEMON[] = "cannot create the queue for the daemon's answers";
constexpr char CANNOT_OPEN_CAMERA[] = "cannot create the queue for the camera's answers";

// The library's link to the daemon, which is the process's own as what is known of it.
struct LibraryLink {
    std::atomic<pid_t> owner{0};          // the process that one of these links has it open in
    std::atomic<bool> out_of_step{false}; // answers may come that the library takes for later ones
};
constinit LibraryLink library_link;

// The process that a link's queues belong to.
class Home {
  public:
    void settle() { m_process = getpid(); }

    // Whether this is a child of that process.
    bool is_elsewhere() const
    {
        const pid_t process = m_process;
        return process != 0 && process != getpid();
    }

    // Makes an end of what a link owns: in a child the alarm has no thread, and its lock may be taken for ever.
    void release(std::unique_ptr<Alarm> &alarm) const
    {
        if (is_elsewhere()) {
            static_cast<void>(alarm.release());
        }
    }

  private:
    std::atomic<pid_t> m_process{0};
};

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

Result takes_nothing(const char *doing)
{
    return Result::cannot(Outcome::NO_ANSWER, doing, "the camera's side takes no requests; is it still running?");
}

Result no_alarm(const char *doing, int error)
{
    return Result::cannot(Outcome::FAILED, doing, std::string("no thread can be started: ") + strerror(error));
}

// Opens a queue of this process's own for the alarm.
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

// Waits until a peer's queue has room, within the call's time and the library's.
bool wait_for_room(const PeerQueue &peer, Alarm &alarm)
{
    const Clock::time_point end = Clock::now() + LIBRARY_PATIENCE;
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

// `make` makes a queue and returns whether it did. Where the user's queues have no bytes left for it, those that ended
// processes left behind are removed first.
template <class Make>
bool make_queue(const Make &make)
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

} // namespace

// ---- The daemon ----------------------------------------------------------------------------------------------------

class DaemonLink::Queues {
  public:
    explicit Queues(uint8_t caller_id) : m_caller_id(caller_id) {}
    ~Queues();
    Queues(const Queues &) = delete;
    Queues &operator=(const Queues &) = delete;

    Result open();
    Result poll(all_status_settings_t &record, milliseconds patience);
    void interrupt() noexcept;

  private:
    Result open_library();
    void close();
    bool takes_requests();
    bool bring_in_step();
    bool answers_without_echo();
    Result read_state(all_status_settings_t &record);
    Result judge(int32_t result, uint16_t length) const;

    uint8_t m_caller_id;
    Home m_home;
    PeerQueue m_daemon{zv::DAEMON_QUEUE, "the control daemon"};
    unsigned m_generation = 0; // of the daemon's queue that the library is known to have
    std::optional<OwnQueueName> m_name;
    mqd_t m_bell = -1; // the response queue, open for the alarm; open while the library's link is
    std::unique_ptr<Alarm> m_alarm = std::make_unique<Alarm>();

    bool m_silent = false;         // the last request was not answered
    Clock::time_point m_sent = {}; // when that was
};

DaemonLink::Queues::~Queues()
{
    close();
    m_home.release(m_alarm);
}

Result DaemonLink::Queues::open()
{
    if (m_home.is_elsewhere()) {
        return in_a_child();
    }
    if (Result found = m_daemon.open(); !found.done()) {
        return found;
    }
    if (m_bell >= 0 && is_removed(m_bell)) {
        close(); // somebody cleaned up: no answer would ever come
    }
    if (m_bell < 0) {
        if (Result opened = open_library(); !opened.done()) {
            return opened;
        }
    } else if (m_generation != m_daemon.generation()) {
        library_link.out_of_step = true;
        m_silent = false;
    }
    m_generation = m_daemon.generation();
    return {};
}

Result DaemonLink::Queues::open_library()
{
    zvUtilTellCounterFailures(false);
    if (const pid_t owner = library_link.owner; owner != 0 && owner != getpid()) {
        zvcontrol_interface_close(); // the copy of a parent's
        library_link.owner = 0;
    }
    pid_t nobody = 0;
    const bool is_mine = library_link.owner.compare_exchange_strong(nobody, getpid());
    if (!is_mine || is_zvcontrol_interface_open() != 0) {
        if (is_mine) {
            library_link.owner = 0; // the program has opened it by itself
        }
        return {Outcome::FAILED, "cannot open the link to the daemon: this process has it open already"};
    }
    m_name.emplace(zv::RESPONSE_QUEUE_PREFIX + std::to_string(getpid()));
    if (!make_queue([] { return zvcontrol_interface_open() == ZV_OK; })) {
        const int error = errno;
        m_name.reset();
        library_link.owner = 0;
        return error == ENOENT ? m_daemon.not_there() : queue_failure(CANNOT_OPEN_DAEMON, error, DAEMON_MSG_MAX);
    }
    m_home.settle();
    m_bell = open_bell(m_name->text());
    if (m_bell < 0) {
        const int error = errno;
        close();
        return queue_failure(CANNOT_OPEN_DAEMON, error, 0);
    }
    zvcontrol_set_caller_id(m_caller_id);
    return {};
}

// In a child this closes the child's copies alone.
void DaemonLink::Queues::close()
{
    close_queue(m_bell);
    if (m_name && (!m_home.is_elsewhere() || library_link.owner != getpid())) { // the child may have one of its own
        zvcontrol_interface_close();
        library_link.owner = 0;
    }
    m_name.reset();
}

// Whether a request may be sent. A daemon that answered nothing and leaves in its queue what it got is frozen or gone:
// more requests would keep the other clients from it, and all be carried out when it comes back.
bool DaemonLink::Queues::takes_requests()
{
    const PeerQueue::Fill fill = m_daemon.fill();
    if (m_silent && fill.messages > 0 && (Clock::now() - m_sent < SILENCE || 2 * fill.messages >= fill.capacity)) {
        return false;
    }
    return wait_for_room(m_daemon, *m_alarm);
}

// Makes sure that the next answer is the one to the next command.
bool DaemonLink::Queues::bring_in_step()
{
    if (!library_link.out_of_step && zvcontrol_is_response_queue_sychronized()) {
        return true;
    }
    const Clock::time_point end = Clock::now() + STEP_PATIENCE;
    for (int attempt = 0; attempt < STEP_ATTEMPTS && Clock::now() < end; ++attempt) {
        zvcontrol_flush_response_queue();
        if (!wait_for_room(m_daemon, *m_alarm)) {
            return false;
        }
        if (zvcontrol_send_resync() == ZV_OK) {
            zvcontrol_flush_response_queue(); // an echo that came twice
            library_link.out_of_step = false;
            return true;
        }
    }
    return false;
}

// Whether the daemon answered each key with something else, which it may do for a camera that is switched off. Only
// that is then believed of an answer.
bool DaemonLink::Queues::answers_without_echo()
{
    return zvcontrol_is_response_queue_sychronized() && wait_for_room(m_daemon, *m_alarm);
}

Result DaemonLink::Queues::judge(int32_t result, uint16_t length) const
{
    if (result == ZV_ERR) {
        return {Outcome::FAILED, "the daemon refused to tell the camera's state, or its answer is no use", result};
    }
    if (result == ZV_OK && length != sizeof(all_status_settings_t)) {
        return {Outcome::FAILED, "the daemon's answer has " + std::to_string(length) +
                                     " bytes where the camera's state has " +
                                     std::to_string(sizeof(all_status_settings_t))};
    }
    return Result::of_call(result, READ_STATE);
}

Result DaemonLink::Queues::read_state(all_status_settings_t &record)
{
    if (const int error = m_alarm->arm(m_bell); error != 0) {
        return no_alarm(READ_STATE, error);
    }
    all_status_settings_t answer;
    uint16_t length = 0;
    int32_t result = ZV_ERR_NO_RESPONSE;
    m_sent = Clock::now();
    if (bring_in_step()) {
        result = zvcontrol_send_command_param_response_ex_internal(ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0,
                                                                   answer.bytes, sizeof answer.bytes, &length);
    }
    const bool rang = m_alarm->disarm();
    Result outcome = rang && result != ZV_OK ? no_answer(READ_STATE, *m_alarm) : judge(result, length);
    m_silent = outcome.outcome() == Outcome::NO_ANSWER;
    if (outcome.done()) {
        record = answer;
    } else if (outcome.outcome() != Outcome::SWITCHED_OFF) {
        library_link.out_of_step = true;
    }
    return outcome;
}

Result DaemonLink::Queues::poll(all_status_settings_t &record, milliseconds patience)
{
    if (m_home.is_elsewhere()) {
        return in_a_child();
    }
    const Alarm::Call call(*m_alarm, patience);
    if (Result opened = open(); !opened.done()) {
        return opened;
    }
    if (m_alarm->left(LIBRARY_PATIENCE) == milliseconds::zero()) {
        return no_answer(READ_STATE, *m_alarm);
    }
    if (!takes_requests()) {
        return m_alarm->interrupted() ? no_answer(READ_STATE, *m_alarm) : takes_nothing(READ_STATE);
    }
    return read_state(record);
}

void DaemonLink::Queues::interrupt() noexcept
{
    if (!m_home.is_elsewhere()) {
        m_alarm->interrupt();
    }
}

DaemonLink::DaemonLink(uint8_t caller_id) : m_queues(std::make_unique<Queues>(caller_id)) {}

DaemonLink::~DaemonLink() = default;

Result DaemonLink::open()
{
    return m_queues->open();
}

Result DaemonLink::poll(all_status_settings_t &record, milliseconds patience)
{
    return m_queues->poll(record, patience);
}

void DaemonLink::interrupt() noexcept
{
    m_queues->interrupt();
}

// ---- The camera ----------------------------------------------------------------------------------------------------

namespace {

// A name that no queue of this process had before: an answer that is late goes to a queue that is no more.
std::string new_reply_name()
{
    static std::atomic<unsigned> count{0};
    return zv::REPLY_QUEUE_PREFIX + std::to_string(getpid()) + "." + std::to_string(++count);
}

mqd_t make_reply_queue(const char *name)
{
    mq_attr attributes = {};
    attributes.mq_maxmsg = zv::REPLY_QUEUE_DEPTH;
    attributes.mq_msgsize = ZVMSG_MAX;
    mq_unlink(name); // of a process long gone that had the same id
    return mq_open(name, O_RDONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0664, &attributes);
}

// Whether the last answer on the context says that the camera is switched off: it is a byte alone. The relay's own
// answers have no such meaning.
bool says_switched_off(zvc_msg_q_context_t &context)
{
    constexpr int32_t HEADER_SIZE = 4;
    constexpr size_t CATEGORY = 3;
    zvIoBuf_t &answer = context.iobuf;
    if (answer.len < HEADER_SIZE || sntlv_msg_len(answer.buf) != answer.len ||
        answer.buf[CATEGORY] == zv::CATEGORY_DORSAK + 1) {
        return false;
    }
    uint8_t *payload = nullptr;
    uint16_t size = 0;
    zvmsg_response(&answer, &payload, &size);
    return size == 1 && payload[0] == ZVN_NACK_OFF;
}

bool is_alarm(const zvIoBuf_t &answer)
{
    return answer.len == sizeof ALARM_BYTE && answer.buf[0] == ALARM_BYTE;
}

} // namespace

class CameraLink::Queues {
  public:
    Queues() = default;
    ~Queues();
    Queues(const Queues &) = delete;
    Queues &operator=(const Queues &) = delete;

    Result open();
    Result call(const char *doing, const Operation &operation, milliseconds patience);
    void interrupt() noexcept;

  private:
    Result open_replies();
    void close();
    Result carry_out(const char *doing, const Operation &operation);

    Home m_home;
    PeerQueue m_relay{zv::RELAY_QUEUE, "the relay to the firmware"};
    std::optional<OwnQueueName> m_name;
    mqd_t m_replies = -1;
    mqd_t m_bell = -1;   // the same queue, open for the alarm
    bool m_late = false; // an answer may yet come for a call that did not wait for it
    std::unique_ptr<Alarm> m_alarm = std::make_unique<Alarm>();
    zvc_msg_q_context_t m_context = {};
};

CameraLink::Queues::~Queues()
{
    close();
    m_home.release(m_alarm);
}

Result CameraLink::Queues::open()
{
    if (m_home.is_elsewhere()) {
        return in_a_child();
    }
    if (Result found = m_relay.open(); !found.done()) {
        return found;
    }
    if (m_late || (m_replies >= 0 && is_removed(m_replies))) {
        close();
    }
    if (m_replies < 0) {
        if (Result opened = open_replies(); !opened.done()) {
            return opened;
        }
    }
    m_context.mq_tx = m_relay.descriptor();
    return {};
}

Result CameraLink::Queues::open_replies()
{
    zvUtilTellCounterFailures(false);
    m_name.emplace(new_reply_name());
    if (!make_queue([this] { return (m_replies = make_reply_queue(m_name->text())) >= 0; })) {
        const int error = errno;
        m_name.reset();
        return queue_failure(CANNOT_OPEN_CAMERA, error, ZVMSG_MAX);
    }
    m_home.settle();
    m_bell = open_bell(m_name->text());
    if (m_bell < 0) {
        const int error = errno;
        close();
        return queue_failure(CANNOT_OPEN_CAMERA, error, 0);
    }
    m_late = false;
    m_context.mbox_name = m_name->text();
    m_context.mq_rx = m_replies;
    m_context.rx_failed = 0;
    return {};
}

// In a child this closes the child's copies alone.
void CameraLink::Queues::close()
{
    if (m_replies >= 0 && !m_home.is_elsewhere()) {
        mq_unlink(m_name->text());
    }
    close_queue(m_replies);
    close_queue(m_bell);
    m_name.reset();
}

Result CameraLink::Queues::carry_out(const char *doing, const Operation &operation)
{
    zvc_reset_context(&m_context); // what is refused before it is sent leaves the code as it was
    if (const int error = m_alarm->arm(m_bell); error != 0) {
        return no_alarm(doing, error);
    }
    m_late = true; // until the operation has returned in time
    const int32_t result = operation(&m_context);
    const bool rang = m_alarm->disarm();
    const bool ended = rang && (is_alarm(m_context.iobuf) || (result != ZV_OK && m_context.rtos_error_code == 0));
    m_late = ended || m_context.rx_failed != 0;
    if (says_switched_off(m_context)) {
        return Result::switched_off(doing);
    }
    return ended ? no_answer(doing, *m_alarm) : Result::of_call(result, doing, m_context.rtos_error_code);
}

Result CameraLink::Queues::call(const char *doing, const Operation &operation, milliseconds patience)
{
    if (m_home.is_elsewhere()) {
        return in_a_child();
    }
    const Alarm::Call call(*m_alarm, patience);
    if (Result opened = open(); !opened.done()) {
        return opened;
    }
    if (m_alarm->left(LIBRARY_PATIENCE) == milliseconds::zero()) {
        return no_answer(doing, *m_alarm);
    }
    if (!wait_for_room(m_relay, *m_alarm)) {
        return m_alarm->interrupted() ? no_answer(doing, *m_alarm) : takes_nothing(doing);
    }
    return carry_out(doing, operation);
}

void CameraLink::Queues::interrupt() noexcept
{
    if (!m_home.is_elsewhere()) {
        m_alarm->interrupt();
    }
}

CameraLink::CameraLink() : m_queues(std::make_unique<Queues>()) {}

CameraLink::~CameraLink() = default;

Result CameraLink::open()
{
    return m_queues->open();
}

Result CameraLink::call(const char *doing, const Operation &operation, milliseconds patience)
{
    return m_queues->call(doing, operation, patience);
}

Result CameraLink::set(const State &state, uint32_t setting, uint32_t option, milliseconds patience)
{
    const Catalogue catalogue(state.model());
    const settings_id_entry_t &row = catalogue.row(setting);
    const uint32_t value = getOptionValueById(state.model(), setting, option);
    if (row.value_size == 1 && value > UINT8_MAX) {
        return {Outcome::NO_SUCH_OPTION, catalogue.name(setting) + " is a number from 0 to " +
                                             std::to_string(UINT8_MAX) + ", not \"" + std::to_string(value) + "\""};
    }
    return call(
        CHANGE_SETTING,
        [&](zvc_msg_q_context_t *context) {
            return camera_if_settings_set_value_int(context, static_cast<int32_t>(setting), row.group_id, row.action_id,
                                                    value, row.value_size, &state.settings(), &state.status());
        },
        patience);
}

void CameraLink::interrupt() noexcept
{
    m_queues->interrupt();
}

uint32_t camera_model()
{
    return zvc_state_get_model_number();
}

} // namespace zvservice
