#include "counters.h"

#include <string>

namespace zvweb {

void Counters::count(unsigned status)
{
    ++m_by_status[status];
}

void Counters::add_time(std::chrono::steady_clock::duration time)
{
    m_time.add(time);
}

void Counters::write(zvservice::MetricsText &text) const
{
    text.family("zv_requests", "counter", "Requests that were answered, by status.");
    for (const auto &[status, count] : m_by_status) {
        text.sample("status=\"" + std::to_string(status) + "\"", count);
    }
    text.family("zv_request_seconds", "histogram",
                "From a request's arrival to the end of its answer, event streams left out.");
    text.sample("", m_time);
}

} // namespace zvweb
