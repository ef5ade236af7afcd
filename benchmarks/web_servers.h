// The servers that are measured: each a process, with a processor of its own where there are two.
#pragma once

#include "child.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench {

class ServerProcess : public Child {
  public:
    // `serve` prints a line that ends with ":PORT/" when it serves.
    explicit ServerProcess(const std::function<void()> &serve) : Child(Cores::TWO, serve) {}

    uint16_t port() const;
    size_t private_memory() const { return memory("Private_"); } // in bytes
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
