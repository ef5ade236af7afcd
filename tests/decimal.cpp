// The digits that are made in a register, beside those of the standard library.
#include "decimal.h"
#include "json_writer.h"

#include <charconv>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

namespace {

// Whether the documents write a number as the standard library does.
bool is_right(uint64_t number)
{
    char buffer[zv::JSON_OPENING_SIZE + zv::JSON_MEMBER_SIZE];
    zv::JsonWriter json(buffer);
    json.literal(",");
    json.number(number);
    char right[20];
    return json.members() == std::string_view(right, std::to_chars(right, std::end(right), number).ptr);
}

TEST(Decimal, IsRightAroundEachPowerAndAtRandom)
{
    for (uint64_t power = 1; power < UINT64_MAX / 10; power *= 10) {
        for (const uint64_t number : {power - 1, power, power + 1, 9 * power, 10 * power - 1}) {
            EXPECT_TRUE(is_right(number)) << number;
        }
    }
    EXPECT_TRUE(is_right(UINT64_MAX));
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const uint64_t number = random() >> random() % 64;
        ASSERT_TRUE(is_right(number)) << number;
    }
}

TEST(Decimal, HasNothingBehindItsLastDigit)
{
    for (const uint32_t number : {0U, 7U, 10U, 123456U, zv::DECIMAL_END - 1}) {
        const zv::Decimal decimal = zv::decimal_of(number);
        EXPECT_EQ(std::to_string(number).size(), decimal.length);
        EXPECT_EQ(0U, decimal.length < 8 ? decimal.text >> 8 * decimal.length : 0) << number;
    }
}

// Takes a minute: run where that is no matter, with --gtest_also_run_disabled_tests.
TEST(Decimal, DISABLED_IsRightForAllNumbersOf32Bits)
{
    for (uint64_t number = 0; number <= UINT32_MAX; ++number) {
        if (!is_right(number)) {
            FAIL() << number;
        }
    }
}

} // namespace
