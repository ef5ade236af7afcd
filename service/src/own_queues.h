// The names of the queues that this process's links have open.
#pragma once

#include <string>
#include <sys/types.h>

namespace zvservice {

// A queue's name, of at most 31 characters, which remove_own_queues() removes as long as this object lives. It may be
// made before the queue. There is room for 64; those beyond are not removed.
class OwnQueueName {
  public:
    explicit OwnQueueName(std::string text);
    ~OwnQueueName();
    OwnQueueName(const OwnQueueName &) = delete;
    OwnQueueName &operator=(const OwnQueueName &) = delete;

    const char *text() const { return m_text.c_str(); }

  private:
    std::string m_text;
    pid_t m_owner;
    int m_place = -1; // in the list
};

} // namespace zvservice
