#include "zvMsg.h"

#include "message_finish.h"
#include "zvHex.h"
#include "zvMbox.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#define ZV_SOURCE_PATH "libzvCommon/src/zvMsg"

namespace {

constexpr int32_t ANSWER_SECONDS = 10;

int32_t capacity(const zvIoBuf_t &iobuf)
{
    return static_cast<int32_t>(std::min<size_t>(iobuf.size, sizeof iobuf.buf));
}

void add_text(zvIoBuf_t &iobuf, uint8_t tag, const char *text)
{
    iobuf.len += sntlv_add_bin(iobuf.buf, static_cast<uint32_t>(capacity(iobuf)), tag,
                               static_cast<uint32_t>(strlen(text)), reinterpret_cast<const uint8_t *>(text));
}

// Posts the finished message through a mailbox of its own. Returns -1 when there is none, else the result of closing
// it.
int32_t post(const zvIoBuf_t &iobuf, const char *mailbox)
{
    zvMbox_t mbox;
    if (zvMbox_txopen(mailbox, &mbox) != 0) {
        return -1;
    }
    zvMbox_send(iobuf.buf, iobuf.len, &mbox); // a lost message shows as a time-out
    return zvMbox_close(&mbox);
}

// Zeroes what is left of the request behind an answer, so that it never completes a cut one. After a time-out the
// request stays.
void clear_behind(zvIoBuf_t &iobuf)
{
    if (iobuf.len >= 0) {
        memset(iobuf.buf + iobuf.len, 0, sizeof iobuf.buf - static_cast<size_t>(iobuf.len));
    }
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
    return post(*iobuf, via != nullptr ? via : to);
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
    const bool posted = post(*iobuf, via != nullptr ? via : to) == 0;
    const int error = errno;
    iobuf->len = posted ? snzvMbox_timedreceive_w_time(iobuf->buf, capacity(*iobuf), &reply, seconds) : -1;
    zvMbox_close(&reply);
    zvMbox_unlink(from);
    if (!posted) {
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
