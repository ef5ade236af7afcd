// What a program measures of the requests that it answers.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <zvservice/statistics.h>

namespace zvprogram {

// One thread at a time.
class RequestCounters {
  public:
    void count(int status); // of an answer, as HTTP has it
    void add_time(std::chrono::steady_clock::duration time);

    // zv_requests by status and zv_request_seconds. `measured` says from what to what the time goes.
    void write(zvservice::MetricsText &text, const char *measured) const;

  private:
    std::map<int, uint64_t> m_by_status;
    zvservice::Histogram m_time;
};

} // namespace zvprogram
