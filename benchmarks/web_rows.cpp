#include "web_rows.h"

#include "process.h"
#include "simulated_camera.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace bench;

constexpr int RUNS = 5;

std::string command_of(const std::string &what, int number)
{
    return ZVBENCH_WEB " " + what + " " + std::to_string(number);
}

// One run has several figures: each of them is a benchmark, and takes its own of every run.
class Runs {
  public:
    // Of the next run that this place was not asked for; 0 when it failed.
    double figure(const std::string &command, size_t place)
    {
        std::vector<std::vector<double>> &runs = m_runs[command];
        const size_t run = m_taken[{command, place}]++;
        if (run == runs.size()) {
            const SimulatedCamera camera(Cores::SAME);
            runs.push_back(camera.is_ready() ? numbers_printed_by(command) : std::vector<double>());
        }
        return place < runs[run].size() ? runs[run][place] : 0;
    }
    bool empty() const { return m_runs.empty(); }

  private:
    std::map<std::string, std::vector<std::vector<double>>> m_runs;
    std::map<std::pair<std::string, size_t>, size_t> m_taken;
};

Runs &runs()
{
    static Runs all;
    return all;
}

void run(benchmark::State &state, const std::string &command, size_t place)
{
    for (auto _ : state) {
        const double nanoseconds = runs().figure(command, place);
        if (nanoseconds == 0) {
            state.SkipWithError("the load fails");
            break;
        }
        state.SetIterationTime(nanoseconds * 1e-9);
    }
}

// As the program prints its figures: those of zvweb, then those of the peer.
void add_load(const std::string &what, const char *peer, const std::vector<int> &numbers)
{
    const std::string works[] = {"web_" + what, "web_" + what + "_99_percent", "web_" + what + "_processor"};
    for (const int number : numbers) {
        size_t place = 0;
        for (const char *worker : {"library", peer}) {
            for (const std::string &work : works) {
                const std::string name = work + '/' + worker + '/' + std::to_string(number);
                benchmark::RegisterBenchmark(name.c_str(), run, command_of(what, number), place++)
                    ->UseManualTime()
                    ->Iterations(1)
                    ->Repetitions(RUNS);
            }
        }
    }
}

const bool registered = [] {
    add_load("state", "libmicrohttpd", {1, 16});
    add_load("change", "bare_sends", {1, 100, 1000});
    add_load("offers", "bare_sends", {1, 1000});
    return true;
}();

void print_size(const char *what, double bytes)
{
    printf("%-32s %6.1f KiB\n", what, bytes / 1024);
}

} // namespace

void bench::print_web()
{
    if (runs().empty()) {
        return;
    }
    printf("\n");
    print_size("zvweb, stripped", static_cast<double>(std::filesystem::file_size(ZVBENCH_STRIPPED_ZVWEB)));
    const std::string command = command_of("program", 1000);
    const double memory = runs().figure(command, 0);
    if (memory == 0) {
        fprintf(stderr, "%s: it fails\n", command.c_str());
        return;
    }
    print_size("its private memory", memory);
    printf("%-32s %6.1f ms\n", "from its start until it serves", runs().figure(command, 1) * 1e-6);
    print_size("memory for an event client", runs().figure(command, 2));
    print_size("memory for a kept connection", runs().figure(command, 3));
}
