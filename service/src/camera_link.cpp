#include "catalogue.h"
#include "doing.h"
#include "link_parts.h"
#include "links.h"
#include "message_format.h"
#include "own_queues.h"
#include "queue_names.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <string>
#include <unistd.h>
#include <zvctrl/camera_interface.h>
#include <zvctrl/zvc_state.h>

namespace zvservice {

namespace {

using std::chrono::milliseconds;

constexpr char CANNOT_CREATE[] = "cannot create the queue for the camera's answers";

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
    zvIoBuf_t &answer = context.iobuf;
    if (answer.len < zv::TLV_HEADER_SIZE || sntlv_msg_len(answer.buf) != answer.len ||
        answer.buf[zv::MESSAGE_CATEGORY] == zv::CATEGORY_DORSAK + 1) {
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

class CameraLink::Queues : public LinkQueues {
  public:
    Queues() : LinkQueues(zv::RELAY_QUEUE, "the relay to the firmware") {}
    ~Queues();

    Result open();
    Result call(const char *doing, const Operation &operation, milliseconds patience);

  private:
    Result open_replies();
    void close();
    Result carry_out(const char *doing, const Operation &operation);

    mqd_t m_replies = -1;
    bool m_late = false; // an answer may yet come for a call that did not wait for it
    zvc_msg_q_context_t m_context = {};
};

CameraLink::Queues::~Queues()
{
    close();
}

Result CameraLink::Queues::open()
{
    if (Result found = open_peer(); !found.done()) {
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
    m_context.mq_tx = m_peer.descriptor();
    return {};
}

Result CameraLink::Queues::open_replies()
{
    zvUtilTellCounterFailures(false);
    m_name.emplace(new_reply_name());
    if (!make_queue([this] { return (m_replies = make_reply_queue(m_name->text())) >= 0; })) {
        const int error = errno;
        m_name.reset();
        return queue_failure(CANNOT_CREATE, error, ZVMSG_MAX);
    }
    settle();
    m_bell = open_bell(m_name->text());
    if (m_bell < 0) {
        const int error = errno;
        close();
        return queue_failure(CANNOT_CREATE, error, 0);
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
    if (m_replies >= 0 && !is_elsewhere()) {
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
    if (is_elsewhere()) {
        return in_a_child();
    }
    const Alarm::Call call(*m_alarm, patience);
    if (Result opened = open(); !opened.done()) {
        return opened;
    }
    if (m_alarm->left(LIBRARY_PATIENCE) == milliseconds::zero()) {
        return no_answer(doing, *m_alarm);
    }
    if (!wait_for_room(m_peer, *m_alarm)) {
        return not_sent(doing, *m_alarm);
    }
    return carry_out(doing, operation);
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

CameraIdentity camera_identity()
{
    const auto text_of = [](int32_t (*get)(char *buffer, int32_t size)) -> std::string {
        char text[ZVC_STATE_TEXT_SIZE] = {};
        return get(text, sizeof text) == ZV_OK ? text : "";
    };
    return {text_of(zvc_state_get_model_name), text_of(zvc_state_get_serial_number),
            text_of(zvc_state_get_firmware_version)};
}

} // namespace zvservice
