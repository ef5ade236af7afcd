#include "deadline.h"
#include "doing.h"
#include "link_parts.h"
#include "links.h"
#include "own_queues.h"
#include "queue_names.h"

#include <cerrno>
#include <optional>
#include <string>
#include <unistd.h>
#include <zvctrl/zvcontrol_if.h>

namespace zvservice {

namespace {

using std::chrono::milliseconds;

// Old answers may come before the echo of a fresh key: it is tried so often, but no longer than this.
constexpr int STEP_ATTEMPTS = 3;
constexpr milliseconds STEP_PATIENCE{1000};

// How long a daemon that takes nothing is left alone before it gets one more request.
constexpr milliseconds SILENCE{10000};

constexpr int FILES = 3; // the library's two queues, and one of them for the alarm

constexpr char CANNOT_CREATE[] = "cannot create the queue for the daemon's answers";

// The library's link to the daemon, which is the process's own; and so is what is known of it.
struct LibraryLink {
    std::atomic<pid_t> owner{0};          // the process that one of these links has it in, open or about to be
    std::atomic<bool> out_of_step{false}; // answers may come that the library takes for later ones
};
constinit LibraryLink library_link;

Result open_already()
{
    return {Outcome::FAILED, "cannot open the link to the daemon: this process has it open already"};
}

} // namespace

class DaemonLink::Queues : public LinkQueues {
  public:
    explicit Queues(uint8_t caller_id) : LinkQueues(zv::DAEMON_QUEUE, "the control daemon"), m_caller_id(caller_id) {}
    ~Queues();

    Result open();
    Result poll(all_status_settings_t &record, milliseconds patience);

  private:
    Result open_library();
    Result open_queues();
    void close();
    bool takes_requests();
    bool bring_in_step();
    int32_t ask(all_status_settings_t &answer, uint16_t &length);
    Result read_state(all_status_settings_t &record);
    Result judge(int32_t result, uint16_t length) const;

    uint8_t m_caller_id;
    unsigned m_generation = 0; // of the daemon's queue that the library is known to have

    bool m_silent = false;         // the last request was not answered
    Clock::time_point m_sent = {}; // when that was
};

DaemonLink::Queues::~Queues()
{
    close();
}

Result DaemonLink::Queues::open()
{
    if (Result found = open_peer(); !found.done()) {
        return found;
    }
    if (m_bell >= 0 && is_removed(m_bell)) {
        close(); // somebody cleaned up: no answer would ever come
    }
    if (m_bell < 0) {
        if (Result opened = open_library(); !opened.done()) {
            return opened;
        }
    } else if (m_generation != m_peer.generation()) {
        library_link.out_of_step = true;
        m_silent = false;
    }
    m_generation = m_peer.generation();
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
    if (!library_link.owner.compare_exchange_strong(nobody, getpid())) {
        return open_already();
    }
    Result opened = is_zvcontrol_interface_open() != 0 ? open_already() : open_queues();
    if (!opened.done()) {
        library_link.owner = 0;
    }
    return opened;
}

Result DaemonLink::Queues::open_queues()
{
    if (!may_open_files(FILES)) {
        return queue_failure(CANNOT_CREATE, EMFILE, 0); // the library would wait for better times
    }
    m_name.emplace(zv::RESPONSE_QUEUE_PREFIX + std::to_string(getpid()));
    if (!make_queue([] { return zvcontrol_interface_open() == ZV_OK; })) {
        const int error = errno;
        m_name.reset();
        return error == ENOENT ? m_peer.not_there() : queue_failure(CANNOT_CREATE, error, DAEMON_MSG_MAX);
    }
    settle();
    m_bell = open_bell(m_name->text());
    if (m_bell < 0) {
        const int error = errno;
        close();
        return queue_failure(CANNOT_CREATE, error, 0);
    }
    zvcontrol_set_caller_id(m_caller_id);
    return {};
}

// In a child this closes the child's copies alone.
void DaemonLink::Queues::close()
{
    close_queue(m_bell);
    if (m_name && (!is_elsewhere() || library_link.owner != getpid())) { // the child may have one of its own
        zvcontrol_interface_close();
        library_link.owner = 0;
    }
    m_name.reset();
}

// Whether a request may be sent. A daemon that answered nothing and leaves in its queue what it got is frozen or gone:
// more requests would keep the other clients from it, and all be carried out when it comes back.
bool DaemonLink::Queues::takes_requests()
{
    const PeerQueue::Fill fill = m_peer.fill();
    if (m_silent && fill.messages > 0 && (Clock::now() - m_sent < SILENCE || 2 * fill.messages >= fill.capacity)) {
        return false;
    }
    return wait_for_room(m_peer, *m_alarm);
}

// Makes sure that the next answer is the one to the next command.
bool DaemonLink::Queues::bring_in_step()
{
    if (!library_link.out_of_step && zvcontrol_is_response_queue_sychronized()) {
        return true;
    }
    const Deadline end = deadline_after(STEP_PATIENCE);
    for (int attempt = 0; attempt < STEP_ATTEMPTS && Clock::now() < end; ++attempt) {
        zvcontrol_flush_response_queue();
        if (!wait_for_room(m_peer, *m_alarm)) {
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

// Returns the library's result, or ZV_ERR_NO_RESPONSE for an answer that may not be the one to this request. A daemon
// may have an answer of its own to each key while the camera is switched off: that much is believed of it.
int32_t DaemonLink::Queues::ask(all_status_settings_t &answer, uint16_t &length)
{
    const bool in_step = bring_in_step();
    if (!in_step && (!zvcontrol_is_response_queue_sychronized() || !wait_for_room(m_peer, *m_alarm))) {
        return ZV_ERR_NO_RESPONSE;
    }
    const int32_t result = zvcontrol_send_command_param_response_ex_internal(
        ZVCONTROL_GET_ALL_SETTINGS_STATUS, nullptr, 0, answer.bytes, sizeof answer.bytes, &length);
    return in_step || result == ZV_ERR_NAK_OFF ? result : ZV_ERR_NO_RESPONSE;
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
    m_sent = Clock::now();
    const int32_t result = ask(answer, length);
    const bool rang = m_alarm->disarm();
    const bool ended = rang && (result == ZV_ERR || result == ZV_ERR_NO_RESPONSE);
    Result outcome = ended ? no_answer(READ_STATE, *m_alarm) : judge(result, length);
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
    if (is_elsewhere()) {
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
        return not_sent(READ_STATE, *m_alarm);
    }
    return read_state(record);
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

} // namespace zvservice
