// Mode, digital zoom and capture delay; declared in zvc_commands.h.
#include "remote_call.h"

using namespace zv;

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
