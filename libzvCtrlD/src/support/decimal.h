// Decimal digits without a branch that depends on how many there are. Internal to the library.
#pragma once

#include <bit>
#include <cstdint>

namespace zv {

// Up to eight digits as characters, the first one in the lowest byte. The bytes above the last one are 0.
struct Decimal {
    uint64_t text;
    uint32_t length;
};

inline constexpr uint32_t DECIMAL_END = 100'000'000; // one more than eight digits hold

// The eight digits of a number below DECIMAL_END, zeros in front among them, one in each byte and the first in the
// lowest. The number is cut in two, and so are its parts, all at once: halves of four digits, quarters of two, bytes of
// one. To divide by 100 and by 10, a part is multiplied by 2^19 / 100 and 2^10 / 10, rounded up, which is exact for
// numbers of four and of two digits.
constexpr uint64_t eight_digits(uint32_t number)
{
    const uint64_t halves = number / 10000 | static_cast<uint64_t>(number % 10000) << 32;
    const uint64_t hundreds = (halves * 5243 >> 19) & 0x0000007f'0000007f;
    const uint64_t quarters = hundreds | (halves - hundreds * 100) << 16;
    const uint64_t tens = (quarters * 103 >> 10) & 0x000f000f'000f000f;
    return tens | (quarters - tens * 10) << 8;
}

inline constexpr uint64_t EIGHT_ZEROS = 0x30303030'30303030; // as characters

// A number below DECIMAL_END, without zeros in front.
constexpr Decimal decimal_of(uint32_t number)
{
    constexpr uint64_t LAST_DIGIT = uint64_t{1} << 56; // it counts also when it is 0
    const uint64_t digits = eight_digits(number);
    const auto zeros = static_cast<uint32_t>(std::countr_zero(digits | LAST_DIGIT)) / 8;
    return {(digits + EIGHT_ZEROS) >> zeros * 8, 8 - zeros};
}

} // namespace zv
