#include "zvc_setup.h"

#include "remote_call.h"

using namespace zv;

namespace {

// Reads of the user interface log no success, and name themselves in a failure.
constexpr ReadTexts ORIENTATION_TEXTS{nullptr, "zvc_setup_get_orientation:  zvc_send_remote_api error %d",
                                      "zvc_setup_get_orientation: rsp_size exp/act, %d,%d"};
constexpr ReadTexts UX_MODE_TEXTS{nullptr, "zvc_setup_get_camera_ux_mode:  zvc_send_remote_api error %d",
                                  "zvc_setup_get_camera_ux_mode: rsp_size exp/act, %d,%d"};

} // namespace

int32_t zvc_setup_get_video_format(zvc_msg_q_context_t *context, uint32_t *format)
{
    return remote_get(context, REMOTE_SETUP_VIDEO_FORMAT_GET, format, "video_format %d\n", READ_TEXTS_LF);
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
