// What both links are made of.
#pragma once

#include "alarm.h"
#include "peer_queue.h"
#include "result.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mqueue.h>
#include <sys/types.h>

namespace zvservice {

// What the library waits for room, and as long again for an answer.
inline constexpr std::chrono::milliseconds LIBRARY_PATIENCE{10000};

// The process that a link's queues belong to: the one that opened it.
class Home {
  public:
    void settle();

    // Whether this is a child of that process.
    bool is_elsewhere() const;

    // Gives up what cannot be destroyed in a child, where the alarm has no thread and its lock may be taken for ever.
    void abandon(std::unique_ptr<Alarm> &alarm) const;

  private:
    std::atomic<pid_t> m_process{0};
};

// ---- Queues

// Makes a queue, or tries to: `make` returns whether it did. Where the user's queues have no bytes left for it, those
// that ended processes left behind are removed first. On a failure errno says why.
bool make_queue(const std::function<bool()> &make);

// Opens a queue of this process's own for the alarm. Negative on a failure.
mqd_t open_bell(const char *name);

void close_queue(mqd_t &queue);

// Waits until a peer's queue has room, within the call's time and the library's.
bool wait_for_room(const PeerQueue &peer, Alarm &alarm);

// ---- Results, of a call that was to do `doing`

Result in_a_child();
Result no_answer(const char *doing, Alarm &alarm);

// For want of room in the peer's queue.
Result not_sent(const char *doing, Alarm &alarm);

// For want of a thread.
Result no_alarm(const char *doing, int error);

} // namespace zvservice
