// Messages of both links as text for people: names for tags, commands, groups and actions, the bytes, and what is wrong
// with a malformed one. Every function returns the number of faults that it found and printed, each on a line that
// begins with "  ! ". Nothing is read past the given bytes, whatever they say.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string_view>

namespace zv {

enum class Link { DAEMON, CAMERA };

// The link that a message belongs to, by its category: the daemon's are 20 and 21.
Link link_of(const uint8_t *bytes, size_t size);

// Prints one message:
//
//     camera command, 53 bytes, category 4
//         4 CMD         2  "YY" remote API
//                          59 59
//        10 CMDARG      5  group 1 APP, action 9 REMOTE_APP_SHUTTER_START, payload size 0
//                          00 01 09 00 00
//
// with an element's offset, tag, length, meaning and bytes.
int decode_message(const uint8_t *bytes, size_t size, Link link, std::ostream &out);

// The same for hexadecimal text, in any spacing and case; the category decides on the link.
int decode_hex(std::string_view text, std::ostream &out);

// Prints every message of a trace (docs/trace.md), each after a line with its time and direction. A line that is no
// message is a fault, and ends it.
int decode_trace(std::istream &in, std::ostream &out);

} // namespace zv
