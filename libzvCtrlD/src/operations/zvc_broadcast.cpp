#include "zvc_broadcast.h"

#include "remote_call.h"

#include <cstring>

using namespace zv;

namespace {

// Messages of this file end in a line feed.

// The expected size that a short answer logs: most commands log 1 for an empty one and 4 otherwise.
constexpr uint16_t ONE_OR_FOUR = 1;
constexpr uint16_t ALWAYS_FOUR = 4;

constexpr char FORMAT_TEXT[] = "res = %d, fsp = %d, fov = %d\n";

template <class Record>
int32_t get_record(zvc_msg_q_context_t *context, RemoteCommand command, Record *record,
                   const SourceLocation &where = SourceLocation::current())
{
    if (record == nullptr) {
        return refuse_null_output(where);
    }
    Payload answer;
    const int32_t result = remote_read(context, command, sizeof record->bytes, READ_TEXTS_LF, answer, where);
    if (result == ZV_OK) {
        memcpy(record->bytes, answer.bytes, sizeof record->bytes);
    }
    return result;
}

} // namespace

int32_t zvc_broadcast_set_default_sub_mode(zvc_msg_q_context_t *context, int32_t sub_mode)
{
    return remote_set(context, REMOTE_BROADCAST_DEFAULT_SUB_MODE_SET, sub_mode);
}

int32_t zvc_broadcast_get_default_sub_mode(zvc_msg_q_context_t *context, uint32_t *sub_mode)
{
    return remote_get_be32(context, REMOTE_BROADCAST_DEFAULT_SUB_MODE_GET, sub_mode, "default_sub_mode%d\n",
                           ONE_OR_FOUR, READ_TEXTS_LF);
}

int32_t zvc_broadcast_set_res_fps_fov(zvc_msg_q_context_t *context, int32_t res, int32_t fps, int32_t fov)
{
    return remote_send(context, REMOTE_BROADCAST_RES_FPS_FOV_SET, {low_byte(res), low_byte(fps), low_byte(fov)});
}

int32_t zvc_broadcast_get_res_fps_fov(zvc_msg_q_context_t *context, int32_t *res, int32_t *fps, int32_t *fov)
{
    return remote_get_bytes(context, REMOTE_BROADCAST_RES_FPS_FOV_GET, {res, fps, fov}, FORMAT_TEXT, READ_TEXTS_LF);
}

int32_t zvc_broadcast_set_record_res_fps_fov(zvc_msg_q_context_t *context, int32_t res, int32_t fps, int32_t fov)
{
    return remote_send(context, REMOTE_BROADCAST_RECORD_RES_FPS_FOV_SET, {low_byte(res), low_byte(fps), low_byte(fov)});
}

int32_t zvc_broadcast_get_record_res_fps_fov(zvc_msg_q_context_t *context, int32_t *res, int32_t *fps, int32_t *fov)
{
    return remote_get_bytes(context, REMOTE_BROADCAST_RECORD_RES_FPS_FOV_GET, {res, fps, fov}, FORMAT_TEXT,
                            READ_TEXTS_LF);
}

int32_t zvc_broadcast_set_start(zvc_msg_q_context_t *context, int32_t value)
{
    return remote_set(context, REMOTE_BROADCAST_START, value);
}

int32_t zvc_broadcast_set_stop(zvc_msg_q_context_t *context)
{
    return remote_action(context, REMOTE_BROADCAST_STOP);
}

int32_t zvc_broadcast_set_enable(zvc_msg_q_context_t *context, uint32_t enable)
{
    return remote_set(context, REMOTE_BROADCAST_ENABLE_SET, static_cast<int32_t>(enable));
}

int32_t zvc_broadcast_get_enable(zvc_msg_q_context_t *context, uint32_t *enable)
{
    return remote_get_be32(context, REMOTE_BROADCAST_ENABLE_GET, enable, "enable %d\n", ONE_OR_FOUR, READ_TEXTS_LF);
}

int32_t zvc_broadcast_set_gop_size(zvc_msg_q_context_t *context, uint32_t size)
{
    return remote_set_be32(context, REMOTE_BROADCAST_GOP_SIZE_SET, size);
}

int32_t zvc_broadcast_get_gop_size(zvc_msg_q_context_t *context, uint32_t *size)
{
    return remote_get(context, REMOTE_BROADCAST_GOP_SIZE_GET, size, "gop_size %d\n", READ_TEXTS_LF);
}

int32_t zvc_broadcast_set_idr_interval(zvc_msg_q_context_t *context, uint32_t interval)
{
    return remote_set_be32(context, REMOTE_BROADCAST_IDR_INTERVAL_SET, interval);
}

int32_t zvc_broadcast_get_idr_interval(zvc_msg_q_context_t *context, uint32_t *interval)
{
    return remote_get(context, REMOTE_BROADCAST_IDR_INTERVAL_GET, interval, "idr_interval %d\n", READ_TEXTS_LF);
}

int32_t zvc_broadcast_set_bit_rate(zvc_msg_q_context_t *context, uint32_t rate)
{
    return remote_set_be32(context, REMOTE_BROADCAST_BIT_RATE_SET, rate);
}

int32_t zvc_broadcast_get_bit_rate(zvc_msg_q_context_t *context, uint32_t *rate)
{
    return remote_get_be32(context, REMOTE_BROADCAST_BIT_RATE_GET, rate, "bit_rate %d\n", ALWAYS_FOUR, READ_TEXTS_LF);
}

int32_t zvc_broadcast_set_window_size(zvc_msg_q_context_t *context, zvc_broadcast_window_size_t size)
{
    if (size < 0 || size > ZVC_BROADCAST_WINDOW_SIZE_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "invalid window_size, %d\n", size);
        return ZV_ERR_INVALID_PARAM;
    }
    return remote_set(context, REMOTE_BROADCAST_WINDOW_SIZE_SET, size);
}

int32_t zvc_broadcast_get_window_size(zvc_msg_q_context_t *context, zvc_broadcast_window_size_t *size)
{
    return remote_get(context, REMOTE_BROADCAST_WINDOW_SIZE_GET, size, "window_size %d\n", READ_TEXTS_LF);
}

int32_t zvc_broadcast_get_progress_counter(zvc_msg_q_context_t *context, uint32_t *counter)
{
    return remote_get_be32(context, REMOTE_BROADCAST_PROGRESS_COUNTER_GET, counter, "progress counter %d\n",
                           ONE_OR_FOUR, READ_TEXTS_LF);
}

int32_t zvc_broadcast_get_settings(zvc_msg_q_context_t *context, zvc_broadcast_settings *settings)
{
    return get_record(context, REMOTE_BROADCAST_SETTINGS_GET, settings);
}

int32_t zvc_broadcast_get_status(zvc_msg_q_context_t *context, zvc_broadcast_status *status)
{
    return get_record(context, REMOTE_BROADCAST_STATUS_GET, status);
}
