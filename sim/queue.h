// Message queues of the simulated camera.
#pragma once

#include "message.h"

#include <cstddef>
#include <mqueue.h>
#include <optional>
#include <string>

namespace zv::sim {

// A queue that this process reads. It is removed at the end; one that a dead process left is taken over, emptied.
class Queue {
  public:
    Queue() = default;
    ~Queue() { close(); }
    Queue(const Queue &) = delete;
    Queue &operator=(const Queue &) = delete;

    // Returns an empty text, or what went wrong.
    std::string open(const std::string &name, size_t message_size);
    // Closes and removes it.
    void close();
    // Closes it and leaves the name to another process.
    void abandon();

    // The next message, or nothing when the queue is empty.
    std::optional<Bytes> receive();
    // Fills the queue up with messages that receive() passes over.
    void fill();

    mqd_t descriptor() const { return m_descriptor; }
    const std::string &name() const { return m_name; }

  private:
    std::string m_name;
    mqd_t m_descriptor = -1;
    Bytes m_buffer;
};

// Posts a message to another process's queue, which may be gone or full: returns false then. Never waits.
bool post(const std::string &queue, View message);

} // namespace zv::sim
