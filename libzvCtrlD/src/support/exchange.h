// What an exchange of both links has in common: the response queue is emptied before a request, because what waits
// there cannot be the answer, and the answer is awaited for a limited time. Internal to the library.
#pragma once

#include "log_at.h"
#include "zvDbg.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <mqueue.h>

namespace zv {

inline constexpr int ANSWER_SECONDS = 10;

// Receives and drops what waits in `queue`, into `buffer`, which holds the queue's message size. `outstanding` is the
// format of the first log line, with the count. A queue that cannot be asked, such as a closed one, is left alone.
inline void drain_queue(mqd_t queue, char *buffer, size_t size, const char *outstanding,
                        const SourceLocation &where = SourceLocation::current())
{
    mq_attr state = {};
    if (mq_getattr(queue, &state) != 0 || state.mq_curmsgs == 0) {
        return;
    }
    const auto count = static_cast<int>(state.mq_curmsgs);
    ZV_LOG_AT(where, ZV_LOG_ERROR, outstanding, count);
    for (int i = 0; i < count; ++i) {
        const auto length = static_cast<int>(mq_receive(queue, buffer, size, nullptr));
        ZV_LOG_AT(where, ZV_LOG_DEBUG, "Trash msg length %d received", length);
    }
    ZV_LOG_AT(where, ZV_LOG_ERROR, "clearing out queue %d messages", count);
}

// The length of a message, or -1 and the errno of the failure: ETIMEDOUT when none came in time.
struct Received {
    int32_t length;
    int error;
};

// Waits for the next message, at most ANSWER_SECONDS, and takes it into `buffer`, which holds the queue's message size.
inline Received await_answer(mqd_t queue, uint8_t *buffer, size_t size)
{
    const timespec limit = {ANSWER_SECONDS, 0};
    const auto length =
        static_cast<int32_t>(zv_mq_timedreceive(queue, reinterpret_cast<char *>(buffer), size, nullptr, &limit));
    return {length, length < 0 ? errno : 0};
}

} // namespace zv
