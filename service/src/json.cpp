#include "json.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace zvservice {

namespace {

constexpr char REPLACEMENT[] = "\xEF\xBF\xBD"; // U+FFFD

// The forms of a character of several bytes: what its first byte is under the mask, its bytes, its least code point.
struct Utf8Row {
    uint8_t mask;
    uint8_t head;
    size_t size;
    uint32_t least;
};

constexpr Utf8Row UTF8[] = {{0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};

// How many bytes the character at the beginning has; 0 when it is none.
size_t character_size(std::string_view text)
{
    const auto first = static_cast<uint8_t>(text.front());
    if (first < 0x80) {
        return 1;
    }
    for (const Utf8Row &row : UTF8) {
        if ((first & row.mask) != row.head || text.size() < row.size) {
            continue;
        }
        uint32_t code = first & ~static_cast<uint32_t>(row.mask);
        for (const char c : text.substr(1, row.size - 1)) {
            const auto byte = static_cast<uint8_t>(c);
            if ((byte & 0xC0) != 0x80) {
                return 0;
            }
            code = code << 6 | (byte & 0x3FU);
        }
        const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
        return code >= row.least && code <= 0x10FFFF && !surrogate ? row.size : 0;
    }
    return 0;
}

// How many of the first characters are written as they are, each a byte.
size_t plain_size(std::string_view text)
{
    const auto special = [](char c) {
        const auto byte = static_cast<uint8_t>(c);
        return byte < 0x20 || byte >= 0x80 || c == '"' || c == '\\';
    };
    return static_cast<size_t>(std::find_if(text.begin(), text.end(), special) - text.begin());
}

} // namespace

void Json::separate()
{
    const char last = m_text.empty() ? '{' : m_text.back();
    if (last != '{' && last != '[' && last != ':') {
        m_text += ',';
    }
}

Json &Json::open(char bracket)
{
    separate();
    m_text += bracket;
    m_open += bracket == '{' ? '}' : ']';
    return *this;
}

Json &Json::close()
{
    m_text += m_open.back();
    m_open.pop_back();
    return *this;
}

Json &Json::key(std::string_view name)
{
    quoted(name);
    m_text += ':';
    return *this;
}

Json &Json::literal(std::string_view text)
{
    separate();
    m_text += text;
    return *this;
}

Json &Json::quoted(std::string_view text)
{
    separate();
    m_text += '"';
    for (;;) {
        const size_t plain = plain_size(text);
        m_text += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty()) {
            break;
        }
        const size_t size = character_size(text);
        const char first = text.front();
        if (size == 0) {
            m_text += REPLACEMENT;
        } else if (first == '"' || first == '\\') {
            m_text += {'\\', first};
        } else if (size == 1 && first < 0x20) {
            char escaped[8];
            snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(first));
            m_text += escaped;
        } else {
            m_text += text.substr(0, size);
        }
        text.remove_prefix(std::max<size_t>(size, 1));
    }
    m_text += '"';
    return *this;
}

} // namespace zvservice
