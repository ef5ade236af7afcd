// Real message queues, and calls on them that fail when a test says so.
#pragma once

#include <cstdint>
#include <mqueue.h>
#include <string>
#include <vector>

namespace test {

using Bytes = std::vector<uint8_t>;

// A queue that the test creates and unlinks.
class Queue {
  public:
    Queue(std::string name, long depth, long message_size);
    ~Queue();
    Queue(const Queue &) = delete;
    Queue &operator=(const Queue &) = delete;

    const char *name() const { return m_name.c_str(); }
    mqd_t descriptor() const { return m_descriptor; }

    void send(const Bytes &message) const;
    bool empty() const;
    Bytes receive() const; // does not wait: an empty queue gives an empty message

  private:
    std::string m_name;
    mqd_t m_descriptor;
};

// Kernel calls that a test makes fail: the call's `skip`-th next use and, until `count` uses failed, the ones after it.
enum class Call { MQ_OPEN, MQ_SEND, MQ_RECEIVE, MQ_GETATTR };
void fail(Call call, int error, int count = 1, int skip = 0);
void fail_nothing();

} // namespace test
