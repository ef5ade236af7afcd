// The remote API request of an exchange, by which its answer is known: an answer repeats what it answers. Internal to
// the library.
#pragma once

#include "zvTlv.h"

#include <cstddef>
#include <cstdint>

namespace zv {

class SentRequest {
  public:
    // Keeps the request of a finished message, whose place the answer will take. A message that carries none gets
    // whatever answer comes.
    explicit SentRequest(const uint8_t *message);

    // Whether a message of `length` bytes repeats another whole request, and so answers that one, which is logged. A
    // message that repeats no whole request, or is malformed, tells nothing.
    bool refuses(const uint8_t *message, int32_t length) const;

  private:
    int32_t m_size = 0;
    uint8_t m_bytes[ZVMSG_MAX];
};

} // namespace zv
