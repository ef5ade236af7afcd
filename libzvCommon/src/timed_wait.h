// The waits of a call: for a message, or for room in a queue, within one time limit. Internal to the library.
#pragma once

#include "zvDbg.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <mqueue.h>
#include <sys/time.h>

namespace zv {

// The time that all waits of a call may take together. It begins with the first of them, so that a call which waits
// once waits for exactly this long, and it is measured by the monotonic clock.
class TimeLimit {
  public:
    explicit TimeLimit(int32_t seconds) : m_seconds(seconds) {}

    int32_t seconds() const { return m_seconds; }

    // What the next wait may take. The first call begins the time.
    timeval left();

    // Whether the time has begun, and nothing is left of it.
    bool is_over() const;

  private:
    int64_t microseconds_left() const;

    int32_t m_seconds;
    bool m_begun = false;
    timespec m_begin = {};
};

enum class QueueEvent { MESSAGE, ROOM };

// Waits until the queue has a message or room for one. A signal does not end the wait. Returns false when the limit is
// over, and at once for a closed descriptor.
bool wait_for(QueueEvent event, mqd_t queue, TimeLimit &limit);

// msg_available and zv_mq_timedreceive, within what is left of a limit.
bool message_available(mqd_t queue, TimeLimit &limit);
int64_t receive_in_time(mqd_t queue, char *buffer, size_t size, TimeLimit &limit);

} // namespace zv
