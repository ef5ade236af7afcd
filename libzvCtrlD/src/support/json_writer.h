// The text of the JSON documents: members `"id":value` one after the other, in a buffer on the caller's stack. Internal
// to the library.
//
// A document goes out with every poll, so that a member costs no allocation, no stream and hardly a branch: keys and
// small numbers are copied from tables. Each copy writes a whole block, past the member's end, which is why a buffer
// has JSON_MEMBER_SIZE bytes for each member; that it has is asserted in debug builds alone. The finished text goes
// into the caller's stream at once:
//
//     char buffer[COUNT * JSON_MEMBER_SIZE];
//     JsonWriter json(buffer);
//     for (...) {
//         json.key(id);
//         json.number(value);
//         json.comma();
//     }
//     json.drop_comma();
//     stream.write(json.begin(), json.size());
#pragma once

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ios>
#include <string_view>
#include <system_error>

namespace zv {

// Room for one member with a number, or with a text of up to JSON_TEXT_MAX bytes, and for what the blocks write after
// it.
inline constexpr size_t JSON_MEMBER_SIZE = 64;
inline constexpr size_t JSON_TEXT_MAX = 40;

// A short text, as many of its bytes as count, and their number.
template <size_t SIZE>
struct JsonBlock {
    char text[SIZE - 1];
    uint8_t length;

    constexpr void append(char character) { text[length++] = character; }
    constexpr void append_byte(unsigned value)
    {
        if (value >= 100) {
            append(static_cast<char>('0' + value / 100));
        }
        if (value >= 10) {
            append(static_cast<char>('0' + value / 10 % 10));
        }
        append(static_cast<char>('0' + value % 10));
    }
};

// 0 to 255 in decimal.
inline constexpr auto JSON_BYTES = [] {
    std::array<JsonBlock<4>, 256> blocks = {};
    for (unsigned value = 0; value < blocks.size(); ++value) {
        blocks[value].append_byte(value);
    }
    return blocks;
}();

// The keys of the ids 0 to 255, such as `"34":`.
inline constexpr auto JSON_KEYS = [] {
    std::array<JsonBlock<8>, 256> blocks = {};
    for (unsigned id = 0; id < blocks.size(); ++id) {
        blocks[id].append('"');
        blocks[id].append_byte(id);
        blocks[id].append('"');
        blocks[id].append(':');
    }
    return blocks;
}();

class JsonWriter {
  public:
    // `buffer` outlives the writer and has JSON_MEMBER_SIZE bytes for each member, or literal, that is written.
    template <size_t SIZE>
    explicit JsonWriter(char (&buffer)[SIZE]) : m_begin(buffer), m_next(buffer), m_end(buffer + SIZE)
    {
    }

    // `"id":`
    void key(uint32_t id)
    {
        if (id < JSON_KEYS.size()) {
            copy_block(JSON_KEYS[id]);
            return;
        }
        put('"');
        digits(id);
        put('"');
        put(':');
    }

    // The value in decimal.
    void number(uint32_t value) { unsigned_number(value); }
    void number(uint64_t value) { unsigned_number(value); }
    void number(int32_t value)
    {
        if (value < 0) {
            digits(value);
        } else {
            unsigned_number(static_cast<uint32_t>(value));
        }
    }

    // The text as it is: nothing is escaped.
    void literal(std::string_view text)
    {
        assert(text.size() <= room());
        m_next = std::copy(text.begin(), text.end(), m_next);
    }

    // Every member is followed by a comma; the last one's is taken back, if there was a member.
    void comma() { put(','); }
    void drop_comma()
    {
        if (m_next != m_begin && m_next[-1] == ',') {
            --m_next;
        }
    }

    // Takes back what was written after the first `size` characters.
    void truncate(std::streamsize size) { m_next = m_begin + size; }

    const char *begin() const { return m_begin; }
    std::streamsize size() const { return m_next - m_begin; }
    std::string_view text() const { return {m_begin, static_cast<size_t>(m_next - m_begin)}; }

  private:
    size_t room() const { return static_cast<size_t>(m_end - m_next); }

    void put(char character)
    {
        assert(room() > 0);
        *m_next++ = character;
    }

    template <size_t SIZE>
    void copy_block(const JsonBlock<SIZE> &block)
    {
        assert(SIZE <= room());
        memcpy(m_next, &block, SIZE);
        m_next += block.length;
    }

    template <class Integer>
    void digits(Integer value)
    {
        const std::to_chars_result result = std::to_chars(m_next, m_end, value);
        assert(result.ec == std::errc());
        m_next = result.ptr;
    }

    template <class Unsigned>
    void unsigned_number(Unsigned value)
    {
        if (value < JSON_BYTES.size()) {
            copy_block(JSON_BYTES[static_cast<size_t>(value)]);
        } else {
            digits(value);
        }
    }

    char *m_begin;
    char *m_next;
    char *m_end;
};

} // namespace zv
