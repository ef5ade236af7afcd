#include "load_rows.h"

#include "measure.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>

namespace bench {

namespace {

constexpr int RUNS = 5;

} // namespace

void Runs::add(const std::string &name, const std::string &command, size_t place)
{
    const auto run = [this, command, place](benchmark::State &state) {
        for (auto _ : state) {
            const double nanoseconds = figure(command, place);
            if (nanoseconds == 0) {
                state.SkipWithError("the load fails");
                break;
            }
            state.SetIterationTime(nanoseconds * 1e-9);
        }
    };
    benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime()->Iterations(1)->Repetitions(RUNS);
}

double Runs::figure(const std::string &command, size_t place)
{
    std::vector<std::vector<double>> &runs = m_runs[command];
    const size_t run = m_taken[{command, place}]++;
    if (run == runs.size()) {
        runs.push_back(m_measure(command));
    }
    return place < runs[run].size() ? runs[run][place] : 0;
}

double Runs::median(const std::string &command, size_t place) const
{
    std::vector<double> figures;
    if (const auto found = m_runs.find(command); found != m_runs.end()) {
        for (const std::vector<double> &run : found->second) {
            figures.push_back(place < run.size() ? run[place] : 0);
        }
    }
    return figures.empty() || std::ranges::count(figures, 0.0) > 0 ? 0 : bench::median(figures);
}

void print_size(const char *what, double bytes)
{
    printf("%-32s %6.1f KiB\n", what, bytes / 1024);
}

void print_stripped(const char *what, const char *path)
{
    print_size(what, static_cast<double>(std::filesystem::file_size(path)));
}

} // namespace bench
