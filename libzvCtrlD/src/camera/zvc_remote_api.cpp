// The remote API as callers use it, through the protocol adapter; declared in zvc_commands.h.
#include "zvc_commands_zvx.h"

namespace {

int32_t g_camera_id = 0;

} // namespace

int32_t zvc_send_remote_api(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size, uint8_t **rsp,
                            uint16_t *rspsize)
{
    zvc_reset_context(context);
    return gFunctionMap->send_remote_api(context, request, size, rsp, rspsize);
}

int32_t zvc_send_remote_api_async(zvc_msg_q_context_t *context, const uint8_t *request, int32_t size)
{
    zvc_reset_context(context);
    return gFunctionMap->send_remote_api_async(context, request, size);
}

int32_t zvc_send_remote_api_for_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, uint8_t **rsp,
                                         uint16_t *rspsize)
{
    zvc_reset_context(context);
    return gFunctionMap->send_remote_api_for_response(context, gid, aid, rsp, rspsize);
}

int32_t zvc_send_remote_api_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, const uint8_t *payload,
                                    int32_t size)
{
    zvc_reset_context(context);
    return gFunctionMap->send_remote_api_payload(context, gid, aid, payload, size);
}

int32_t zvc_send_remote_api_payload_response(zvc_msg_q_context_t *context, int32_t gid, int32_t aid,
                                             const uint8_t *payload, int32_t size, uint8_t **rsp, uint16_t *rspsize)
{
    zvc_reset_context(context);
    return gFunctionMap->send_remote_api_payload_response(context, gid, aid, payload, size, rsp, rspsize);
}

int32_t zvc_send_simple_remote_api(zvc_msg_q_context_t *context, int32_t gid, int32_t aid)
{
    uint8_t request[REMOTE_API_HEADER_SIZE] = {};
    zvc_init_remote_api_input_header(request, static_cast<uint8_t>(gid), static_cast<uint8_t>(aid), 0);
    return zvc_send_remote_api(context, request, sizeof request, nullptr, nullptr);
}

int32_t zvc_send_simple_remote_api_async(zvc_msg_q_context_t *context, int32_t gid, int32_t aid)
{
    uint8_t request[REMOTE_API_HEADER_SIZE] = {};
    zvc_init_remote_api_input_header(request, static_cast<uint8_t>(gid), static_cast<uint8_t>(aid), 0);
    return zvc_send_remote_api_async(context, request, sizeof request);
}

int32_t command_params_payload(zvc_msg_q_context_t *context, int32_t gid, int32_t aid, const uint8_t *payload,
                               int32_t size)
{
    const int32_t result = zvc_send_remote_api_payload(context, gid, aid, payload, size);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_send_remote_api_payload error, %d", result);
    }
    return result;
}

void zvc_select_protocol_adapter(int32_t id)
{
    g_camera_id = id;
}

int32_t zvc_get_protocol_adapter()
{
    return g_camera_id;
}
