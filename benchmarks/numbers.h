// Two ways to write a number into a buffer, for the peers.
#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace bench {

inline constexpr size_t NUMBER_SIZE = 20; // what a number may take of the buffer

struct ToChars {
    static char *write(char *next, auto value) { return std::to_chars(next, next + NUMBER_SIZE, value).ptr; }
};

// Most values of a record are bytes: their digits are copied as a block.
struct DigitTable {
    static char *write(char *next, auto value)
    {
        if (static_cast<uint64_t>(value) >= COUNT) {
            return ToChars::write(next, value);
        }
        const Digits &digits = TABLE[static_cast<size_t>(value)];
        memcpy(next, digits.text, sizeof digits.text); // a block, of which the next text overwrites the rest
        return next + digits.size;
    }

  private:
    static constexpr size_t COUNT = 256;

    struct Digits {
        char text[4];
        uint8_t size;
    };

    static constexpr std::array<Digits, COUNT> TABLE = [] {
        std::array<Digits, COUNT> table = {};
        for (size_t value = 0; value < COUNT; ++value) {
            Digits &digits = table[value];
            for (size_t unit = value < 10 ? 1 : value < 100 ? 10 : 100; unit > 0; unit /= 10) {
                digits.text[digits.size++] = static_cast<char>('0' + value / unit % 10);
            }
        }
        return table;
    }();
};

} // namespace bench
