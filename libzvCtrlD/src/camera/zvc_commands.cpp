// The platform's assertion below stays in release builds.
#undef NDEBUG

#include "zvc_commands.h"

#include "bytes.h"
#include "exchange.h"
#include "io_buffer.h"
#include "message_finish.h"
#include "queue_names.h"
#include "sent_request.h"
#include "timed_wait.h"

#include <cassert>
#include <cerrno>
#include <ctime>

using namespace zv;

namespace {

constexpr int32_t NO_TRACE = 0; // the trace row that never prints

// A message that is not valid when it is finished was built wrongly in this library.
void finish_message(zvc_msg_q_context_t *context, const char *dest, int32_t direction)
{
    zv::finish_message(&context->iobuf, context->mbox_name, dest, direction);
    assert(0 == (int)tlv_validate(context->iobuf.buf));
}

// Posts the finished message at once or not at all: the deadline is long past, so that a full queue does not block,
// however the context's owner opened it.
int32_t post(zvc_msg_q_context_t *context)
{
    constexpr timespec PAST = {};
    const zvIoBuf_t &iobuf = context->iobuf;
    return mq_timedsend(context->mq_tx, reinterpret_cast<const char *>(iobuf.buf), static_cast<size_t>(iobuf.len), 0,
                        &PAST);
}

// Posts the finished message to a reply queue without leftovers. A request that found no room, or was lost in another
// way, shows as a time-out.
void post_request(zvc_msg_q_context_t *context, TimeLimit &limit)
{
    do {
        char trash[ZVMSG_MAX];
        drain_queue(context->mq_rx, trash, sizeof trash, "There are %d outstanding messages in the rx queue");
    } while (post(context) != 0 && wait_for_room(context->mq_tx, limit));
}

// Takes the answer to `request` into the context's buffer. Answers to other requests, which came late or belong to a
// post, are dropped.
Received receive_answer(zvc_msg_q_context_t *context, const SentRequest &request, TimeLimit &limit)
{
    zvIoBuf_t &iobuf = context->iobuf;
    for (;;) {
        const Received answer = await_answer(context->mq_rx, iobuf.buf, capacity(iobuf), limit);
        if (!request.refuses(iobuf.buf, answer.length)) {
            return answer;
        }
    }
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
    const SentRequest request(context->iobuf.buf);
    TimeLimit limit(ANSWER_SECONDS);
    post_request(context, limit);

    zvIoBuf_t &iobuf = context->iobuf;
    const auto [length, error] = receive_answer(context, request, limit);
    if (length >= 0) {
        iobuf.len = length;
        return length;
    }
    if (error == ETIMEDOUT) {
        ZV_LOG(ZV_LOG_ERROR, "Timed out (%dsec) on receive on message queue, len=%d errno=%d", ANSWER_SECONDS, length,
               error);
    } else {
        ZV_LOG(ZV_LOG_ERROR, "Error receiving message (%d) from message queue, len=%d errno=%d", length, length, error);
    }
    context->rx_failed = 1;
    iobuf.len = ZV_ERR_NO_RESPONSE;
    return ZV_ERR_NO_RESPONSE;
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

void zvc_init_remote_api_input_header(uint8_t *request, uint8_t gid, uint8_t aid, uint16_t payload_size)
{
    ZV_LOG(ZV_LOG_INFO, "gid/aid, %d,%d", gid, aid);
    request[0] = 0;
    request[1] = gid;
    request[2] = aid;
    put_be16(request + 3, payload_size);
}
