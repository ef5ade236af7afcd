#include "output.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace zvcam {

namespace {

constexpr size_t BYTES_PER_LINE = 16;

bool is_control(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

} // namespace

bool flush_output()
{
    return fflush(stdout) == 0 && ferror(stdout) == 0;
}

std::string printable(std::string_view text)
{
    std::string result(text);
    std::replace_if(result.begin(), result.end(), is_control, '?');
    return result;
}

void print_bytes(std::span<const unsigned char> bytes)
{
    for (size_t line = 0; line < bytes.size(); line += BYTES_PER_LINE) {
        const size_t end = std::min(line + BYTES_PER_LINE, bytes.size());
        printf("%04zx ", line);
        for (size_t i = line; i < line + BYTES_PER_LINE; ++i) {
            if (i < end) {
                printf(" %02x", bytes[i]);
            } else {
                printf("   ");
            }
        }
        printf("  ");
        for (size_t i = line; i < end; ++i) {
            printf("%c", bytes[i] >= 0x20 && bytes[i] < 0x7F ? bytes[i] : '.');
        }
        printf("\n");
    }
}

std::string hex(std::span<const unsigned char> bytes)
{
    std::string digits;
    for (const unsigned char byte : bytes) {
        char text[4];
        snprintf(text, sizeof text, "%02x", byte);
        digits += text;
    }
    return digits;
}

} // namespace zvcam
