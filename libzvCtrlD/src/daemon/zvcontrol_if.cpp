#include "zvcontrol_if.h"

#include "bytes.h"
#include "camera_status.h"
#include "daemon_command_names.h"
#include "queue_drain.h"
#include "queues.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace {

using zv::DAEMON_QUEUE;
using zv::RESPONSE_QUEUE_DEPTH;

constexpr int DAEMON_OPEN_ATTEMPTS = 12;
constexpr unsigned DAEMON_OPEN_PAUSE_SECONDS = 1;

constexpr size_t QUEUE_NAME_MAX = 256;
constexpr mode_t RESPONSE_QUEUE_MODE = 0664;

constexpr int RESPONSE_SECONDS = 10;
constexpr uint16_t PARAM_MAX = DAEMON_MSG_MAX - 1;
constexpr size_t NUMBER_SIZE = 4;

mqd_t mqd = -1;                        // the response queue
mqd_t mqdDaemon = -1;                  // the daemon's
char *pResponseMsgQueueName = nullptr; // not null: the interface is open
int32_t messageQNameLen = 0;
uint8_t *pReceiveBuffer = nullptr; // the command, then its answer: DAEMON_MSG_MAX bytes
bool blockingMode = false;         // the library waits for the answers itself
uint8_t caller_id = 0;
bool responseQueueSychronized = true;
uint32_t lastSyncKey = 0xBABABA;

// The last snapshot, in the layout of all_status_settings_t.
uint8_t settingsStatusCache[sizeof(all_status_settings_t)];

// The elements of a command, filled anew for each.
MsgElement elSRC(TLV_SRC, true);
MsgElement elCMD(TLV_CMD, true);
MsgElement elCMDARG(TLV_CMDARG, true);
MsgElement elASOURCE(TLV_ASOURCE, true);
MsgElement elEE(TLV_END, true);

// The commands whose answers are kept, and where they lie in the cache.
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

const Snapshot *find_snapshot(zvcontrol_command_t command)
{
    const auto *found = std::find_if(std::begin(SNAPSHOTS), std::end(SNAPSHOTS),
                                     [command](const Snapshot &snapshot) { return snapshot.command == command; });
    return found != std::end(SNAPSHOTS) ? found : nullptr;
}

// A write of setting 139 takes setting 79 along.
constexpr uint32_t LEADING_SETTING = 139;
constexpr uint32_t LEADING_VALUE_OFF = 3;
constexpr uint32_t FOLLOWING_SETTING = 79;
constexpr uint16_t SETTING_PARAM_SIZE = 2 * NUMBER_SIZE; // id, value

bool open_daemon_queue()
{
    for (int attempt = 0; attempt < DAEMON_OPEN_ATTEMPTS; ++attempt) {
        mqdDaemon = mq_open(DAEMON_QUEUE, O_WRONLY);
        if (mqdDaemon >= 0) {
            return true;
        }
        ZV_LOG(ZV_LOG_ERROR, "mq_open() failed for '%s': %s\n", DAEMON_QUEUE, strerror(errno));
        sleep(DAEMON_OPEN_PAUSE_SECONDS);
    }
    return false;
}

bool create_response_queue()
{
    mq_attr attributes = {};
    attributes.mq_maxmsg = RESPONSE_QUEUE_DEPTH;
    attributes.mq_msgsize = DAEMON_MSG_MAX;
    mqd = mq_open(pResponseMsgQueueName, O_RDONLY | O_CREAT, RESPONSE_QUEUE_MODE, &attributes);
    if (mqd < 0) {
        ZV_LOG(ZV_LOG_ERROR, "mq_open() failed for '%s': %s\n", pResponseMsgQueueName, strerror(errno));
        return false;
    }
    return true;
}

// The name of the response queue, as a text of its own: the caller's, or the process's. Null when out of memory.
char *response_queue_name(const char *queue_name)
{
    if (queue_name != nullptr) {
        return strdup(queue_name);
    }
    auto *name = static_cast<char *>(malloc(QUEUE_NAME_MAX + 1));
    if (name != nullptr) {
        snprintf(name, QUEUE_NAME_MAX, "%s%d", zv::RESPONSE_QUEUE_PREFIX, getpid());
    }
    return name;
}

// Of the whole message on the wire, with the elements that `param` makes it have.
size_t command_size(const uint8_t *param, uint16_t param_length)
{
    constexpr size_t HEADER_SIZE = 4; // of the message, and of each element
    return HEADER_SIZE + HEADER_SIZE + NUMBER_SIZE + (param != nullptr ? HEADER_SIZE + param_length : 0) +
           elSRC.getSize() + HEADER_SIZE + sizeof caller_id + elEE.getSize();
}

// Puts the queue's name, with its terminator, into the commands. False when out of memory.
bool set_source_name()
{
    messageQNameLen = static_cast<int32_t>(strlen(pResponseMsgQueueName));
    try {
        elSRC.setData(reinterpret_cast<const uint8_t *>(pResponseMsgQueueName),
                      static_cast<uint16_t>(messageQNameLen + 1));
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

// Writes a command into the receive buffer, which its answer will overwrite, and posts it.
int32_t post_command(uint32_t command, const uint8_t *param, uint16_t param_length, const zv::SourceLocation &where)
try {
    uint8_t number[NUMBER_SIZE];
    zv::put_le32(number, command);
    const uint8_t source = zvcontrol_get_caller_id();
    elCMD.setData(number, sizeof number);
    elCMDARG.setData(param, param_length);
    elASOURCE.setData(&source, sizeof source);

    CommandMsg msg;
    msg.addElement(&elCMD);
    if (param != nullptr) {
        msg.addElement(&elCMDARG);
    }
    msg.addElement(&elSRC);
    msg.addElement(&elASOURCE);
    msg.addElement(&elEE);

    MemStream stream(pReceiveBuffer, DAEMON_MSG_MAX);
    stream << msg;
    msg.dump("Command to Daemon");
    if (mq_send(mqdDaemon, reinterpret_cast<const char *>(stream.getBuffer()), stream.getLength(), 0) < 0) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "mq_send() failed for '%s': %s", DAEMON_QUEUE, strerror(errno));
        return ZV_ERR;
    }
    return ZV_OK;
} catch (const std::bad_alloc &) {
    ZV_LOG_AT(where, ZV_LOG_ERROR, "Out of memory");
    return ZV_ERR_OUTOFMEM;
}

// The next message, as the answer to a command that was posted.
int32_t wait_answer(uint32_t command, const char *name, const uint8_t *&answer, uint16_t &length,
                    const zv::SourceLocation &where)
{
    uint8_t *buffer = nullptr;
    const int32_t result = zvcontrol_wait_response(&buffer, &length);
    if (result != ZV_OK) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "zvcontrol_wait_response failed! command: %s(%d) ret: %d", name,
                  static_cast<int>(command), result);
        return result;
    }
    ZV_LOG_AT(where, ZV_LOG_INFO, "zvcontrol_wait_response ret:%d, len:%d", result, length);
    answer = buffer;
    return ZV_OK;
}

} // namespace

int32_t zvcontrol_interface_open()
{
    return zvcontrol_interface_open_async(nullptr);
}

int32_t zvcontrol_interface_open_async(const char *queue_name)
{
    if (pResponseMsgQueueName != nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "Interface must be closed before reuse!\n");
        return ZV_ERR;
    }
    if (queue_name != nullptr && strlen(queue_name) > QUEUE_NAME_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "queue name too long: %d!  Max is %d.", static_cast<int>(strlen(queue_name)),
               static_cast<int>(QUEUE_NAME_MAX));
        return ZV_ERR;
    }
    if (!open_daemon_queue()) {
        zvcontrol_interface_close();
        ZV_LOG(ZV_LOG_ERROR, "Interface open failed after multiple attempts");
        return ZV_ERR;
    }
    pResponseMsgQueueName = response_queue_name(queue_name);
    pReceiveBuffer = static_cast<uint8_t *>(malloc(DAEMON_MSG_MAX));
    if (pResponseMsgQueueName == nullptr || pReceiveBuffer == nullptr || !set_source_name()) {
        ZV_LOG(ZV_LOG_ERROR, "Out of memory");
        zvcontrol_interface_close();
        return ZV_ERR_OUTOFMEM;
    }
    blockingMode = queue_name == nullptr;
    if (blockingMode && !create_response_queue()) {
        zvcontrol_interface_close();
        return ZV_ERR;
    }
    return ZV_OK;
}

int32_t zvcontrol_interface_close()
{
    if (mqd >= 0) {
        mq_close(mqd);
        mq_unlink(pResponseMsgQueueName);
        mqd = -1;
    }
    if (mqdDaemon >= 0) {
        mq_close(mqdDaemon);
        mqdDaemon = -1;
    }
    free(pResponseMsgQueueName);
    pResponseMsgQueueName = nullptr;
    free(pReceiveBuffer);
    pReceiveBuffer = nullptr;
    return ZV_OK;
}

int32_t is_zvcontrol_interface_open()
{
    return pResponseMsgQueueName != nullptr ? 1 : 0;
}

void zvcontrol_set_caller_id(uint8_t id)
{
    caller_id = id;
}

uint8_t zvcontrol_get_caller_id()
{
    return caller_id;
}

bool zvcontrol_is_response_queue_sychronized()
{
    return responseQueueSychronized;
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
    if (zv::le32(param) != LEADING_SETTING) {
        return ZV_OK;
    }
    uint8_t following[SETTING_PARAM_SIZE];
    zv::put_le32(following, FOLLOWING_SETTING);
    zv::put_le32(following + NUMBER_SIZE, zv::le32(param + NUMBER_SIZE) != LEADING_VALUE_OFF ? 1 : 0);
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
    uint8_t *kept = settingsStatusCache + snapshot->offset;
    // A payload was received, and so its length stored, only where the library waited for it.
    if (result == ZV_OK && blockingMode && response_size == snapshot->size && *length == snapshot->size) {
        memcpy(kept, response, snapshot->size);
    } else if (result == ZV_ERR_NO_RESPONSE && response_size >= snapshot->size) {
        memcpy(response, kept, snapshot->size);
        if (snapshot->offset == ALL_STATUS_OFFSET) {
            response[STATUS_SYSTEM_SYSTEM_BUSY] = 1;
        }
        *length = snapshot->size;
        return ZV_OK;
    }
    return result;
}

int32_t zvcontrol_send_command_param_response_ex_internal(zvcontrol_command_t command, const uint8_t *param,
                                                          uint16_t param_length, uint8_t *response,
                                                          uint16_t response_size, uint16_t *response_length)
{
    const auto where = zv::SourceLocation::current();
    if (pReceiveBuffer == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "pReceiveBuffer NULL!");
        return ZV_ERR;
    }
    if (param_length > PARAM_MAX || command_size(param, param_length) > DAEMON_MSG_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "param_length too long: %d!  Max is %d.", param_length, DAEMON_MSG_MAX);
        return ZV_ERR;
    }
    zvcontrol_flush_response_queue();
    if (!responseQueueSychronized) {
        ZV_LOG(ZV_LOG_ERROR, "Desynchronization detected when sending zvcontrol command, attempting resync");
        if (zvcontrol_send_resync() != ZV_OK) {
            ZV_LOG(ZV_LOG_ERROR, "Resync failed, cannot send command");
            return ZV_ERR_NO_RESPONSE;
        }
        zvcontrol_flush_response_queue(); // an echo that came twice is no answer to what follows
    }
    const auto number = static_cast<uint32_t>(command);
    if (const int32_t result = post_command(number, param, param_length, where); result != ZV_OK) {
        return result;
    }
    if (!blockingMode) {
        return ZV_OK;
    }
    const uint8_t *answer = nullptr;
    uint16_t length = 0;
    if (const int32_t result = wait_answer(number, zv::command_name(number), answer, length, where); result != ZV_OK) {
        return result;
    }
    int32_t ret = ZV_ERR;
    if (zvcontrol_parse_ret_response(answer, length, &ret, response, response_size, response_length) != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "Failed to parse response");
        return ZV_ERR;
    }
    return ret;
}

int32_t zvcontrol_send_resync()
{
    const auto where = zv::SourceLocation::current();
    const uint32_t sync_key = ++lastSyncKey;
    uint8_t key[NUMBER_SIZE];
    zv::put_le32(key, sync_key);
    if (pReceiveBuffer == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "pReceiveBuffer NULL!");
        return ZV_ERR_NO_RESPONSE;
    }
    if (post_command(ZVCONTROL_RESYNC_MESSAGE_QUEUE, key, sizeof key, where) != ZV_OK) {
        return ZV_ERR_NO_RESPONSE;
    }
    uint8_t echo[DAEMON_MSG_MAX] = {}; // the whole payload: one that only begins with the key is no echo
    uint16_t echo_length = 0;
    if (blockingMode) {
        const uint8_t *answer = nullptr;
        uint16_t length = 0;
        int32_t ret = ZV_ERR;
        if (wait_answer(ZVCONTROL_RESYNC_MESSAGE_QUEUE, "ZVCONTROL_RESYNC_MESSAGE_QUEUE", answer, length, where) !=
            ZV_OK) {
            return ZV_ERR_NO_RESPONSE;
        }
        if (zvcontrol_parse_ret_response(answer, length, &ret, echo, sizeof echo, &echo_length) != ZV_OK) {
            ZV_LOG(ZV_LOG_ERROR, "Failed to parse response");
            return ZV_ERR_NO_RESPONSE;
        }
        if (ret != ZV_OK) {
            ZV_LOG(ZV_LOG_ERROR, "Error prasing response: %d", ret);
            return ZV_ERR_NO_RESPONSE;
        }
    }
    const uint32_t echoed_key = zv::le32(echo);
    if (echo_length >= sizeof key && echoed_key != sync_key) {
        ZV_LOG(ZV_LOG_ERROR, "Response to (ZVCONTROL_RESYNC_MESSAGE_QUEUE) has wrong response key %u, expected key %u",
               echoed_key, sync_key);
        return ZV_ERR_NO_RESPONSE;
    }
    if (echo_length != sizeof key) {
        ZV_LOG(ZV_LOG_ERROR, "Response to (ZVCONTROL_RESYNC_MESSAGE_QUEUE) has wrong size, %d", echo_length);
        return ZV_ERR_NO_RESPONSE;
    }
    ZV_LOG(ZV_LOG_ERROR, "Expected sync key %u returned, resychronization achieved", echoed_key);
    responseQueueSychronized = true;
    return ZV_OK;
}

int32_t zvcontrol_wait_response(uint8_t **buffer, uint16_t *length)
{
    const timespec limit = {RESPONSE_SECONDS, 0};
    const auto received = static_cast<int32_t>(
        zv_mq_timedreceive(mqd, reinterpret_cast<char *>(pReceiveBuffer), DAEMON_MSG_MAX, nullptr, &limit));
    if (received < 0) {
        const int error = errno;
        const char *name = pResponseMsgQueueName != nullptr ? pResponseMsgQueueName : "";
        responseQueueSychronized = false;
        if (error == ETIMEDOUT) {
            ZV_LOG(ZV_LOG_ERROR, "Timed out (%dsec) on receive on message queue %s, ret %d errno %d\n",
                   RESPONSE_SECONDS, name, received, error);
        } else {
            ZV_LOG(ZV_LOG_ERROR, "Error receiving response on message queue %s, ret %d errno %d\n", name, received,
                   error);
        }
        *length = 0;
        return ZV_ERR_NO_RESPONSE;
    }
    *buffer = pReceiveBuffer;
    *length = static_cast<uint16_t>(received);
    return ZV_OK;
}

void zvcontrol_flush_response_queue()
{
    char trash[DAEMON_MSG_MAX];
    zv::drain_queue(mqd, trash, sizeof trash, "There are %d outstanding messages in the zvcontrol rx queue");
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
    return static_cast<int32_t>(zv::le32(code->getData()));
}

int32_t zvcontrol_parse_ret_response_type(const uint8_t *buffer, uint16_t length, int32_t *ret, uint8_t *payload,
                                          uint16_t payload_size, uint8_t type, uint16_t *payload_length)
{
    Msg msg(CAT_ZVCTRL_RSP);
    *ret = parse_return_code(buffer, length, msg);
    if (payload == nullptr || payload_size == 0 || *ret == ZV_ERR_NAK_OFF) {
        return ZV_OK;
    }
    const MsgElement *element = msg.findElement(type);
    if (element == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "WARNING: No typeRSPARG in response from daemon, we expected one! return code was:%d",
               *ret);
        return ZV_ERR;
    }
    const uint16_t copied = std::min(element->getDataLength(), payload_size);
    if (copied != 0) {
        memcpy(payload, element->getData(), copied);
    }
    if (payload_length != nullptr) {
        *payload_length = copied;
    }
    return ZV_OK;
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
