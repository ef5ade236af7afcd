// What the server itself measures. One thread, the server's.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <zvservice/statistics.h>

namespace zvweb {

class Counters {
  public:
    void count(unsigned status); // of an answer
    void add_time(std::chrono::steady_clock::duration time);

    // zv_requests by status and zv_request_seconds.
    void write(zvservice::MetricsText &text) const;

  private:
    std::map<unsigned, uint64_t> m_by_status;
    zvservice::Histogram m_time;
};

} // namespace zvweb
