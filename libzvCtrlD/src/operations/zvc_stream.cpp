// The live stream's parameters; declared in zvc_video.h.
#include "zvc_video.h"

#include "remote_call.h"

using namespace zv;

int32_t zvc_stream_set_gop_size(zvc_msg_q_context_t *context, int32_t value)
{
    return remote_set(context, REMOTE_STREAM_GOP_SIZE_SET, value);
}

int32_t zvc_stream_set_idr_interval(zvc_msg_q_context_t *context, int32_t value)
{
    return remote_set(context, REMOTE_STREAM_IDR_INTERVAL_SET, value);
}

int32_t zvc_stream_set_bit_rate(zvc_msg_q_context_t *context, int32_t value)
{
    return remote_set(context, REMOTE_STREAM_BIT_RATE_SET, value);
}
