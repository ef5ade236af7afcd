#include "trace.h"

#include <charconv>
#include <cstddef>
#include <istream>
#include <iterator>
#include <ostream>

namespace zv {

namespace {

constexpr const char *DIRECTION_NAMES[] = {"client>daemon", "daemon>client", "client>camera", "camera>client"};

constexpr uint64_t SECOND = 1000000; // in microseconds
constexpr size_t MICROSECOND_DIGITS = 6;
constexpr size_t MESSAGE_MAX = 65535;

int hex_digit(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return -1;
}

bool is_blank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Takes the next field off the front of `line`.
std::string_view take_field(std::string_view &line)
{
    while (!line.empty() && is_blank(line.front())) {
        line.remove_prefix(1);
    }
    size_t length = 0;
    while (length < line.size() && !is_blank(line[length])) {
        ++length;
    }
    const std::string_view field = line.substr(0, length);
    line.remove_prefix(length);
    return field;
}

template <class Number>
bool read_number(std::string_view text, Number &number)
{
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

bool read_time(std::string_view text, uint64_t &microseconds)
{
    const size_t point = text.find('.');
    if (point == std::string_view::npos || text.size() != point + 1 + MICROSECOND_DIGITS) {
        return false;
    }
    uint32_t seconds = 0;
    uint32_t fraction = 0;
    if (!read_number(text.substr(0, point), seconds) || !read_number(text.substr(point + 1), fraction)) {
        return false;
    }
    microseconds = seconds * SECOND + fraction;
    return true;
}

bool read_direction(std::string_view text, TraceDirection &direction)
{
    for (size_t i = 0; i < std::size(DIRECTION_NAMES); ++i) {
        if (text == DIRECTION_NAMES[i]) {
            direction = static_cast<TraceDirection>(i);
            return true;
        }
    }
    return false;
}

// What is wrong with the line, or null.
const char *read_message(std::string_view line, TraceMessage &message)
{
    size_t length = 0;
    message.bytes.clear();
    if (!read_time(take_field(line), message.microseconds)) {
        return "no time of the form SECONDS.MICROSECONDS";
    }
    if (!read_direction(take_field(line), message.direction)) {
        return "unknown direction";
    }
    if (!read_number(take_field(line), length) || length > MESSAGE_MAX) {
        return "no length of 0 to 65535";
    }
    if (!read_hex(line, message.bytes)) {
        return "a byte is not two hexadecimal digits";
    }
    return message.bytes.size() == length ? nullptr : "the length is not the number of bytes";
}

} // namespace

const char *trace_direction_name(TraceDirection direction)
{
    return DIRECTION_NAMES[static_cast<size_t>(direction)];
}

void write_trace(std::ostream &out, const TraceMessage &message)
{
    constexpr char DIGITS[] = "0123456789ABCDEF";
    const std::string fraction = std::to_string(message.microseconds % SECOND);
    std::string line = std::to_string(message.microseconds / SECOND) + '.';
    line.append(MICROSECOND_DIGITS - fraction.size(), '0') += fraction;
    line.append(" ").append(trace_direction_name(message.direction)).append(" ");
    line += std::to_string(message.bytes.size());
    for (const uint8_t byte : message.bytes) {
        line += {' ', DIGITS[byte >> 4], DIGITS[byte & 15]};
    }
    line += '\n';
    out.write(line.data(), static_cast<std::streamsize>(line.size()));
}

bool read_hex(std::string_view text, std::vector<uint8_t> &bytes)
{
    bytes.clear();
    for (size_t i = 0; i < text.size();) {
        if (is_blank(text[i])) {
            ++i;
            continue;
        }
        const int high = hex_digit(text[i]);
        const int low = i + 1 < text.size() ? hex_digit(text[i + 1]) : -1;
        if (high < 0 || low < 0) {
            return false;
        }
        bytes.push_back(static_cast<uint8_t>(high << 4 | low));
        i += 2;
    }
    return true;
}

bool TraceReader::next(TraceMessage &message)
{
    std::string line;
    while (m_problem.empty() && std::getline(m_in, line)) {
        ++m_line;
        const size_t start = line.find_first_not_of(" \t\r");
        if (start == std::string::npos || line[start] == '#') {
            continue;
        }
        const char *problem = read_message(line, message);
        if (problem == nullptr) {
            return true;
        }
        m_problem = "line " + std::to_string(m_line) + ": " + problem;
    }
    return false;
}

} // namespace zv
