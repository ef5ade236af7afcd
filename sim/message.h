// Messages as both links carry them: a 4-byte header and elements that are found by their tag. What a peer sends is
// checked here, once; all else works on checked messages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zv::sim {

using Bytes = std::vector<uint8_t>;
using View = std::span<const uint8_t>;

// Which peer is meant: the control daemon, or the relay, which leads to the firmware.
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

// The value of the first element with `tag`, in a well formed message; none when it is cut off.
std::optional<View> find_element(View message, uint8_t tag);

View view_of(const std::string &text);

} // namespace zv::sim
