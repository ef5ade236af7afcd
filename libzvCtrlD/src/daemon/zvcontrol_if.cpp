#include "zvcontrol_if.h"

#include "bytes.h"
#include "camera_records.h"
#include "camera_setting_ids.h"
#include "daemon_command_names.h"
#include "daemon_link.h"
#include "exchange.h"
#include "find_row.h"
#include "log_at.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

using namespace zv;

namespace {

static_assert(ZVCONTROL_SET_SETTING_ID == 30 && ZVCONTROL_GET_ALL_SETTINGS == 32 && ZVCONTROL_GET_ALL_STATUS == 33 &&
                  ZVCONTROL_GET_ALL_SETTINGS_STATUS == 34 && ZVCONTROL_RESYNC_MESSAGE_QUEUE == 102,
              "what the library itself sends and looks at goes by the daemon's own numbers");

constexpr size_t NUMBER_SIZE = 4;

// The commands whose answers are kept, and where they lie in the link's snapshot.
struct Snapshot {
    zvcontrol_command_t command;
    uint16_t offset;
    uint16_t size;
};
constexpr Snapshot SNAPSHOTS[] = {
    {ZVCONTROL_GET_ALL_SETTINGS, ALL_SETTINGS_OFFSET, sizeof(appc_setup_all_settings)},
    {ZVCONTROL_GET_ALL_STATUS, ALL_STATUS_OFFSET, sizeof(appc_system_all_status)},
    {ZVCONTROL_GET_ALL_SETTINGS_STATUS, ALL_STATUS_OFFSET, sizeof(all_status_settings_t)},
};

const Snapshot *find_snapshot(uint32_t command)
{
    return find_row(SNAPSHOTS, [=](const Snapshot &snapshot) { return snapshot.command == command; });
}

// Whether an answer carries exactly a snapshot that `command` does not answer with. It belongs to another command, and
// is the only one known to do so: an answer does not name its command. The resynchronisation judges what it gets by its
// key.
bool is_of_another_command(const Msg &answer, uint32_t command)
{
    const MsgElement *code = answer.findElement(TLV_RSP);
    const MsgElement *payload = answer.findElement(TLV_RSPARG);
    if (command == ZVCONTROL_RESYNC_MESSAGE_QUEUE || answer.getCategory() != CAT_ZVCTRL_RSP || code == nullptr ||
        code->getDataLength() < NUMBER_SIZE || payload == nullptr) {
        return false;
    }
    const auto is_of_size = [=](const Snapshot &snapshot) { return snapshot.size == payload->getDataLength(); };
    const Snapshot *own = find_snapshot(command);
    return find_row(SNAPSHOTS, is_of_size) != nullptr && (own == nullptr || !is_of_size(*own));
}

// Answers with the kept record, and says in a status record that the camera is busy. Returns the record's size.
uint16_t serve_kept(const Snapshot &snapshot, uint8_t *response)
{
    memcpy(response, daemon_link.snapshot + snapshot.offset, snapshot.size);
    if (snapshot.offset == ALL_STATUS_OFFSET) {
        response[STATUS_SYSTEM_SYSTEM_BUSY] = 1;
    }
    return snapshot.size;
}

constexpr uint32_t AUDIO_VELLIX_OPTION_OFF = 3;
constexpr uint16_t SETTING_PARAM_SIZE = 2 * NUMBER_SIZE; // id, value

bool check_open(const SourceLocation &where)
{
    if (daemon_link.buffer == nullptr) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "pReceiveBuffer NULL!");
        return false;
    }
    return true;
}

// Where the payload of an answer goes, as in zvcontrol_parse_ret_response.
struct Payload {
    uint8_t *bytes;
    uint16_t size;
    uint16_t *length;
};

// Waits for the next message, which is then in the link's buffer. Returns its length, or ZV_ERR_NO_RESPONSE.
int32_t wait_response(TimeLimit &limit)
{
    const Received answer = await_answer(daemon_link.responses, daemon_link.buffer, DAEMON_MSG_MAX, limit);
    if (answer.length >= 0) {
        return answer.length;
    }
    const char *name = daemon_link.response_queue_name != nullptr ? daemon_link.response_queue_name : "";
    daemon_link.in_step = false;
    if (answer.error == ETIMEDOUT) {
        ZV_LOG(ZV_LOG_ERROR, "Timed out (%dsec) on receive on message queue %s, ret %d errno %d\n", ANSWER_SECONDS,
               name, answer.length, answer.error);
    } else {
        ZV_LOG(ZV_LOG_ERROR, "Error receiving response on message queue %s, ret %d errno %d\n", name, answer.length,
               answer.error);
    }
    return ZV_ERR_NO_RESPONSE;
}

// Copies the data of the first element of `type`, or as much of it as there is room for. A payload that is not wanted,
// or of a camera that is switched off, may be missing.
int32_t copy_payload(const Msg &answer, uint8_t type, int32_t code, const Payload &payload)
{
    if (payload.bytes == nullptr || payload.size == 0 || code == ZV_ERR_NAK_OFF) {
        return ZV_OK;
    }
    const MsgElement *element = answer.findElement(type);
    if (element == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "WARNING: No typeRSPARG in response from daemon, we expected one! return code was:%d",
               code);
        return ZV_ERR;
    }
    const uint16_t copied = std::min(element->getDataLength(), payload.size);
    if (copied != 0) {
        memcpy(payload.bytes, element->getData(), copied);
    }
    if (payload.length != nullptr) {
        *payload.length = copied;
    }
    return ZV_OK;
}

// Takes the next message that may be the answer to `command`, and its return code. `name` is the command's in the log.
int32_t receive_answer(uint32_t command, const char *name, TimeLimit &limit, Msg &answer, int32_t &code,
                       const SourceLocation &where)
{
    for (;;) {
        const int32_t length = wait_response(limit);
        if (length < 0) {
            ZV_LOG_AT(where, ZV_LOG_ERROR, "zvcontrol_wait_response failed! command: %s(%d) ret: %d", name,
                      static_cast<int>(command), length);
            return length;
        }
        ZV_LOG_AT(where, ZV_LOG_INFO, "zvcontrol_wait_response ret:%d, len:%d", ZV_OK, length);
        code = parse_return_code(daemon_link.buffer, static_cast<uint16_t>(length), answer);
        if (!is_of_another_command(answer, command)) {
            return ZV_OK;
        }
        ZV_LOG_AT(where, ZV_LOG_ERROR, "Dropped the answer to another command, waiting for that to %s(%d)", name,
                  static_cast<int>(command));
    }
}

// Posts a command and takes its answer; `code` is then the daemon's return code. Without a wait neither that nor the
// payload is touched.
int32_t exchange(uint32_t command, const char *name, const Parameter &parameter, int32_t &code, const Payload &payload,
                 const SourceLocation &where)
{
    TimeLimit limit(ANSWER_SECONDS);
    if (const int32_t result = post_command(command, parameter, limit, where); result != ZV_OK || !daemon_link.waits) {
        return result;
    }
    Msg answer(CAT_ZVCTRL_RSP);
    if (const int32_t result = receive_answer(command, name, limit, answer, code, where); result != ZV_OK) {
        return result;
    }
    if (copy_payload(answer, TLV_RSPARG, code, payload) != ZV_OK) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "Failed to parse response");
        return ZV_ERR;
    }
    return ZV_OK;
}

// Whether a payload is the echo of the last key, and nothing but it; what else came is logged.
bool is_echo(const uint8_t *payload, uint16_t length)
{
    const uint32_t key = le32(payload);
    if (length >= NUMBER_SIZE && key != daemon_link.last_key) {
        ZV_LOG(ZV_LOG_ERROR, "Response to (ZVCONTROL_RESYNC_MESSAGE_QUEUE) has wrong response key %u, expected key %u",
               key, daemon_link.last_key);
        return false;
    }
    if (length != NUMBER_SIZE) {
        ZV_LOG(ZV_LOG_ERROR, "Response to (ZVCONTROL_RESYNC_MESSAGE_QUEUE) has wrong size, %d", length);
        return false;
    }
    ZV_LOG(ZV_LOG_ERROR, "Expected sync key %u returned, resychronization achieved", key);
    return true;
}

} // namespace

int32_t zvcontrol_interface_open()
{
    return zvcontrol_interface_open_async(nullptr);
}

int32_t zvcontrol_interface_open_async(const char *queue_name)
{
    if (daemon_link.response_queue_name != nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "Interface must be closed before reuse!\n");
        return ZV_ERR;
    }
    const int32_t result = open_daemon_link(queue_name, SourceLocation::current());
    if (result != ZV_OK) {
        close_daemon_link();
    }
    return result;
}

int32_t zvcontrol_interface_close()
{
    close_daemon_link();
    return ZV_OK;
}

int32_t is_zvcontrol_interface_open()
{
    return daemon_link.response_queue_name != nullptr ? 1 : 0;
}

void zvcontrol_set_caller_id(uint8_t id)
{
    daemon_link.caller_id = id;
}

uint8_t zvcontrol_get_caller_id()
{
    return daemon_link.caller_id;
}

bool zvcontrol_is_response_queue_sychronized()
{
    return daemon_link.in_step;
}

int32_t zvcontrol_send_command_param_response(zvcontrol_command_t command, const uint8_t *param, uint16_t param_length,
                                              uint8_t *response, uint16_t response_size)
{
    const int32_t result =
        zvcontrol_send_command_param_response_ex(command, param, param_length, response, response_size, nullptr);
    if (result != ZV_OK || command != ZVCONTROL_SET_SETTING_ID) {
        return result;
    }
    if (param == nullptr || param_length != SETTING_PARAM_SIZE) {
        ZV_LOG(ZV_LOG_ERROR, "Invalid setting param legnth =%d", param_length);
        return ZV_OK;
    }
    if (le32(param) != SETTING_AUDIO_VELLIX_OPTION) {
        return ZV_OK;
    }
    uint8_t following[SETTING_PARAM_SIZE];
    put_le32(following, SETTING_AUDIO_VELLIX_ON);
    put_le32(following + NUMBER_SIZE, le32(param + NUMBER_SIZE) != AUDIO_VELLIX_OPTION_OFF ? 1 : 0);
    return zvcontrol_send_command_param_response_ex(ZVCONTROL_SET_SETTING_ID, following, sizeof following, response,
                                                    response_size, nullptr);
}

int32_t zvcontrol_send_command_param_response_ex(zvcontrol_command_t command, const uint8_t *param,
                                                 uint16_t param_length, uint8_t *response, uint16_t response_size,
                                                 uint16_t *response_length)
{
    uint16_t own_length = 0;
    uint16_t *length = response_length != nullptr ? response_length : &own_length;
    const int32_t result = zvcontrol_send_command_param_response_ex_internal(command, param, param_length, response,
                                                                             response_size, length);
    const Snapshot *snapshot = find_snapshot(command);
    if (snapshot == nullptr || response == nullptr) {
        return result;
    }
    if (result == ZV_ERR_NO_RESPONSE && response_size >= snapshot->size) {
        *length = serve_kept(*snapshot, response);
        return ZV_OK;
    }
    // A payload was received, and so its length stored, only where the library waited for it.
    if (result == ZV_OK && daemon_link.waits && response_size == snapshot->size && *length == snapshot->size) {
        memcpy(daemon_link.snapshot + snapshot->offset, response, snapshot->size);
    }
    return result;
}

int32_t zvcontrol_send_command_param_response_ex_internal(zvcontrol_command_t command, const uint8_t *param,
                                                          uint16_t param_length, uint8_t *response,
                                                          uint16_t response_size, uint16_t *response_length)
{
    const auto where = SourceLocation::current();
    const Parameter parameter = {param, param_length};
    if (!check_open(where)) {
        return ZV_ERR;
    }
    if (!command_fits(parameter)) {
        ZV_LOG(ZV_LOG_ERROR, "param_length too long: %d!  Max is %d.", param_length, DAEMON_MSG_MAX);
        return ZV_ERR;
    }
    zvcontrol_flush_response_queue();
    if (!daemon_link.in_step) {
        ZV_LOG(ZV_LOG_ERROR, "Desynchronization detected when sending zvcontrol command, attempting resync");
        if (zvcontrol_send_resync() != ZV_OK) {
            ZV_LOG(ZV_LOG_ERROR, "Resync failed, cannot send command");
            return ZV_ERR_NO_RESPONSE;
        }
        zvcontrol_flush_response_queue(); // an echo that came twice is no answer to what follows
    }
    const auto number = static_cast<uint32_t>(command);
    int32_t code = ZV_OK;
    const int32_t result =
        exchange(number, command_name(number), parameter, code, {response, response_size, response_length}, where);
    return result != ZV_OK ? result : code;
}

int32_t zvcontrol_send_resync()
{
    const auto where = SourceLocation::current();
    uint8_t key[NUMBER_SIZE];
    put_le32(key, ++daemon_link.last_key);
    if (!check_open(where) || !find_daemon_again(where)) {
        return ZV_ERR_NO_RESPONSE;
    }
    uint8_t echo[DAEMON_MSG_MAX] = {}; // the whole payload: one that only begins with the key is no echo
    uint16_t echo_length = 0;
    int32_t code = ZV_OK;
    if (exchange(ZVCONTROL_RESYNC_MESSAGE_QUEUE, "ZVCONTROL_RESYNC_MESSAGE_QUEUE", {key, sizeof key}, code,
                 {echo, sizeof echo, &echo_length}, where) != ZV_OK) {
        return ZV_ERR_NO_RESPONSE;
    }
    if (code != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "Error prasing response: %d", code);
        return ZV_ERR_NO_RESPONSE;
    }
    if (!is_echo(echo, echo_length)) {
        return ZV_ERR_NO_RESPONSE;
    }
    daemon_link.in_step = true;
    return ZV_OK;
}

int32_t zvcontrol_wait_response(uint8_t **buffer, uint16_t *length)
{
    TimeLimit limit(ANSWER_SECONDS);
    const int32_t result = wait_response(limit);
    if (result < 0) {
        *length = 0;
        return result;
    }
    *buffer = daemon_link.buffer;
    *length = static_cast<uint16_t>(result);
    return ZV_OK;
}

void zvcontrol_flush_response_queue()
{
    char trash[DAEMON_MSG_MAX];
    drain_queue(daemon_link.responses, trash, sizeof trash,
                "There are %d outstanding messages in the zvcontrol rx queue");
}

int32_t parse_return_code(const uint8_t *buffer, uint16_t length, Msg &msg)
{
    MemStream stream(const_cast<uint8_t *>(buffer), length); // which is only read from
    try {
        stream >> msg;
    } catch (const std::bad_alloc &) {
        ZV_LOG(ZV_LOG_ERROR, "Out of memory");
        msg.clear();
        return ZV_ERR;
    }
    msg.dump();
    if (stream.failed()) {
        ZV_LOG(ZV_LOG_ERROR, "Message from zvControlD is cut off, actual length (%d)", length);
        return ZV_ERR;
    }
    if (msg.getCategory() != CAT_ZVCTRL_RSP) {
        ZV_LOG(ZV_LOG_ERROR, "Message from zvControlD was not CAT_ZVCTRL_RSP, actual (%d)", msg.getCategory());
        return ZV_ERR;
    }
    const MsgElement *code = msg.findElement(TLV_RSP);
    if (code == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "Expected a typeRSP element from daemon but got none");
        return ZV_ERR;
    }
    if (code->getDataLength() < NUMBER_SIZE) {
        ZV_LOG(ZV_LOG_ERROR, "ERROR: typeRSP did not contain enough bytes for int32_t (got %d)", code->getDataLength());
        return ZV_ERR;
    }
    return static_cast<int32_t>(le32(code->getData()));
}

int32_t zvcontrol_parse_ret_response_type(const uint8_t *buffer, uint16_t length, int32_t *ret, uint8_t *payload,
                                          uint16_t payload_size, uint8_t type, uint16_t *payload_length)
{
    Msg msg(CAT_ZVCTRL_RSP);
    *ret = parse_return_code(buffer, length, msg);
    return copy_payload(msg, type, *ret, {payload, payload_size, payload_length});
}

int32_t zvcontrol_parse_ret_response(const uint8_t *buffer, uint16_t length, int32_t *ret, uint8_t *payload,
                                     uint16_t payload_size, uint16_t *payload_length)
{
    return zvcontrol_parse_ret_response_type(buffer, length, ret, payload, payload_size, TLV_RSPARG, payload_length);
}

void zvcontrol_debug_enable()
{
    enableMessageDebugging(0);
}
