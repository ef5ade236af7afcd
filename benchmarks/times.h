// What is made of times.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace bench {

inline double nanoseconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double, std::nano>(time).count();
}

// The time that so many in a hundred stay below.
inline double percentile(std::vector<double> &times, size_t percent)
{
    const auto place = times.begin() + static_cast<std::ptrdiff_t>(times.size() * percent / 100);
    std::nth_element(times.begin(), place, times.end());
    return *place;
}

} // namespace bench
