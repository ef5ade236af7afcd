#include "zvc_commands_zvx.h"

#include "bytes.h"
#include "camera_link.h"

#include <cstdlib>
#include <cstring>

using namespace zv;

ZVXCommand zvxCommands;
ZVCCommandsInterface *gFunctionMap = &zvxCommands;

namespace {

constexpr char REMOTE_API_COMMAND[] = "YY";

// The answer of a remote API call.
constexpr int RESPONSE_ACK = 0;
constexpr int RESPONSE_ERROR = 4;
constexpr int RESPONSE_SIZE = 5; // of the payload, as the firmware announces it
constexpr int RESPONSE_PAYLOAD = 7;

// What starts and stops a capture in each flat mode; mode -1 ends the table.
struct shutter_descriptor_t {
    int32_t mode;
    int32_t flat_mode;
    int32_t gid;
    int32_t start;
    int32_t stop;
};

constexpr shutter_descriptor_t shutter_descriptors[] = {
    {0, 12, REMOTE_GROUP_VIDEO, 27, 28},
    {0, 13, REMOTE_GROUP_VIDEO, 27, 28},
    {0, 14, REMOTE_GROUP_VIDEO, 27, 28},
    {0, 15, REMOTE_GROUP_VIDEO, 27, 28},
    {0, 24, REMOTE_GROUP_VIDEO, 27, 28},
    {1, 16, REMOTE_GROUP_PHOTO, 23, 24},
    {1, 17, REMOTE_GROUP_PHOTO, 23, 24},
    {1, 18, REMOTE_GROUP_PHOTO, 23, 24},
    {1, 19, REMOTE_GROUP_MULTISHOT, 27, 28},
    {1, 20, REMOTE_GROUP_MULTISHOT, 27, 28},
    {1, 21, REMOTE_GROUP_MULTISHOT, 27, 28},
    {0, 25, REMOTE_GROUP_APP, 9, 10},
    {0, 26, REMOTE_GROUP_APP, 9, 10},
    {3, 23, REMOTE_GROUP_APP, 9, 10},
    {0, 27, REMOTE_GROUP_APP, 9, 10},
    {0, 29, REMOTE_GROUP_APP, 9, 10},
    {0, 31, REMOTE_GROUP_APP, 9, 10},
    {0, 30, REMOTE_GROUP_APP, 9, 10},
    {-1, -1, -1, -1, -1},
};

constexpr int32_t SILENT_ACTION = 15; // its failures are not logged by send_remote_api_payload

// A request on the heap: the header, and the payload behind it.
int32_t send_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, const uint8_t *payload, int32_t size,
                     uint8_t **rsp, uint16_t *rspsize, bool log_failure)
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
    const int32_t result = zvc_send_remote_api(context, request, static_cast<int32_t>(request_size), rsp, rspsize);
    if (result != ZV_OK && log_failure) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_send_remote_api error, %d", result);
    }
    free(request);
    return result;
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
    const shutter_descriptor_t *row = shutter_descriptors;
    while (row->mode != -1 && row->flat_mode != flat_mode) {
        ++row;
    }
    if (row->mode == -1) {
        ZV_LOG(ZV_LOG_ERROR, "shutter descriptor not found");
        return ZV_ERR_INVALID_PARAM;
    }
    const int32_t aid = on != 0 ? row->start : row->stop;
    ZV_LOG(ZV_LOG_DEBUG, "command gid/aid, %d,%d", row->gid, aid);
    if (const int32_t result = zvc_send_simple_remote_api(context, row->gid, aid); result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "command g/a, %d,%d, error, %d", row->gid, aid, result);
        return ZV_ERR_INVALID_PARAM;
    }
    return ZV_OK;
}

int32_t ZVXCommand::send_remote_api(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size, uint8_t **rsp,
                                    uint16_t *rspsize)
{
    uint8_t *answer = nullptr;
    uint16_t answer_size = 0;
    const int32_t result = zvc_send_zvmsg(context, CATEGORY_CAMERA, CAMERA_QUEUE, RELAY_QUEUE, REMOTE_API_COMMAND,
                                          request, size, &answer, &answer_size);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_send_zvmsg error, %d", result);
        return result;
    }
    const bool wanted = rsp != nullptr && rspsize != nullptr;
    if (answer_size == 1 && answer[0] == ZVN_NACK_OFF) {
        ZV_LOG(ZV_LOG_WARN, "Got a ZVN_NACK_OFF");
        if (wanted) {
            *rsp = answer;
            *rspsize = answer_size;
        }
        return ZV_OK;
    }
    if (answer_size < RESPONSE_PAYLOAD) {
        ZV_LOG(ZV_LOG_ERROR, "invalid zvmsg_rsp_size, %d", answer_size);
        if (answer_size != 0) {
            ZV_LOG(ZV_LOG_ERROR, "ACK byte:%d (0=GOOD, 1=NAK)", answer[RESPONSE_ACK]);
        }
        return ZV_ERR_INVALID_PARAM;
    }
    if (answer[RESPONSE_ACK] != 0) {
        ZV_LOG(ZV_LOG_ERROR, "no ack, got %d", answer[RESPONSE_ACK]);
        context->rtos_error_code = answer[RESPONSE_ACK];
        return ZV_ERR_NAK;
    }
    context->rtos_error_code = answer[RESPONSE_ERROR];
    if (const auto error = static_cast<int8_t>(answer[RESPONSE_ERROR]); error != 0) {
        ZV_LOG(ZV_LOG_ERROR, "rtos_error_code, %d", error);
        return ZV_ERR;
    }
    if (!wanted) {
        return ZV_OK;
    }
    const auto available = static_cast<uint16_t>(answer_size - RESPONSE_PAYLOAD);
    const uint16_t announced = be16(answer + RESPONSE_SIZE);
    ZV_LOG(ZV_LOG_INFO, "payload size rsp/remote, %u, %u", available, announced);
    if (available < announced) {
        ZV_LOG(ZV_LOG_WARN, "truncating remote_payload_size, %d, %d", announced, available);
    }
    *rsp = answer + RESPONSE_PAYLOAD;
    *rspsize = available < announced ? available : announced;
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
    uint8_t request[REMOTE_API_HEADER_SIZE];
    zvc_init_remote_api_input_header(request, static_cast<uint8_t>(gid), static_cast<uint8_t>(aid), 0);
    return zvc_send_remote_api(context, request, sizeof request, rsp, rspsize);
}

int32_t ZVXCommand::send_remote_api_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                            const uint8_t *payload, int32_t size)
{
    return send_payload(context, gid, aid, payload, size, nullptr, nullptr, aid != SILENT_ACTION);
}

int32_t ZVXCommand::send_remote_api_payload_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                                     const uint8_t *payload, int32_t size, uint8_t **rsp,
                                                     uint16_t *rspsize)
{
    return send_payload(context, gid, aid, payload, size, rsp, rspsize, true);
}

int32_t zvc_shutter(zvc_msg_q_context_t *context, uint8_t on)
{
    return gFunctionMap->shutter(context, on);
}
