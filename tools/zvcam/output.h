// The tool's own standard output. The library writes lines of its own to standard output, so that the tool keeps the
// real one for itself.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace zvcam {

// Keeps standard output for print() and leads descriptor 1 elsewhere: to standard error, or to nowhere.
void take_standard_output(bool library_to_standard_error);

void print(const char *format, ...) __attribute__((format(printf, 1, 2)));

// Hands on what was printed so far. False when it got lost, as on a full disk.
bool flush_output();

// For a terminal: every control character becomes a question mark. Names come from whoever set up a network.
std::string printable(std::string_view text);

// Prints bytes as lines of 16: offset, hexadecimal, characters.
void print_bytes(std::span<const unsigned char> bytes);

// Two digits for each byte, such as "0c00".
std::string hex(std::span<const unsigned char> bytes);

} // namespace zvcam
