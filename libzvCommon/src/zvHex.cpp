#include "zvHex.h"

#include "message_trace.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

// Labels and bits of the directions, in the same order.
const char *const s_dmsgstr[ZV_TRACE_ROWS] = {
    "            ", // 0
    ">Hb         ", // 1
    " Hb>        ", // 2
    " Hb<        ", // 3
    "<Hb         ", // 4
    ">Hc         ", // 5
    " Hc>        ", // 6
    " Hc<        ", // 7
    "<Hc         ", // 8
    ">UD         ", // 9
    " UD>        ", // 10
    " UD<        ", // 11
    "<UD         ", // 12
    "    >ZN     ", // 13
    "     ZN>    ", // 14
    "     ZN<    ", // 15
    "    <ZN     ", // 16
    "        >RT ", // 17
    "         RT>", // 18
    "         RT<", // 19
    "        <RT ", // 20
    "        >WI ", // 21
    "        <WI ", // 22
    "        >BT ", // 23
    "        <BT ", // 24
    "        >XX ", // 25
    "        <XX ", // 26
    "DB>         ", // 27
    "DB<         ", // 28
    nullptr,        // 29
};
const uint32_t s_dmsghex[ZV_TRACE_ROWS] = {
    0x0,        // 0
    0x1,        // 1
    0x2,        // 2
    0x4,        // 3
    0x8,        // 4
    0x10,       // 5
    0x20,       // 6
    0x40,       // 7
    0x80,       // 8
    0x100,      // 9
    0x200,      // 10
    0x400,      // 11
    0x800,      // 12
    0x10000,    // 13
    0x20000,    // 14
    0x40000,    // 15
    0x80000,    // 16
    0x100000,   // 17
    0x200000,   // 18
    0x400000,   // 19
    0x800000,   // 20
    0x1000000,  // 21
    0x2000000,  // 22
    0x4000000,  // 23
    0x8000000,  // 24
    0x10000000, // 25
    0x20000000, // 26
    0x4000000,  // 27
    0x8000000,  // 28
    0x0,        // 29
};

namespace {

constexpr uint32_t DEBUG_TRACE = 0x100; // bits of g_debug_level
constexpr uint32_t DEBUG_WHOLE_DUMPS = 0x200;

constexpr int COLUMNS = 16; // bytes in a line
constexpr int GROUP = 4;
constexpr size_t HEXLINE_SIZE = 98;
constexpr size_t PREFIX_WIDTH = 11;
constexpr int32_t SHOWN_AHEAD = 80; // hexprint leaves lines out after this many bytes,
constexpr int32_t SHOWN_LAST = 31;  // while more than this many are left

// Text in a caller's buffer, cut at its end and always terminated.
class TextBuffer {
  public:
    TextBuffer(char *dest, size_t size) : m_dest(dest), m_room(size > 0 ? size - 1 : 0)
    {
        if (size > 0) {
            dest[0] = '\0';
        }
    }
    bool full() const { return m_length == m_room; }
    int32_t length() const { return static_cast<int32_t>(m_length); }

    void put(const char *text, size_t length)
    {
        const size_t taken = std::min(length, m_room - m_length);
        if (taken > 0) {
            memcpy(m_dest + m_length, text, taken);
            m_length += taken;
            m_dest[m_length] = '\0';
        }
    }
    void put(const char *text) { put(text, strlen(text)); }
    void put(char c) { put(&c, 1); }
    void put_byte(uint8_t byte, const char *digits)
    {
        put(digits[byte >> 4]);
        put(digits[byte & 15]);
    }

  private:
    char *m_dest;
    size_t m_room;
    size_t m_length = 0;
};

constexpr char UPPER[] = "0123456789ABCDEF";
constexpr char LOWER[] = "0123456789abcdef";

// How the columns of a line look.
struct Look {
    const char *digits;
    const char *after_column;
    const char *after_group;
    const char *before_text;
};

constexpr Look DUMP_LOOK{UPPER, " ", "  ", ""};
constexpr Look LOG_LOOK{LOWER, "", " ", " "};

char printable(uint8_t byte)
{
    return byte >= 0x20 && byte <= 0x7E ? static_cast<char>(byte) : '.';
}

// Puts the 16 columns from `index` on, and their text; both are blank outside the data.
void put_columns(TextBuffer &text, const Look &look, const uint8_t *data, int64_t length, int64_t index)
{
    char characters[COLUMNS];
    for (int column = 0; column < COLUMNS; ++column, ++index) {
        if (index >= 0 && index < length) {
            characters[column] = printable(data[index]);
            text.put_byte(data[index], look.digits);
        } else {
            characters[column] = ' ';
            text.put("  ");
        }
        text.put(column % GROUP == GROUP - 1 ? look.after_group : look.after_column);
    }
    text.put(look.before_text);
    text.put(characters, COLUMNS);
}

} // namespace

int32_t _snhexdump(char *dest, uint32_t size, const uint8_t *data, uint32_t length, int32_t aligned, const char *prefix)
{
    TextBuffer text(dest, size);
    char head[32];
    if (length == 0) {
        snprintf(head, sizeof head, "%p\n", static_cast<const void *>(data));
        text.put(head);
        return text.length();
    }
    const uintptr_t address = aligned != 0 ? reinterpret_cast<uintptr_t>(data) : 0;
    for (auto index = -static_cast<int64_t>(address % COLUMNS); index < length && !text.full();) {
        snprintf(head, sizeof head, "%0*X  ", 8, static_cast<uint32_t>(address + static_cast<uintptr_t>(index)));
        text.put(prefix);
        text.put(head);
        put_columns(text, DUMP_LOOK, data, length, index);
        text.put('\n');

        const int64_t shown = index;
        index += COLUMNS;
        while (shown >= 0 && index + COLUMNS <= length && memcmp(data + shown, data + index, COLUMNS) == 0) {
            index += COLUMNS;
        }
        if (index > shown + COLUMNS && index < length) {
            text.put("...\n");
        }
    }
    return text.length();
}

int32_t snhexdump(char *dest, uint32_t size, const uint8_t *data, uint32_t length, const char *prefix)
{
    return _snhexdump(dest, size, data, length, 1, prefix);
}

int32_t snhexdump0(char *dest, uint32_t size, const uint8_t *data, uint32_t length, const char *prefix)
{
    return _snhexdump(dest, size, data, length, 0, prefix);
}

int32_t hexline(char *dest, int32_t size, const char *prefix, uint32_t *address, int32_t *index, const uint8_t *data,
                int32_t length)
{
    TextBuffer text(dest, static_cast<size_t>(std::max(size, 0)));
    char head[32];
    text.put(prefix);
    for (size_t width = strlen(prefix); width < PREFIX_WIDTH; ++width) {
        text.put(' ');
    }
    snprintf(head, sizeof head, "%08x  ", *address & ~uint32_t{COLUMNS - 1});
    text.put(head);
    put_columns(text, LOG_LOOK, data, length, *index);
    *address += COLUMNS;
    *index += COLUMNS;
    return text.length();
}

void hexprint(const char *prefix, uint32_t address, const uint8_t *data, int32_t length)
{
    auto index = -static_cast<int32_t>(address % COLUMNS);
    ZV_LOG(ZV_LOG_INFO, "\n");
    while (index < length) {
        char line[HEXLINE_SIZE];
        hexline(line, sizeof line, prefix, &address, &index, data, length);
        const bool middle = index >= SHOWN_AHEAD && length - index > SHOWN_LAST;
        if (!middle || (g_debug_level & DEBUG_WHOLE_DUMPS) != 0) {
            ZV_LOG(ZV_LOG_INFO, "%s\n", line);
        }
    }
}

void hexprint_noaddr(const char *prefix, uint32_t address, const uint8_t *data, int32_t length)
{
    (void)address;
    const auto size = static_cast<size_t>(std::max(length, 0));
    const size_t first_group = size < GROUP ? 0 : size % GROUP;
    size_t index = 0;
    do {
        char line[HEXLINE_SIZE];
        TextBuffer text(line, sizeof line);
        for (const size_t end = std::min(size, index + COLUMNS); index < end; ++index) {
            if (index % GROUP == first_group) {
                text.put(' ');
            }
            text.put_byte(data[index], LOWER);
        }
        ZV_LOG(ZV_LOG_INFO, "%s%s\n", size > 0 ? prefix : "", line);
    } while (index < size);
}

namespace zv {

void trace_message(int32_t direction, const uint8_t *message, int32_t length)
{
    if ((g_debug_level & DEBUG_TRACE) == 0 || direction < 0 || direction >= ZV_TRACE_ROWS) {
        return;
    }
    if ((s_dmsghex[direction] & g_debug) != 0) {
        hexprint(s_dmsgstr[direction], 0, message, length);
    }
}

} // namespace zv
