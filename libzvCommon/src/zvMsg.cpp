#include "zvMsg.h"

#include "io_buffer.h"
#include "message_finish.h"
#include "zvHex.h"
#include "zvMbox.h"

#include <cerrno>
#include <cstring>

#define ZV_SOURCE_PATH "libzvCommon/src/zvMsg"

namespace {

constexpr int32_t ANSWER_SECONDS = 10;

void add_text(zvIoBuf_t &iobuf, uint8_t tag, const char *text)
{
    iobuf.len += sntlv_add_bin(iobuf.buf, zv::capacity(iobuf), tag, static_cast<uint32_t>(strlen(text)),
                               reinterpret_cast<const uint8_t *>(text));
}

// Posts the finished message and closes the mailbox. Returns the result of the latter: a lost message shows as a
// time-out.
int32_t post(const zvIoBuf_t &iobuf, zvMbox_t &mbox)
{
    zvMbox_send(iobuf.buf, iobuf.len, &mbox);
    return zvMbox_close(&mbox);
}

// Zeroes what is left of the request behind an answer, so that it never completes a cut one.
void clear_behind(zvIoBuf_t &iobuf)
{
    memset(iobuf.buf + iobuf.len, 0, sizeof iobuf.buf - static_cast<size_t>(iobuf.len));
}

} // namespace

void zv::finish_message(zvIoBuf_t *iobuf, const char *from, const char *to, int32_t direction)
{
    add_text(*iobuf, TLV_SRC, from);
    add_text(*iobuf, TLV_DST, to);
    add_text(*iobuf, TLV_END, "");
    trace_message(direction, iobuf->buf, iobuf->len);
}

int32_t zvmsg_send(zvIoBuf_t *iobuf, const char *from, const char *to, const char *via, int32_t direction)
{
    zv::finish_message(iobuf, from, to, direction);
    ZV_ASSERT(0 == tlv_validate(iobuf->buf));
    zvMbox_t mbox;
    return zvMbox_txopen(via != nullptr ? via : to, &mbox) == 0 ? post(*iobuf, mbox) : -1;
}

int32_t zvmsg_send_timedreceive_w_time(zvIoBuf_t *iobuf, const char *from, const char *to, const char *via,
                                       int32_t direction, int32_t seconds)
{
    zv::finish_message(iobuf, from, to, direction);
    ZV_ASSERT(0 == tlv_validate(iobuf->buf));

    // The reply mailbox exists before the request leaves, so that a quick answer is not lost.
    zvMbox_t reply;
    if (zvMbox_rxopen_shared(from, ZVMSG_MAX_COUNT_SM, &reply) != 0) {
        iobuf->len = -1;
        return -1;
    }
    zvMbox_t mbox;
    if (zvMbox_txopen(via != nullptr ? via : to, &mbox) == 0) {
        post(*iobuf, mbox);
        const auto room = static_cast<int32_t>(zv::capacity(*iobuf));
        iobuf->len = snzvMbox_timedreceive_w_time(iobuf->buf, room, &reply, seconds);
    } else {
        iobuf->len = -1;
    }
    const int error = errno;
    zvMbox_close(&reply);
    zvMbox_unlink(from);
    if (iobuf->len < 0) {
        errno = error;
        return -1;
    }
    clear_behind(*iobuf);
    if (tlv_validate(iobuf->buf) != 0) {
        ZV_LOG(ZV_LOG_INFO, "%s:", "zvmsg_send_timedreceive");
        hexprint("ERROR", 0, iobuf->buf, iobuf->len);
        iobuf->len = -1;
    }
    return iobuf->len;
}

int32_t zvmsg_send_timedreceive(zvIoBuf_t *iobuf, const char *from, const char *to, const char *via, int32_t direction)
{
    return zvmsg_send_timedreceive_w_time(iobuf, from, to, via, direction, ANSWER_SECONDS);
}
