#include "zvc_setup.h"

#include "remote_call.h"

using namespace zv;

int32_t zvc_setup_get_video_format(zvc_msg_q_context_t *context, uint32_t *format)
{
    return remote_get(context, REMOTE_SETUP_VIDEO_FORMAT_GET, format, "video_format %d\n", READ_TEXTS_LF);
}
