// What goes to standard output.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace zvcam {

// Hands on what was printed so far. False when it got lost, as on a full disk.
bool flush_output();

// For a terminal: every control character becomes a question mark. Names come from whoever set up a network.
std::string printable(std::string_view text);

// Prints bytes as lines of 16: offset, hexadecimal, characters.
void print_bytes(std::span<const unsigned char> bytes);

// Two digits for each byte, such as "0c00".
std::string hex(std::span<const unsigned char> bytes);

} // namespace zvcam
