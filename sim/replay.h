// Answers from a trace, in place of the camera's own.
#pragma once

#include "message.h"
#include "request.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace zv::sim {

// A message on its way to a client.
struct Reply {
    uint64_t delay = 0; // microseconds after the request
    Bytes message;
};

class Replay {
  public:
    // Reads a trace. Returns an empty text, or what is wrong with it.
    std::string read(std::istream &trace);

    // What followed the same request in the trace, before the link's next request: nothing at all where its answer was
    // lost. A request that comes several times gets its answers in their order, and the last ones from then on. Null
    // for a request that is not in the trace, and for a resynchronisation, whose key is new each time.
    const std::vector<Reply> *find(const Request &request);

  private:
    // What distinguishes requests, whoever sent them.
    struct Key {
        Link link;
        uint32_t command;
        std::string code;
        Bytes argument;

        auto operator<=>(const Key &) const = default;
    };
    struct Occasions {
        std::deque<std::vector<Reply>> replies; // one entry for each time that the request came
        size_t next = 0;
    };

    static Key key_of(const Request &request);

    std::map<Key, Occasions> m_occasions;
};

} // namespace zv::sim
