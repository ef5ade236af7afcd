// How much of a message buffer may be used. Internal to the library.
#pragma once

#include "zvTlv.h"

#include <algorithm>
#include <cstdint>

namespace zv {

// What its owner says, and never more than there is.
inline uint32_t capacity(const zvIoBuf_t &iobuf)
{
    return std::min<uint32_t>(iobuf.size, sizeof iobuf.buf);
}

} // namespace zv
