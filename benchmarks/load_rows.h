// Rows of the table that come from programs under load. One run of such a program has several figures: each of them is
// a benchmark, and takes its own of every run.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bench {

class Runs {
  public:
    // `measure` runs a command, and returns the figures that it printed.
    explicit Runs(std::function<std::vector<double>(const std::string &command)> measure)
        : m_measure(std::move(measure))
    {
    }

    // A benchmark of the figure at this place, in nanoseconds.
    void add(const std::string &name, const std::string &command, size_t place);

    // Of the next run that this place was not asked for; 0 when it failed.
    double figure(const std::string &command, size_t place);

    // Of all runs; 0 where there was none, or one failed.
    double median(const std::string &command, size_t place) const;

    bool empty() const { return m_runs.empty(); }

  private:
    std::function<std::vector<double>(const std::string &)> m_measure;
    std::map<std::string, std::vector<std::vector<double>>> m_runs;
    std::map<std::pair<std::string, size_t>, size_t> m_taken;
};

// Lines after the table.
void print_size(const char *what, double bytes);
void print_stripped(const char *what, const char *path);

} // namespace bench
