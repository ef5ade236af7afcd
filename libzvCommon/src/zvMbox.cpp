#include "zvMbox.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#define ZV_SOURCE_PATH "libzvCommon/src/zvMbox"

namespace {

constexpr mode_t QUEUE_MODE = 0664;
constexpr int RECEIVE_SECONDS = 10;

constexpr int OPEN_ATTEMPTS = 5;
constexpr useconds_t OPEN_PAUSE = 10000; // microseconds

constexpr int SHARED_ATTEMPTS = 6;
constexpr useconds_t SHARED_PAUSE = 100000; // microseconds, and longer by as much after each attempt

// Returns 0, or the errno of the failure.
int open_queue(zvMbox_t *mbox, int flags)
{
    mbox->mqd = mq_open(mbox->name, flags, QUEUE_MODE, &mbox->attr);
    return mbox->mqd != -1 ? 0 : errno;
}

int32_t failed(int error)
{
    errno = error;
    return -1;
}

void init(const char *name, int32_t maxmsg, int32_t msgsize, zvMbox_t *mbox)
{
    mbox->attr = {};
    mbox->attr.mq_maxmsg = maxmsg;
    mbox->attr.mq_msgsize = msgsize;
    mbox->name = name;
}

} // namespace

void zvMbox_init(const char *name, int32_t maxmsg, zvMbox_t *mbox)
{
    init(name, maxmsg, ZVMSG_MAX, mbox);
}

int32_t zvMbox_rxopen_ext(const char *name, int32_t maxmsg, int32_t msgsize, zvMbox_t *mbox)
{
    init(name, maxmsg, msgsize, mbox);
    int error = 0;
    for (int attempt = 0; attempt < OPEN_ATTEMPTS; ++attempt) {
        error = open_queue(mbox, O_RDONLY | O_CREAT);
        if (error == 0) {
            return 0;
        }
        zvUtilKlogMsgLevel(ZV_LOG_INFO, __LINE__, ZV_FILE_NAME, "Warning: target Mbox=\"%s\" errno=\"%d\"  retry(%d)",
                           name, error, attempt);
        usleep(OPEN_PAUSE);
    }
    ZV_LOG(ZV_LOG_ERROR, "target Mbox=\"%s\" errno=\"%s\"", name, strerror(error));
    return failed(error);
}

int32_t zvMbox_rxopen(const char *name, int32_t maxmsg, zvMbox_t *mbox)
{
    return zvMbox_rxopen_ext(name, maxmsg, ZVMSG_MAX, mbox);
}

int32_t zvMbox_rxopen_shared_ext(const char *name, int32_t maxmsg, int32_t msgsize, zvMbox_t *mbox)
{
    init(name, maxmsg, msgsize, mbox);
    for (int attempt = 1;; ++attempt) {
        const int error = open_queue(mbox, O_RDONLY | O_CREAT | O_EXCL);
        if (error == 0) {
            return 0;
        }
        if (attempt == SHARED_ATTEMPTS) {
            ZV_LOG(ZV_LOG_ERROR, "Shared Mbox will not open =\"%s\" errno=%d\"%s\"", name, error, strerror(error));
            return failed(error);
        }
        zvUtilKlogMsgLevel(ZV_LOG_INFO, __LINE__, ZV_FILE_NAME,
                           "Warning: Shared Mbox in use (retry) =\"%s\" errno=\"%s\"  retry(%d)", name, strerror(error),
                           attempt);
        usleep(SHARED_PAUSE * static_cast<useconds_t>(attempt));
    }
}

int32_t zvMbox_rxopen_shared(const char *name, int32_t maxmsg, zvMbox_t *mbox)
{
    return zvMbox_rxopen_shared_ext(name, maxmsg, ZVMSG_MAX, mbox);
}

int32_t zvMbox_txopen(const char *name, zvMbox_t *mbox)
{
    zvMbox_init(name, ZVMSG_MAX_COUNT_TX, mbox);
    const int error = open_queue(mbox, O_WRONLY);
    if (error != 0) {
        ZV_LOG(ZV_LOG_ERROR, "target Mbox=\"%s\" errno=\"%s\"", name, strerror(error));
        return failed(error);
    }
    return 0;
}

int32_t zvMbox_close(zvMbox_t *mbox)
{
    const int32_t result = mq_close(mbox->mqd);
    mbox->mqd = -1; // the number may soon be another file's
    return result;
}

int32_t zvMbox_unlink(const char *name)
{
    if (mq_unlink(name) != 0) {
        ZV_LOG(ZV_LOG_ERROR, "Mbox unlink fail=\"%s\" errno=\"%s\"", name, strerror(errno));
        return -1;
    }
    return 0;
}

int32_t zvMbox_create_ext(const char *name, int32_t maxmsg, int32_t msgsize)
{
    zvMbox_t mbox;
    if (zvMbox_rxopen_ext(name, maxmsg, msgsize, &mbox) == 0) {
        zvMbox_close(&mbox);
    }
    return 0;
}

int32_t zvMbox_create(const char *name, int32_t maxmsg)
{
    return zvMbox_create_ext(name, maxmsg, ZVMSG_MAX);
}

int32_t zvMbox_send(const uint8_t *buf, int32_t len, zvMbox_t *mbox)
{
    ZV_ASSERT(len <= ZVMSG_MAX);
    const bool known = mq_getattr(mbox->mqd, &mbox->attr) == 0;
    if (known && mbox->attr.mq_curmsgs >= mbox->attr.mq_maxmsg) {
        ZV_LOG(ZV_LOG_ERROR, "No Longer an ASSERT: Mailbox Full: mbox=\"%s\" >= %ld messages", mbox->name,
               mbox->attr.mq_maxmsg);
        return 0;
    }
    return mq_send(mbox->mqd, reinterpret_cast<const char *>(buf), static_cast<size_t>(len), 0);
}

int32_t snzvMbox_receive(uint8_t *buf, int32_t size, zvMbox_t *mbox)
{
    const auto room = static_cast<size_t>(std::max(size, 0));
    const auto length = static_cast<int32_t>(mq_receive(mbox->mqd, reinterpret_cast<char *>(buf), room, nullptr));
    if (length < 0) {
        ZV_LOG(ZV_LOG_ERROR, "target Mbox=\"%s\" errno=\"%s\"", mbox->name, strerror(errno));
    }
    return length;
}

int32_t snzvMbox_timedreceive_w_time(uint8_t *buf, int32_t size, zvMbox_t *mbox, int32_t seconds)
{
    return msg_available(mbox->mqd, seconds) != 0 ? snzvMbox_receive(buf, size, mbox) : failed(ETIMEDOUT);
}

int32_t snzvMbox_timedreceive(uint8_t *buf, int32_t size, zvMbox_t *mbox)
{
    return snzvMbox_timedreceive_w_time(buf, size, mbox, RECEIVE_SECONDS);
}
