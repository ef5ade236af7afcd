// The platform's assertion below stays in release builds.
#undef NDEBUG

#include "zvc_commands.h"

#include "bytes.h"
#include "io_buffer.h"
#include "message_finish.h"
#include "queue_drain.h"
#include "queues.h"
#include "remote_call.h"
#include "zvc_commands_zvx.h"

#include <cassert>
#include <cerrno>

using namespace zv;

namespace {

constexpr int RECEIVE_SECONDS = 10;
constexpr int32_t NO_TRACE = 0; // the trace row that never prints

constexpr uint8_t LENS_UNCHANGED = 0xFF;

// The reads of the lens and of the setup say nothing of a success, and some name themselves.
constexpr ReadTexts QUIET_TEXTS{nullptr, READ_TEXTS.failure, READ_TEXTS.size};
constexpr ReadTexts LENS_STATUS_TEXTS{nullptr, READ_TEXTS.failure,
                                      "zvc_system_get_lens_status rsp_size exp/act, %d,%d"};
constexpr ReadTexts POWER_PROFILE_TEXTS{nullptr, "zvc_system_get_power_profile:  zvc_send_remote_api error %d",
                                        "zvc_system_get_power_profile: rsp_size exp/act, %d,%d"};
constexpr ReadTexts ORIENTATION_TEXTS{nullptr, "zvc_setup_get_orientation:  zvc_send_remote_api error %d",
                                      "zvc_setup_get_orientation: rsp_size exp/act, %d,%d"};
constexpr ReadTexts UX_MODE_TEXTS{nullptr, "zvc_setup_get_camera_ux_mode:  zvc_send_remote_api error %d",
                                  "zvc_setup_get_camera_ux_mode: rsp_size exp/act, %d,%d"};

int32_t g_camera_id = 0;

// A message that is not valid when it is finished was built wrongly in this library.
void finish_message(zvc_msg_q_context_t *context, const char *dest, int32_t direction)
{
    zv::finish_message(&context->iobuf, context->mbox_name, dest, direction);
    assert(0 == (int)tlv_validate(context->iobuf.buf));
}

int32_t post(zvc_msg_q_context_t *context)
{
    const zvIoBuf_t &iobuf = context->iobuf;
    return mq_send(context->mq_tx, reinterpret_cast<const char *>(iobuf.buf), static_cast<size_t>(iobuf.len), 0);
}

int32_t check_context(const zvc_msg_q_context_t *context)
{
    if (context == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "null context");
        return ZV_ERR_INVALID_PARAM;
    }
    if (context->mbox_name == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "empty mbox_name, was zvc_init_context called?");
        return ZV_ERR_INVALID_PARAM;
    }
    return ZV_OK;
}

void build_message(zvc_msg_q_context_t *context, int32_t category, const char *cmd, const uint8_t *arg, int32_t arglen)
{
    zvIoBuf_t &iobuf = context->iobuf;
    zvmsg_build(&iobuf, cmd, arg, static_cast<uint32_t>(arglen), static_cast<uint32_t>(category));
    const uint8_t source = context->asource != 0 ? context->asource : 1;
    iobuf.len += sntlv_add_bin(iobuf.buf, capacity(iobuf), TLV_ASOURCE, 1, &source);
    context->asource = 0;
}

} // namespace

int32_t zvc_reset_context(zvc_msg_q_context_t *context)
{
    if (context == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "null context");
        return ZV_ERR_INVALID_PARAM;
    }
    context->iobuf.size = sizeof context->iobuf.buf;
    context->iobuf.len = 0;
    context->rtos_error_code = 0;
    return ZV_OK;
}

int32_t zvc_send_context(zvc_msg_q_context_t *context, const char *dest, [[maybe_unused]] const char *via,
                         int32_t direction)
{
    finish_message(context, dest, direction);
    return post(context);
}

int32_t zvc_send_timedreceive_context(zvc_msg_q_context_t *context, const char *dest, [[maybe_unused]] const char *via,
                                      int32_t direction)
{
    finish_message(context, dest, direction);
    char trash[ZVMSG_MAX];
    drain_queue(context->mq_rx, trash, sizeof trash, "There are %d outstanding messages in the rx queue");
    post(context); // a lost request shows as a time-out

    zvIoBuf_t &iobuf = context->iobuf;
    const timespec limit = {RECEIVE_SECONDS, 0};
    auto result = static_cast<int32_t>(
        zv_mq_timedreceive(context->mq_rx, reinterpret_cast<char *>(iobuf.buf), capacity(iobuf), nullptr, &limit));
    if (result < 0) {
        const int error = errno;
        if (error == ETIMEDOUT) {
            ZV_LOG(ZV_LOG_ERROR, "Timed out (%dsec) on receive on message queue, len=%d errno=%d", RECEIVE_SECONDS,
                   result, error);
        } else {
            ZV_LOG(ZV_LOG_ERROR, "Error receiving message (%d) from message queue, len=%d errno=%d", result, result,
                   error);
        }
        context->rx_failed = 1;
        result = ZV_ERR_NO_RESPONSE;
    }
    iobuf.len = result;
    return result;
}

int32_t zvc_send_zvmsg(zvc_msg_q_context_t *context, int32_t category, const char *dest, const char *via,
                       const char *cmd, const uint8_t *arg, int32_t arglen, uint8_t **rsp, uint16_t *rspsize)
{
    ZV_LOG(ZV_LOG_INFO, "c/a/as/r/rs, %p,%p,%d,%p,%p", static_cast<void *>(context), static_cast<const void *>(arg),
           arglen, static_cast<void *>(rsp), static_cast<void *>(rspsize));
    if (const int32_t result = check_context(context); result != ZV_OK) {
        return result;
    }
    if (rspsize != nullptr) {
        *rspsize = 0;
    }
    build_message(context, category, cmd, arg, arglen);
    ZV_LOG(ZV_LOG_INFO, "zvmsg_send_timedreceive to %s", dest);
    if (const int32_t result = zvc_send_timedreceive_context(context, dest, via, NO_TRACE); result < 0) {
        ZV_LOG(ZV_LOG_ERROR, "zvmsg_send timeout waiting for response from %s, ret %d", dest, result);
        return result;
    }
    if (rsp != nullptr && rspsize != nullptr) {
        uint8_t *payload = nullptr;
        uint16_t size = 0;
        zvIoBuf_t &iobuf = context->iobuf;
        if (sntlv_msg_len(iobuf.buf) == iobuf.len) {
            zvmsg_response(&iobuf, &payload, &size);
        }
        ZV_LOG(ZV_LOG_INFO, "zvmsg_rsp_size %d", size);
        *rsp = payload;
        *rspsize = size;
    }
    return ZV_OK;
}

int32_t zvc_send_zvmsg_async(zvc_msg_q_context_t *context, int32_t category, const char *dest, const char *via,
                             const char *cmd, const uint8_t *arg, int32_t arglen)
{
    ZV_LOG(ZV_LOG_INFO, "c/a/as/r/rs, %p,%p,%d", static_cast<void *>(context), static_cast<const void *>(arg), arglen);
    if (const int32_t result = check_context(context); result != ZV_OK) {
        return result;
    }
    build_message(context, category, cmd, arg, arglen);
    ZV_LOG(ZV_LOG_INFO, "zvc_send_context to %s", dest);
    zvc_send_context(context, dest, via, NO_TRACE);
    return ZV_OK;
}

int32_t zvc_send_dorsak_command(zvc_msg_q_context_t *context, const char *cmd, const uint8_t *arg, int32_t arglen,
                                uint8_t **rsp, uint16_t *rspsize)
{
    zvc_reset_context(context);
    return zvc_send_zvmsg(context, CATEGORY_DORSAK, RELAY_QUEUE, RELAY_QUEUE, cmd, arg, arglen, rsp, rspsize);
}

int32_t zvc_send_camera_command_via_zvNet(zvc_msg_q_context_t *context, const char *cmd, const uint8_t *arg,
                                          int32_t arglen, uint8_t **rsp, uint16_t *rspsize)
{
    ZV_LOG(ZV_LOG_INFO, "cmd, \"%s\"", cmd);
    zvc_reset_context(context);
    return zvc_send_zvmsg(context, CATEGORY_CAMERA, CAMERA_QUEUE, RELAY_QUEUE, cmd, arg, arglen, rsp, rspsize);
}

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

void zvc_init_remote_api_input_header(uint8_t *request, uint8_t gid, uint8_t aid, uint16_t payload_size)
{
    ZV_LOG(ZV_LOG_INFO, "gid/aid, %d,%d", gid, aid);
    request[0] = 0;
    request[1] = gid;
    request[2] = aid;
    put_be16(request + 3, payload_size);
}

void zvc_select_protocol_adapter(int32_t id)
{
    g_camera_id = id;
}

int32_t zvc_get_protocol_adapter()
{
    return g_camera_id;
}

int32_t zvc_app_set_mode(zvc_msg_q_context_t *context, int32_t mode)
{
    return remote_set(context, REMOTE_APP_MODE_SET, mode, {"m, %d"});
}

int32_t zvc_app_set_set_mode(zvc_msg_q_context_t *context, int32_t mode)
{
    return remote_set(context, REMOTE_APP_MODE_SET, mode, {"m, %d"});
}

int32_t zvc_app_set_mode_sub_mode(zvc_msg_q_context_t *context, int32_t mode, int32_t sub_mode)
{
    ZV_LOG(ZV_LOG_INFO, "m/sm, %d,%d", mode, sub_mode);
    return remote_send(context, REMOTE_APP_MODE_SUB_MODE_SET, {low_byte(mode), low_byte(sub_mode)});
}

int32_t zvc_app_get_mode_sub_mode(zvc_msg_q_context_t *context, int32_t *mode, int32_t *sub_mode)
{
    return remote_get_bytes(context, REMOTE_APP_MODE_SUB_MODE_GET, {mode, sub_mode}, "m/sm, %d,%d");
}

int32_t zvc_app_get_mode_flat_mode(zvc_msg_q_context_t *context, int32_t *mode, int32_t *flat_mode)
{
    const int32_t result = remote_get_bytes(context, REMOTE_APP_FLAT_MODE_GET, {flat_mode, mode}, nullptr);
    if (result == ZV_OK) {
        ZV_LOG(ZV_LOG_INFO, "m/fm, %d,%d", *mode, *flat_mode);
    }
    return result;
}

int32_t zvc_app_set_digital_zoom(zvc_msg_q_context_t *context, int32_t zoom)
{
    return remote_set(context, REMOTE_APP_DIGITAL_ZOOM_SET, zoom, {"z, %d"});
}

int32_t zvc_app_get_digital_zoom(zvc_msg_q_context_t *context, int32_t *zoom)
{
    return remote_get(context, REMOTE_APP_DIGITAL_ZOOM_GET, zoom, "z, %d");
}

int32_t zvc_app_set_capture_delay(zvc_msg_q_context_t *context, int32_t delay)
{
    return remote_set(context, REMOTE_APP_CAPTURE_DELAY_SET, delay);
}

int32_t zvc_app_get_capture_delay(zvc_msg_q_context_t *context, int32_t *delay)
{
    return remote_get(context, REMOTE_APP_CAPTURE_DELAY_GET, delay, "capture_delay, %d");
}

int32_t zvc_system_get_lens_mode(zvc_msg_q_context_t *context, int8_t *lens_mode)
{
    int8_t lens = 0;
    return remote_get_bytes(context, REMOTE_PRESET_LENS_GET, {lens_mode, &lens}, nullptr, QUIET_TEXTS);
}

int32_t zvc_system_get_lens(zvc_msg_q_context_t *context, int8_t *lens)
{
    int8_t lens_mode = 0;
    return remote_get_bytes(context, REMOTE_PRESET_LENS_GET, {&lens_mode, lens}, nullptr, QUIET_TEXTS);
}

int32_t zvc_system_get_lenses(zvc_msg_q_context_t *context, int8_t *lens_mode, int8_t *lens)
{
    return remote_get_bytes(context, REMOTE_PRESET_LENS_GET, {lens_mode, lens}, nullptr, QUIET_TEXTS);
}

int32_t zvc_system_set_lens_mode(zvc_msg_q_context_t *context, int32_t lens_mode)
{
    return remote_send(context, REMOTE_PRESET_LENS_SET, {low_byte(lens_mode), LENS_UNCHANGED});
}

int32_t zvc_system_set_lens(zvc_msg_q_context_t *context, int32_t lens)
{
    return remote_send(context, REMOTE_PRESET_LENS_SET, {LENS_UNCHANGED, low_byte(lens)});
}

int32_t zvc_system_get_lens_type(zvc_msg_q_context_t *context, int8_t *type)
{
    return remote_get(context, REMOTE_SYSTEM_LENS_TYPE_GET, type, nullptr, QUIET_TEXTS);
}

int32_t zvc_system_set_lens_type(zvc_msg_q_context_t *context, int32_t type)
{
    return remote_set(context, REMOTE_SYSTEM_LENS_TYPE_SET, type);
}

int32_t zvc_system_get_lens_status(zvc_msg_q_context_t *context, int8_t *status)
{
    return remote_get(context, REMOTE_SYSTEM_LENS_STATUS_GET, status, nullptr, LENS_STATUS_TEXTS);
}

int32_t zvc_system_set_lens_status(zvc_msg_q_context_t *context, int8_t status)
{
    return remote_set(context, REMOTE_SYSTEM_LENS_STATUS_SET, status, {"lens_status:%d"});
}

int32_t zvc_system_get_power_profile(zvc_msg_q_context_t *context, uint8_t *profile)
{
    return remote_get(context, REMOTE_SYSTEM_POWER_PROFILE_GET, profile, nullptr, POWER_PROFILE_TEXTS);
}

int32_t zvc_system_set_button(zvc_msg_q_context_t *context, uint8_t first, uint8_t second)
{
    return remote_send(context, REMOTE_SYSTEM_BUTTON_SET, {first, second});
}

int32_t zvc_system_set_rc_rotation(zvc_msg_q_context_t *context, uint8_t rotation)
{
    return remote_set(context, REMOTE_SETUP_RC_ROTATION_SET, rotation);
}

int32_t zvc_setup_set_orientation(zvc_msg_q_context_t *context, uint8_t orientation)
{
    return remote_set(context, REMOTE_SETUP_ORIENTATION_SET, orientation);
}

int32_t zvc_setup_get_orientation(zvc_msg_q_context_t *context, uint8_t *orientation)
{
    return remote_get(context, REMOTE_SETUP_ORIENTATION_GET, orientation, nullptr, ORIENTATION_TEXTS);
}

int32_t zvc_setup_get_camera_ux_mode(zvc_msg_q_context_t *context, uint8_t *ux_mode)
{
    return remote_get(context, REMOTE_SETUP_CAMERA_UX_MODE_GET, ux_mode, nullptr, UX_MODE_TEXTS);
}

int32_t zvc_audio_set_audio_option(zvc_msg_q_context_t *context, uint8_t option)
{
    return remote_set(context, REMOTE_AUDIO_AUDIO_OPTION_SET, option);
}

int32_t zvc_audio_set_mic_option(zvc_msg_q_context_t *context, uint8_t option)
{
    return remote_set(context, REMOTE_AUDIO_MIC_OPTION_SET, option);
}

int32_t zvc_preset_onscreen_shortcuts_reset(zvc_msg_q_context_t *context)
{
    return remote_action(context, REMOTE_PRESET_ONSCREEN_SHORTCUTS_RESET);
}

int32_t zvc_video_set_rushlapse_speed_ramp(zvc_msg_q_context_t *context, int32_t value)
{
    return remote_set(context, REMOTE_VIDEO_RUSHLAPSE_SPEED_RAMP_SET, value);
}

int32_t zvc_video_set_rushlapse_speed_ramp_active(zvc_msg_q_context_t *context, int32_t value)
{
    return remote_set(context, REMOTE_VIDEO_RUSHLAPSE_SPEED_RAMP_ACTIVE_SET, value);
}
