// What both links are made of.
#pragma once

#include "alarm.h"
#include "own_queues.h"
#include "peer_queue.h"
#include "result.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mqueue.h>
#include <optional>
#include <sys/types.h>

namespace zvservice {

// What the library waits for room, and as long again for an answer.
inline constexpr std::chrono::milliseconds LIBRARY_PATIENCE{10000};

// A link's side of its peer, and the process that its queues belong to: the one that opened them.
class LinkQueues {
  public:
    LinkQueues(const LinkQueues &) = delete;
    LinkQueues &operator=(const LinkQueues &) = delete;

    // Ends the call that runs now, or else the next one. Any thread.
    void interrupt() noexcept;

  protected:
    // As for PeerQueue.
    LinkQueues(const char *peer_queue, const char *peer) : m_peer(peer_queue, peer) {}

    // Gives up what cannot be destroyed in a child, where the alarm has no thread and its lock may be taken for ever.
    ~LinkQueues();

    // From now on the queues are this process's.
    void settle();

    // Whether this is a child of the process that they belong to.
    bool is_elsewhere() const;

    // Opens the peer's queue where that is needed. NOT_THERE where it has none, and in a child.
    Result open_peer();

    PeerQueue m_peer;
    std::optional<OwnQueueName> m_name; // of the queue for answers
    mqd_t m_bell = -1;                  // that queue, open for the alarm
    std::unique_ptr<Alarm> m_alarm = std::make_unique<Alarm>();

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
