// The figures of a run, and what they are compared with.
#pragma once

#include <benchmark/benchmark.h>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace bench {

// Collects the repetitions of every benchmark, and reports errors at once.
class Figures : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override;

    // Whether a benchmark found a wrong result; a time is never a failure.
    bool failed() const { return m_failed; }

    // Median time of one iteration, in nanoseconds: of the processor, or of the clock for a benchmark that waits
    // (UseRealTime). 0 for a benchmark that did not run.
    double median(const std::string &benchmark) const;

  private:
    std::map<std::string, std::vector<double>> m_repetitions;
    bool m_failed = false;
};

// A benchmark of the library beside one of a peer.
struct Comparison {
    const char *library;
    const char *peer;
    double goal; // the highest ratio of the two that is good enough; 0: none is set
};

// One line for each comparison whose benchmarks have both run.
void print(std::span<const Comparison> comparisons, const Figures &figures);

} // namespace bench
