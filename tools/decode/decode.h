// Messages of both links, taken apart: names for tags, commands, groups and actions, the bytes, and what is wrong with
// a malformed one; as rows, or as text for people. Nothing is read past the given bytes, whatever they say.
#pragma once

#include "trace.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

enum class Link { DAEMON, CAMERA };

// The link that a message belongs to, by its category: the daemon's are 20 and 21.
Link link_of(std::span<const uint8_t> bytes);

// An element as far as it is there.
struct DecodedElement {
    size_t offset; // of its head
    uint8_t tag;
    std::span<const uint8_t> value; // of the message's own bytes
    std::string meaning;            // in words; empty where there is nothing to say
};

struct DecodedMessage {
    std::span<const uint8_t> bytes; // the caller's
    Link link = Link::CAMERA;
    bool response = false;
    bool headless = false; // too short to say of what category it is, or to have elements
    uint8_t category = 0;
    std::vector<DecodedElement> elements;
    std::vector<std::string> faults;
};

DecodedMessage decode(std::span<const uint8_t> bytes, Link link);

// Takes what is decoded, in its order. A message lives as long as the call.
struct DecodeSink {
    std::function<void(const DecodedMessage &, const TraceMessage *)> message; // with null when it is of no trace
    std::function<void(const std::string &)> fault;                            // of what is no message
};

// A message in hexadecimal text, in any spacing and case; the category decides on the link. Returns the number of
// faults, those of the message included.
int decode_hex(std::string_view text, const DecodeSink &sink);

// The same for every message of a trace (docs/trace.md). A line that is no message is a fault, and ends it.
int decode_trace(std::istream &in, const DecodeSink &sink);

// Prints what is decoded as text, with each fault on a line that begins with "  ! ", and in a trace each message after
// its time and direction. A message is
//
//     camera command, 53 bytes, category 4
//         4 CMD         2  "YY" remote API
//                          59 59
//        10 CMDARG      5  group 1 APP, action 9 REMOTE_APP_SHUTTER_START, payload size 0
//                          00 01 09 00 00
//
// with an element's offset, tag, length, meaning and bytes.
DecodeSink text_sink(std::ostream &out);

} // namespace zv
