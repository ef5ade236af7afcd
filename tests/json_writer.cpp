// A cached text compared with a member in registers: each text that differs in one place is another member.
#include "json_writer.h"

#include <gtest/gtest.h>
#include <string>

namespace {

bool is_member(const std::string &text, uint8_t id, uint64_t value, bool as_byte)
{
    return as_byte ? zv::is_member(text, id, static_cast<uint8_t>(value)) : zv::is_member(text, id, value);
}

TEST(JsonWriter, TellsAMemberFromAnyOtherText)
{
    for (const uint8_t id : std::initializer_list<uint8_t>{1, 34, 118, 255}) {
        for (const uint64_t value : {0ULL, 7ULL, 42ULL, 255ULL, 256ULL, 1000ULL, 54321ULL, 654321ULL, 7654321ULL,
                                     98765432ULL, 100000000ULL, 4294967295ULL, 18446744073709551615ULL}) {
            const std::string text = '"' + std::to_string(id) + "\":" + std::to_string(value);
            for (const bool as_byte : {false, true}) {
                if (as_byte && value > 255) {
                    continue;
                }
                EXPECT_TRUE(is_member(text, id, value, as_byte)) << text;
                EXPECT_FALSE(is_member(text + '0', id, value, as_byte)) << text;
                EXPECT_FALSE(is_member('"' + text, id, value, as_byte)) << text;
                EXPECT_FALSE(is_member({}, id, value, as_byte)) << text;
                for (size_t i = 0; i < text.size(); ++i) {
                    std::string other = text;
                    other[i] = static_cast<char>(other[i] ^ 1);
                    EXPECT_FALSE(is_member(other, id, value, as_byte)) << other;
                    other.resize(i);
                    EXPECT_FALSE(is_member(other, id, value, as_byte)) << other;
                }
            }
        }
    }
}

} // namespace
