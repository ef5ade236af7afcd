// The connections that are open, so that none is held for ever by a client that does not say what it wants.
#pragma once

#include <chrono>
#include <cstddef>
#include <list>
#include <mutex>

namespace zvweb {

class Connections {
  public:
    using Clock = std::chrono::steady_clock;

    // A request is to be there as a whole after so long, and so is the next one on the same connection.
    static constexpr std::chrono::seconds REQUEST_PATIENCE{30};

    struct Connection {
        int descriptor;
        bool one_too_many;
        bool answering = false;
        Clock::time_point since = Clock::now(); // it waits for a request
    };

    explicit Connections(size_t limit) : m_limit(limit) {}

    // From a connection's beginning to its end, which comes before its descriptor is closed.
    Connection &open(int descriptor);
    void close(Connection &connection);

    // A whole request is there; its answer is out.
    void begin_answer(Connection &connection);
    void end_answer(Connection &connection);

    // Shuts down those that have waited for too long. Another thread's.
    void shut_down_idle();

    size_t limit() const { return m_limit; }
    size_t count() const;
    size_t answering() const;

  private:
    const size_t m_limit;
    mutable std::mutex m_mutex;
    std::list<Connection> m_connections;
    size_t m_answering = 0;
};

} // namespace zvweb
