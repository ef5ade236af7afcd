#include "zvMsg.h"

#include "io_buffer.h"
#include "message_finish.h"
#include "message_trace.h"
#include "zvHex.h"
#include "zvMbox.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
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

// The reply mailbox of one exchange: nobody else gets its name meanwhile. Its end leaves errno as it was.
class ReplyMailbox {
  public:
    explicit ReplyMailbox(const char *name)
        : m_name(name), m_open(zvMbox_rxopen_shared(name, ZVMSG_MAX_COUNT_SM, &m_mbox) == 0)
    {
    }
    ~ReplyMailbox()
    {
        if (m_open) {
            const int error = errno;
            zvMbox_close(&m_mbox);
            zvMbox_unlink(m_name);
            errno = error;
        }
    }
    ReplyMailbox(const ReplyMailbox &) = delete;
    ReplyMailbox &operator=(const ReplyMailbox &) = delete;

    bool is_open() const { return m_open; }
    int32_t receive(zvIoBuf_t &iobuf, int32_t seconds)
    {
        return snzvMbox_timedreceive_w_time(iobuf.buf, static_cast<int32_t>(zv::capacity(iobuf)), &m_mbox, seconds);
    }

  private:
    zvMbox_t m_mbox;
    const char *m_name;
    bool m_open;
};

// Posts the finished message to `carrier` and takes the answer in its place. Returns the answer's length, or -1.
int32_t exchange(zvIoBuf_t &iobuf, const char *reply_name, const char *carrier, int32_t seconds)
{
    // The reply mailbox exists before the request leaves, so that a quick answer is not lost.
    ReplyMailbox reply(reply_name);
    zvMbox_t mbox;
    if (!reply.is_open() || zvMbox_txopen(carrier, &mbox) != 0) {
        return -1;
    }
    post(iobuf, mbox);
    return reply.receive(iobuf, seconds);
}

// Zeroes what is left of the request after an answer, so that it never completes a cut one.
void clear_rest(zvIoBuf_t &iobuf)
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
    iobuf->len = exchange(*iobuf, from, via != nullptr ? via : to, seconds);
    if (iobuf->len < 0) {
        return -1;
    }
    clear_rest(*iobuf);
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
