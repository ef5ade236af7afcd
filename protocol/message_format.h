// The form of a message on both links: a header, then elements, each a header and a value. Lengths are big-endian; the
// tags are in zvTlv.h.
#pragma once

#include <cstdint>

namespace zv {

inline constexpr uint16_t TLV_HEADER_SIZE = 4; // of a message, and of each element

// Offsets in a message.
inline constexpr uint16_t MESSAGE_LENGTH = 0; // 2 bytes: of the whole message
inline constexpr uint16_t MESSAGE_CATEGORY = 3;

// Offsets in an element.
inline constexpr uint16_t ELEMENT_LENGTH = 1; // 2 bytes: of the value
inline constexpr uint16_t ELEMENT_TAG = 3;

// The relay takes categories up to this one.
inline constexpr uint8_t CATEGORY_MAX = 0xEF;

} // namespace zv
