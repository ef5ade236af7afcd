// When a wait is over, on the clock that nobody sets.
#pragma once

#include <algorithm>
#include <chrono>

namespace zvservice {

using Clock = std::chrono::steady_clock;
using Deadline = Clock::time_point;

// A patience without end, such as NO_LIMIT, waits this long: sums with it stay far from an overflow.
inline constexpr std::chrono::milliseconds LONGEST_WAIT = std::chrono::hours(24);

inline Deadline deadline_after(std::chrono::milliseconds patience)
{
    return Clock::now() + std::clamp(patience, std::chrono::milliseconds(0), LONGEST_WAIT);
}

// 0 from the deadline on; before it at least 1.
inline std::chrono::milliseconds left_until(Deadline deadline)
{
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()),
                    std::chrono::milliseconds(0));
}

} // namespace zvservice
