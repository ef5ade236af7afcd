#include "backoff.h"

#include <algorithm>
#include <utility>

namespace zvmqtt {

std::chrono::milliseconds Backoff::next()
{
    const auto longest = std::exchange(m_longest, std::min(2 * m_longest, LAST));
    std::uniform_int_distribution<std::chrono::milliseconds::rep> between(longest.count() / 2, longest.count());
    return std::chrono::milliseconds(between(m_random));
}

} // namespace zvmqtt
