// The queue that a peer of the camera's side reads, and what the limits of the system say against opening one.
#pragma once

#include "result.h"

#include <mqueue.h>
#include <string>

namespace zvservice {

// Open for writing, without ever waiting, and closed in a program that this one starts. One thread at a time.
class PeerQueue {
  public:
    // `who` reads it: "the control daemon". Both texts outlive the object.
    PeerQueue(const char *name, const char *who) : m_name(name), m_who(who) {}
    ~PeerQueue() { close(); }
    PeerQueue(const PeerQueue &) = delete;
    PeerQueue &operator=(const PeerQueue &) = delete;

    // Opens the queue that has the name now, unless it is open already. NOT_THERE when none has it.
    Result open();

    Result not_there() const;

    mqd_t descriptor() const { return m_descriptor; }

    // Grows with each queue that was opened: the peer was started anew, and knows nothing of what was sent before.
    unsigned generation() const { return m_generation; }

    // The messages that wait in it, and how many it holds; 0 of 0 where the queue can't be asked.
    struct Fill {
        long messages;
        long capacity;
    };
    Fill fill() const;

  private:
    void close();

    const char *m_name;
    const char *m_who;
    mqd_t m_descriptor = -1;
    unsigned m_generation = 0;
};

// Whether the queue that a descriptor is open on has lost its name.
bool is_removed(mqd_t queue);

// Why a queue of messages of `message_size` bytes was not made or, with 0 bytes, an existing one not opened. `cannot`
// begins the sentence: "cannot create the queue for the daemon's answers". The kernel's `error` names no limit: the
// sentence does, with its value and the remedy.
Result queue_failure(const std::string &cannot, int error, long message_size);

// Whether this process may open so many files more.
bool may_open_files(int count);

// Whether `error`, of a queue that was to be made, says that the user's queues have all the bytes that they may have.
bool is_out_of_queue_bytes(int error);

} // namespace zvservice
