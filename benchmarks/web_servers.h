// The servers that are measured: each a process, with a processor of its own where there are two.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace bench {

class ServerProcess {
  public:
    // Runs `serve` in a child, which prints a line that ends with ":PORT/" when it serves. Throws std::runtime_error
    // when it does not come to that.
    explicit ServerProcess(const std::function<void()> &serve);
    ~ServerProcess();
    ServerProcess(const ServerProcess &) = delete;
    ServerProcess &operator=(const ServerProcess &) = delete;

    uint16_t port() const { return m_port; }
    std::chrono::nanoseconds start_time() const { return m_start_time; } // from the fork until it served
    std::chrono::nanoseconds processor_time() const; // so far: the program's and the kernel's for it
    size_t private_memory() const;                   // in bytes

  private:
    pid_t m_process = -1;
    uint16_t m_port = 0;
    std::chrono::nanoseconds m_start_time{};
};

// What serves, in its own process. None returns.

// zvweb.
void serve_camera();

// libmicrohttpd alone, run as zvweb runs it: gives this answer to every request, headers and body, made once.
void serve_answer(const std::string &answer);

// So many connections, of which the last one asks: each time all others are sent the next of these events, one after
// the other, and the last one 200. All others have a stream's beginning, and an event that says "event: state".
void serve_events(size_t connections, const std::vector<std::string> &events);

} // namespace bench
