// Emptying a reply queue before a request: what waits there cannot be the answer. Shared by both links.
#pragma once

#include "log_at.h"

#include <mqueue.h>

namespace zv {

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

} // namespace zv
