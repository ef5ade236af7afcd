// What an exchange of both links has in common: the response queue is emptied before a request, because what waits
// there cannot be the answer, and request and answer have one time limit. Internal to the library.
#pragma once

#include "log_at.h"
#include "timed_wait.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
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

// After a post that failed: whether it was for a full queue, and there is room now. Without room until the limit's end
// errno is ETIMEDOUT.
inline bool wait_for_room(mqd_t queue, TimeLimit &limit)
{
    if (errno != EAGAIN && errno != ETIMEDOUT) {
        return false;
    }
    const bool room = wait_for(QueueEvent::ROOM, queue, limit);
    errno = ETIMEDOUT;
    return room;
}

// The length of a message, or -1 and the errno of the failure: ETIMEDOUT when none came in time.
struct Received {
    int32_t length;
    int error;
};

// Waits for the next message and takes it into `buffer`, which holds the queue's message size.
inline Received await_answer(mqd_t queue, uint8_t *buffer, size_t size, TimeLimit &limit)
{
    const auto length = static_cast<int32_t>(receive_in_time(queue, reinterpret_cast<char *>(buffer), size, limit));
    return {length, length < 0 ? errno : 0};
}

} // namespace zv
