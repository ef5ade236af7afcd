#include "output.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace zvcam {

namespace {

std::FILE *output = stdout;

constexpr size_t BYTES_PER_LINE = 16;

bool is_control(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

} // namespace

void take_standard_output(bool library_to_standard_error)
{
    const int own = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    std::FILE *stream = own < 0 ? nullptr : fdopen(own, "w");
    const int other = library_to_standard_error ? STDERR_FILENO : open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (stream == nullptr || other < 0) {
        return; // as it is, with the library's lines in between
    }
    output = stream;
    dup2(other, STDOUT_FILENO);
    if (other != STDERR_FILENO) {
        close(other);
    }
}

void print(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    vfprintf(output, format, arguments);
    va_end(arguments);
}

bool flush_output()
{
    return fflush(output) == 0 && ferror(output) == 0;
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
        print("%04zx ", line);
        for (size_t i = line; i < line + BYTES_PER_LINE; ++i) {
            if (i < end) {
                print(" %02x", bytes[i]);
            } else {
                print("   ");
            }
        }
        print("  ");
        for (size_t i = line; i < end; ++i) {
            print("%c", bytes[i] >= 0x20 && bytes[i] < 0x7F ? bytes[i] : '.');
        }
        print("\n");
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
