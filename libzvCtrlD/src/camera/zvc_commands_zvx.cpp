#include "zvc_commands_zvx.h"

#include "bytes.h"
#include "flat_modes.h"
#include "queue_names.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

using namespace zv;

ZVXCommand zvxCommands;
ZVCCommandsInterface *gFunctionMap = &zvxCommands;

namespace {

constexpr int32_t SILENT_ACTION = 15; // its failures are not logged by send_remote_api_payload

// The payload of an answer, inside the context's buffer.
struct Payload {
    uint8_t *bytes = nullptr;
    uint16_t size = 0;
};

// A caller that gives both places takes the payload.
struct PayloadOutput {
    uint8_t **bytes;
    uint16_t *size;

    bool wanted() const { return bytes != nullptr && size != nullptr; }
    void hand_out(const Payload &payload) const
    {
        *bytes = payload.bytes;
        *size = payload.size;
    }
};

// A request from the outset, through the adapter that is in use.
int32_t call(zvc_msg_q_context_t *context, const uint8_t *request, size_t size, const PayloadOutput &output)
{
    zvc_reset_context(context);
    return gFunctionMap->send_remote_api(context, request, static_cast<int32_t>(size), output.bytes, output.size);
}

// The same without a payload.
int32_t call_bare(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, const PayloadOutput &output)
{
    uint8_t request[REMOTE_API_HEADER_SIZE];
    zvc_init_remote_api_input_header(request, static_cast<uint8_t>(gid), static_cast<uint8_t>(aid), 0);
    return call(context, request, sizeof request, output);
}

// The same with a payload of any size: the request is on the heap.
int32_t call_with_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, const uint8_t *payload, int32_t size,
                          const PayloadOutput &output, bool log_failure)
{
    if (size < 1) {
        ZV_LOG(ZV_LOG_ERROR, "invalid payload_buf_size, %d", size);
        return ZV_ERR_INVALID_PARAM;
    }
    const size_t request_size = static_cast<size_t>(size) + REMOTE_API_HEADER_SIZE;
    auto *request = static_cast<uint8_t *>(malloc(request_size));
    if (request == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "malloc failed");
        return ZV_ERR_OUTOFMEM;
    }
    ZV_LOG(ZV_LOG_INFO, "size payload/arg, %d,%d", size, static_cast<int>(request_size));
    memcpy(request + REMOTE_API_HEADER_SIZE, payload, static_cast<size_t>(size));
    zvc_init_remote_api_input_header(request, static_cast<uint8_t>(gid), static_cast<uint8_t>(aid),
                                     static_cast<uint16_t>(size));
    const int32_t result = call(context, request, request_size, output);
    if (result != ZV_OK && log_failure) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_send_remote_api error, %d", result);
    }
    free(request);
    return result;
}

bool is_switched_off(const Payload &answer)
{
    return answer.size == 1 && answer.bytes[0] == ZVN_NACK_OFF;
}

// What the camera says of a request. Its own code goes into the context.
int32_t judge(zvc_msg_q_context_t *context, const Payload &answer)
{
    if (answer.size < REMOTE_ANSWER_PAYLOAD) {
        ZV_LOG(ZV_LOG_ERROR, "invalid zvmsg_rsp_size, %d", answer.size);
        if (answer.size != 0) {
            ZV_LOG(ZV_LOG_ERROR, "ACK byte:%d (0=GOOD, 1=NAK)", answer.bytes[REMOTE_ANSWER_ACK]);
        }
        return ZV_ERR_INVALID_PARAM;
    }
    if (const uint8_t acknowledge = answer.bytes[REMOTE_ANSWER_ACK]; acknowledge != 0) {
        ZV_LOG(ZV_LOG_ERROR, "no ack, got %d", acknowledge);
        context->rtos_error_code = acknowledge;
        return ZV_ERR_NAK;
    }
    context->rtos_error_code = answer.bytes[REMOTE_ANSWER_ERROR];
    if (const auto error = static_cast<int8_t>(context->rtos_error_code); error != 0) {
        ZV_LOG(ZV_LOG_ERROR, "rtos_error_code, %d", error);
        return ZV_ERR;
    }
    return ZV_OK;
}

// As much of the payload that a good answer announces as is there.
Payload payload_of(const Payload &answer)
{
    const auto available = static_cast<uint16_t>(answer.size - REMOTE_ANSWER_PAYLOAD);
    const uint16_t announced = be16(answer.bytes + REMOTE_ANSWER_SIZE);
    ZV_LOG(ZV_LOG_INFO, "payload size rsp/remote, %u, %u", available, announced);
    if (available < announced) {
        ZV_LOG(ZV_LOG_WARN, "truncating remote_payload_size, %d, %d", announced, available);
    }
    return {answer.bytes + REMOTE_ANSWER_PAYLOAD, std::min(available, announced)};
}

} // namespace

int32_t ZVXCommand::shutter(zvc_msg_q_context_t *context, uint8_t on)
{
    int32_t mode = -1;
    int32_t flat_mode = -1;
    if (const int32_t result = zvc_app_get_mode_flat_mode(context, &mode, &flat_mode); result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_app_get_mode_flat_mode error, %d", result);
        return result;
    }
    ZV_LOG(ZV_LOG_DEBUG, "m/fm, %d,%d", mode, flat_mode);
    const FlatModeRow *row = find_flat_mode(flat_mode);
    if (row == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "shutter descriptor not found");
        return ZV_ERR_INVALID_PARAM;
    }
    const RemoteCommand command = on != 0 ? row->shutter.start : row->shutter.stop;
    const int32_t gid = group_of(command);
    const int32_t aid = action_of(command);
    ZV_LOG(ZV_LOG_DEBUG, "command gid/aid, %d,%d", gid, aid);
    if (const int32_t result = call_bare(context, gid, aid, {}); result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "command g/a, %d,%d, error, %d", gid, aid, result);
        return ZV_ERR_INVALID_PARAM;
    }
    return ZV_OK;
}

int32_t ZVXCommand::send_remote_api(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size, uint8_t **rsp,
                                    uint16_t *rspsize)
{
    const PayloadOutput output = {rsp, rspsize};
    Payload answer;
    if (const int32_t result = zvc_send_zvmsg(context, CATEGORY_CAMERA, CAMERA_QUEUE, RELAY_QUEUE, REMOTE_API_COMMAND,
                                              request, size, &answer.bytes, &answer.size);
        result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_send_zvmsg error, %d", result);
        return result;
    }
    if (is_switched_off(answer)) {
        ZV_LOG(ZV_LOG_WARN, "Got a ZVN_NACK_OFF");
    } else if (const int32_t result = judge(context, answer); result != ZV_OK) {
        return result;
    }
    if (output.wanted()) {
        output.hand_out(is_switched_off(answer) ? answer : payload_of(answer));
    }
    return ZV_OK;
}

int32_t ZVXCommand::send_remote_api_async(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size)
{
    const int32_t result =
        zvc_send_zvmsg_async(context, CATEGORY_CAMERA, CAMERA_QUEUE, RELAY_QUEUE, REMOTE_API_COMMAND, request, size);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_send_zvmsg error, %d", result);
    }
    return result;
}

int32_t ZVXCommand::send_remote_api_for_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, uint8_t **rsp,
                                                 uint16_t *rspsize)
{
    ZV_LOG(ZV_LOG_INFO, "gid/aid, %d,%d", gid, aid);
    return call_bare(context, gid, aid, {rsp, rspsize});
}

int32_t ZVXCommand::send_remote_api_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                            const uint8_t *payload, int32_t size)
{
    return call_with_payload(context, gid, aid, payload, size, {}, aid != SILENT_ACTION);
}

int32_t ZVXCommand::send_remote_api_payload_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                                     const uint8_t *payload, int32_t size, uint8_t **rsp,
                                                     uint16_t *rspsize)
{
    return call_with_payload(context, gid, aid, payload, size, {rsp, rspsize}, true);
}

int32_t zvc_shutter(zvc_msg_q_context_t *context, uint8_t on)
{
    return gFunctionMap->shutter(context, on);
}
