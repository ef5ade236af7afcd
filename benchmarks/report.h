// The figures of a run, and what they are compared with.
#pragma once

#include <array>
#include <benchmark/benchmark.h>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace bench {

// What was found out about one benchmark; 0 for what was not.
struct Figure {
    std::vector<double> times; // of one iteration in each repetition, in nanoseconds
    double instructions = 0;   // of one iteration, as are:
    std::optional<double> allocations = {};

    double nanoseconds() const; // the median
};

// Collects what the benchmarks give, by name, and reports errors at once. Times are the processor's, or the clock's for
// a benchmark that waits (UseRealTime).
class Figures : public benchmark::BenchmarkReporter {
  public:
    // Takes the instructions from a file of lines "name number", where there is one: those of COUNTED_CALLS calls.
    explicit Figures(const char *instructions);

    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override;

    // Whether a benchmark found a wrong result; a time is never a failure.
    bool failed() const { return m_failed; }

    const Figure &of(const std::string &benchmark) const;

    // The times of the benchmarks "name/number", by the number.
    std::map<long, double> series(const std::string &name) const;

  private:
    std::map<std::string, Figure> m_figures;
    bool m_failed = false;
};

// Under what conditions a row was measured; each gives a line of its own.
enum class Conditions { REGIMES, CORES, CONNECTIONS, CLIENTS, CAMERAS, ONCE };
using Goals = std::array<double, 4>; // per condition; 0: none is set

// "work/library" beside "work/peer", under each condition.
struct Row {
    Conditions conditions;
    const char *work;
    const char *peer;       // null, or one that has not run: the library alone
    Goals ratios = {};      // the highest ratios of the two that are good enough
    Goals nanoseconds = {}; // the library's highest times that are good enough
};

// How the time of one thing grows: the benchmarks "name/number".
struct Series {
    const char *name;
    const char *number; // what it counts
};

// One line for each series.
void print(std::span<const Series> all, const Figures &figures);

// The table. A row of which the library's benchmark has not run is left out.
void print(std::span<const Row> rows, const Figures &figures);

} // namespace bench
