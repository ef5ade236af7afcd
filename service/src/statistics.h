// How a Camera's exchanges went since it was made, and what of a camera is measured, as OpenMetrics text.
#pragma once

#include "result.h"
#include "snapshot.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zvservice {

// How often something took how long.
struct Histogram {
    // In seconds: a count for what took no longer than that, and one for all that took longer.
    static constexpr std::array<double, 12> BOUNDS = {0.0001, 0.00025, 0.0005, 0.001, 0.0025, 0.01,
                                                      0.05,   0.25,    1,      2.5,   5,      15};
    std::array<uint64_t, BOUNDS.size() + 1> counts = {}; // each bucket's own, not summed up
    double sum = 0;                                      // in seconds

    ZV_API void add(std::chrono::steady_clock::duration time) noexcept;
};

// How often something came to which outcome.
inline constexpr size_t OUTCOME_COUNT = static_cast<size_t>(Outcome::SYSTEM_LIMIT) + 1;
using OutcomeCounts = std::array<uint64_t, OUTCOME_COUNT>;

struct Statistics {
    OutcomeCounts polls = {}; // by the Outcome's number
    Histogram poll_time;      // of those that were answered, be it that the camera is off
    OutcomeCounts calls = {}; // on the camera link; what the rules forbade or what was not found was no call
    Histogram call_time;      // from a call's arrival to its outcome, waiting included
};

// Whether what came to this was meant for a link: not what was found out to be forbidden or unknown before.
ZV_API bool is_exchange(Outcome outcome);

// "done", "no_answer", "switched_off": an outcome in a metric's label.
ZV_API const char *outcome_name(Outcome outcome);

// What a MetricsText is sent as.
inline constexpr char METRICS_TYPE[] = "application/openmetrics-text; version=1.0.0; charset=utf-8";

// A text of OpenMetrics 1.0, family by family.
class ZV_API MetricsText {
  public:
    // Begins a family, whose name no other one has. `type` is "counter", "gauge", "histogram", "stateset" or "info"; a
    // counter's samples get "_total", an info's "_info". The unit of a name that ends in "_seconds" is told.
    void family(std::string_view name, std::string_view type, std::string_view help);

    // A sample of the family. `labels` is `status="200"`, or empty; values of labels are escaped by the caller where
    // they are not plain.
    void sample(std::string_view labels, uint64_t value);
    void sample(std::string_view labels, double value);
    void sample(std::string_view labels, const Histogram &histogram);

    // Ends the text, and hands it out.
    std::string end();

  private:
    void describe(std::string_view what, std::string_view text);
    void line(std::string_view suffix, std::string_view labels, std::string_view value);

    std::string m_text;
    std::string m_family;
    std::string m_suffix;
};

// The families of a camera: zv_polls, zv_poll_seconds, zv_calls, zv_call_seconds, zv_link and zv_revision; once it has
// told a state zv_state_age_seconds, and the status values that are numbers, under their names with their number as a
// label: zv_status_wireless_state{status="19"}. Any thread; std::bad_alloc passes.
ZV_API void write_metrics(MetricsText &text, const Snapshot &snapshot, const Statistics &statistics);

} // namespace zvservice
