// Messages as both links carry them: a 4-byte header and elements that are found by their tag. What a peer sends is
// checked here, once; everything behind works on checked messages.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zv::sim {

using Bytes = std::vector<uint8_t>;
using View = std::span<const uint8_t>;

// Which peer is meant: the control daemon, or the relay with the firmware behind it.
enum class Link : uint8_t { DAEMON, RELAY };
inline constexpr size_t LINK_COUNT = 2;

const char *link_name(Link link);

// The longest message on a link, and so the message size of its queues.
size_t message_max(Link link);

struct Element {
    uint8_t tag;
    View value;
};

// A message of these elements and an end element.
Bytes build_message(uint8_t category, std::initializer_list<Element> elements);

// True when the message has a header and its length field promises no more than was received.
bool well_formed(View message);

// The value of the first element with `tag`, in a well formed message.
std::optional<View> find_element(View message, uint8_t tag);

// The queue's name that a client wrote, up to a zero byte: a slash and more. Empty for anything else.
std::string queue_name(View value);

View view_of(const std::string &text);

// A request, taken apart. On the daemon link `command` is the command's number; on the relay it is 0, and a remote API
// request has a group and an action.
struct Request {
    Link link = Link::DAEMON;
    uint32_t command = 0;
    uint8_t group = 0;
    uint8_t action = 0;
    uint8_t category = 0;
    std::string code;   // relay: the two-character command code
    Bytes argument;     // daemon: the parameter; relay: the whole command argument
    Bytes payload;      // remote API: what stands behind the request's header
    bool valid = false; // remote API: the header's payload size is that of the payload
    std::string source; // the queue that the answer goes to
};

// What a peer answers. `code` is the daemon's return code or the firmware's acknowledge byte.
struct Answer {
    int32_t code = 0;
    uint8_t error = 0;         // the firmware's own error
    bool switched_off = false; // the firmware's one-byte answer of a camera that is off
    Bytes payload;
};

Answer good(View payload = {});
Answer refused(int32_t code);

} // namespace zv::sim
