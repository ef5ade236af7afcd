// A peer of the library: it takes a message apart, answers the request, and puts the answer together.
#pragma once

#include "message.h"

namespace zv::sim {

class Peer {
  public:
    virtual ~Peer() = default;
    // Nothing for a message that cannot be answered: not well formed, or without a queue to answer to.
    virtual std::optional<Request> parse(View message) const = 0;
    virtual Answer answer(const Request &request) = 0;
    virtual Bytes message(const Request &request, const Answer &answer) const = 0;
};

} // namespace zv::sim
