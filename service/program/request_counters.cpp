#include "request_counters.h"

#include <string>

namespace zvprogram {

void RequestCounters::count(int status)
{
    ++m_by_status[status];
}

void RequestCounters::add_time(std::chrono::steady_clock::duration time)
{
    m_time.add(time);
}

void RequestCounters::write(zvservice::MetricsText &text, const char *measured) const
{
    text.family("zv_requests", "counter", "Requests that were answered, by status.");
    for (const auto &[status, count] : m_by_status) {
        text.sample("status=\"" + std::to_string(status) + "\"", count);
    }
    text.family("zv_request_seconds", "histogram", measured);
    text.sample("", m_time);
}

} // namespace zvprogram
