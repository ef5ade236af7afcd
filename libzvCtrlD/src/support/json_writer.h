// The text of the JSON documents: members `"id":value` one after the other, in a buffer on the caller's stack. Internal
// to the library.
//
// A document goes out with every poll, so that a member costs no allocation, no stream and hardly a branch: keys and
// bytes are copied from tables, and longer numbers made in a register. Each copy writes a whole block, past the
// member's end, which is why a buffer has JSON_MEMBER_SIZE bytes for each member; that it has is asserted in debug
// builds alone. Every key brings the comma in front of it. The first comma is not part of the text: the document's
// opening is laid over it. The finished text goes into the caller's stream at once:
//
//     char buffer[JSON_OPENING_SIZE + COUNT * JSON_MEMBER_SIZE];
//     JsonWriter json(buffer);
//     for (...) {
//         json.key(id);
//         json.number(value);
//     }
//     append_document(stream, json.document("\"status\":{"), ZV_OK);
#pragma once

#include "bytes.h"
#include "decimal.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace zv {

// Room for one member with a number, or with a text of up to JSON_TEXT_MAX bytes, and for what the blocks write after
// it; and for a document's opening.
inline constexpr size_t JSON_MEMBER_SIZE = 64;
inline constexpr size_t JSON_TEXT_MAX = 40;
inline constexpr size_t JSON_OPENING_SIZE = 16;

// A short text, as many of its bytes as count, and their number.
template <size_t SIZE>
struct JsonBlock {
    char text[SIZE - 1];
    uint8_t length;

    // All of its bytes, the length last.
    const char *bytes() const { return reinterpret_cast<const char *>(this); }

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

// The keys of the ids 0 to 255, such as `,"34":`.
inline constexpr auto JSON_KEYS = [] {
    std::array<JsonBlock<8>, 256> blocks = {};
    for (unsigned id = 0; id < blocks.size(); ++id) {
        blocks[id].append(',');
        blocks[id].append('"');
        blocks[id].append_byte(id);
        blocks[id].append('"');
        blocks[id].append(':');
    }
    return blocks;
}();

class JsonWriter {
  public:
    // `buffer` outlives the writer and has JSON_MEMBER_SIZE bytes for each member that is written.
    template <size_t SIZE>
    explicit JsonWriter(char (&buffer)[SIZE])
        : m_begin(buffer + JSON_OPENING_SIZE), m_next(m_begin), m_end(buffer + SIZE)
    {
        static_assert(SIZE > JSON_OPENING_SIZE);
    }

    // `,"id":`
    void key(uint8_t id) { copy_block(JSON_KEYS[id]); }
    void key(uint32_t id)
    {
        if (id < JSON_KEYS.size()) {
            key(static_cast<uint8_t>(id));
            return;
        }
        literal(",\"");
        number(id);
        literal("\":");
    }

    // The value in decimal.
    void number(uint8_t value) { copy_block(JSON_BYTES[value]); }
    void number(uint64_t value)
    {
        if (value < JSON_BYTES.size()) {
            number(static_cast<uint8_t>(value));
            return;
        }
        assert(NUMBER_MAX <= room());
        m_next =
            value < DECIMAL_END ? append(m_next, decimal_of(static_cast<uint32_t>(value))) : append_long(m_next, value);
    }
    void number(uint32_t value) { number(uint64_t{value}); }
    void number(int32_t value)
    {
        if (value < 0) {
            literal("-");
        }
        number(value < 0 ? 0 - static_cast<uint32_t>(value) : static_cast<uint32_t>(value));
    }

    // The text as it is: nothing is escaped.
    void literal(std::string_view text)
    {
        assert(text.size() <= room());
        m_next = std::copy(text.begin(), text.end(), m_next);
    }

    // What was written, the first comma included, and how to take back what came after the first `size` characters.
    size_t size() const { return static_cast<size_t>(m_next - m_begin); }
    void truncate(size_t size) { m_next = m_begin + size; }

    // The members from the one on that begins at `start`, without the comma in front of it.
    std::string_view members(size_t start = 0) const
    {
        return start < size() ? std::string_view(m_begin + start + 1, m_next) : std::string_view();
    }

    // The members between an opening of up to JSON_OPENING_SIZE characters and a brace; the last thing that is written.
    std::string_view document(std::string_view opening)
    {
        assert(opening.size() <= JSON_OPENING_SIZE);
        char *first = m_begin + 1;
        m_next = std::max(m_next, first);
        literal("}");
        char *begin = std::copy_backward(opening.begin(), opening.end(), first);
        return {begin, m_next};
    }

  private:
    static constexpr size_t NUMBER_MAX = 20; // digits

    size_t room() const { return static_cast<size_t>(m_end - m_next); }

    template <size_t SIZE>
    void copy_block(const JsonBlock<SIZE> &block)
    {
        assert(SIZE <= room());
        memcpy(m_next, block.bytes(), SIZE);
        m_next += block.length;
    }

    static char *append(char *next, const Decimal &decimal)
    {
        put_le64(reinterpret_cast<uint8_t *>(next), decimal.text);
        return next + decimal.length;
    }

    // More digits than a register holds: rare.
    [[gnu::noinline]] static char *append_long(char *next, uint64_t value)
    {
        const uint64_t front = value / DECIMAL_END;
        next = front < DECIMAL_END ? append(next, decimal_of(static_cast<uint32_t>(front))) : append_long(next, front);
        return append(next, {eight_digits(static_cast<uint32_t>(value % DECIMAL_END)) + EIGHT_ZEROS, 8});
    }

    char *m_begin;
    char *m_next;
    char *m_end;
};

// ---- Comparing without writing ----

// Four characters of a text, the first one lowest.
inline uint32_t four_at(const char *text)
{
    return le32(reinterpret_cast<const uint8_t *>(text));
}

// The bits in which a text of at least that length differs from a key without its comma. A key has at least four
// characters: its first four and its last four are all of it.
inline uint32_t key_difference(const char *text, const JsonBlock<8> &key)
{
    return (four_at(text) ^ four_at(key.text + 1)) |
           (four_at(text + key.length - 5) ^ four_at(key.text + key.length - 4));
}

// Whether a text is the member `"id":value`, told in registers.
inline bool is_member(const std::string &text, uint8_t id, uint8_t value)
{
    const JsonBlock<8> &key = JSON_KEYS[id];
    const JsonBlock<4> &digits = JSON_BYTES[value];
    if (text.size() + 1 != size_t{key.length} + digits.length) {
        return false;
    }
    // The last four characters: the end of the key, and one to three digits.
    const uint64_t end = four_at(key.text + key.length - 4) | uint64_t{four_at(digits.bytes())} << 32;
    const uint32_t last_four = static_cast<uint32_t>(end >> 8 * digits.length);
    return (key_difference(text.data(), key) | (four_at(text.data() + text.size() - 4) ^ last_four)) == 0;
}

[[gnu::noinline]] inline bool is_long_member(const std::string &text, const JsonBlock<8> &key, uint64_t value)
{
    char buffer[JSON_OPENING_SIZE + JSON_MEMBER_SIZE];
    JsonWriter json(buffer);
    json.literal({key.text, key.length});
    json.number(value);
    return json.members() == text;
}

inline bool is_member(const std::string &text, uint8_t id, uint64_t value)
{
    if (value < JSON_BYTES.size()) {
        return is_member(text, id, static_cast<uint8_t>(value));
    }
    const JsonBlock<8> &key = JSON_KEYS[id];
    if (value >= DECIMAL_END) {
        return is_long_member(text, key, value);
    }
    const Decimal digits = decimal_of(static_cast<uint32_t>(value));
    if (text.size() + 1 != key.length + digits.length) {
        return false;
    }
    // Three digits to eight: the first four, of which one may be the text's NUL, and the last four.
    const char *number = text.data() + key.length - 1;
    const uint32_t behind = digits.length > 4 ? digits.length - 4 : 0;
    return (key_difference(text.data(), key) | (four_at(number) ^ static_cast<uint32_t>(digits.text)) |
            (four_at(number + behind) ^ static_cast<uint32_t>(digits.text >> 8 * behind))) == 0;
}

} // namespace zv
