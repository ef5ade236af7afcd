#include "library.h"

#include "camera_settings.h"
#include "process.h"
#include "records.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

// In KiB.
constexpr long SIZE_GOAL = 400;
constexpr long ZVCAM_GOAL = 459; // 470,000 bytes
constexpr long MEMORY_GOAL = 400;

// What the loader prints: `what` is "time" or "memory".
double run_loader(const char *what, const char *library)
{
    return bench::number_printed_by(std::string(ZVBENCH_LOADER) + ' ' + what + ' ' + library);
}

// Of the loading alone, as dlopen does it; a service's start holds more.
void load(benchmark::State &state, const char *library)
{
    for (auto _ : state) {
        const double nanoseconds = run_loader("time", library);
        if (nanoseconds == 0) {
            state.SkipWithError("the library does not load");
        }
        state.SetIterationTime(nanoseconds * 1e-9);
    }
}

BENCHMARK_CAPTURE(load, library, ZVBENCH_LIBRARY)->Name("load/library")->UseManualTime()->Iterations(1);
BENCHMARK_CAPTURE(load, empty, ZVBENCH_EMPTY)->Name("load/empty_library")->UseManualTime()->Iterations(1);

struct FirstCall {
    int64_t nanoseconds;
    int64_t bytes;
};

void start(benchmark::State &state, const char *program)
{
    for (auto _ : state) {
        if (!bench::run_program(program, nullptr)) {
            state.SkipWithError("the program does not start");
            break;
        }
    }
}

BENCHMARK_CAPTURE(start, library, ZVBENCH_START_LIBRARY)->Name("start/library")->UseRealTime();
BENCHMARK_CAPTURE(start, empty, ZVBENCH_START_EMPTY)->Name("start/empty_library")->UseRealTime();

// getCameraFilters builds its map once in a process, so that each measurement takes a process of its own.
FirstCall first_filters()
{
    int ends[2];
    FirstCall result = {};
    if (pipe(ends) != 0) {
        return result;
    }
    if (const pid_t child = fork(); child != 0) {
        close(ends[1]);
        if (read(ends[0], &result, sizeof result) != sizeof result) {
            result = {};
        }
        close(ends[0]);
        waitpid(child, nullptr, 0);
        return result;
    }
    const auto heap = mallinfo2().uordblks;
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(getCameraFilters(bench::MODEL));
    const std::chrono::nanoseconds taken = std::chrono::steady_clock::now() - start;
    result = {taken.count(), static_cast<int64_t>(mallinfo2().uordblks - heap)};
    const bool written = write(ends[1], &result, sizeof result) == sizeof result;
    _exit(written ? 0 : 1);
}

long file_size(const char *path)
{
    return static_cast<long>(std::filesystem::file_size(path));
}

void print_size(const char *what, long bytes, long goal)
{
    const long kibibytes = (bytes + 1023) / 1024;
    printf("%-32s %6ld KiB    goal %ld%s\n", what, kibibytes, goal, kibibytes > goal ? "  missed" : "");
}

} // namespace

void bench::print_library()
{
    std::vector<FirstCall> calls(15);
    std::ranges::generate(calls, first_filters);
    std::ranges::sort(calls, {}, &FirstCall::nanoseconds);
    const FirstCall &median = calls[calls.size() / 2];

    printf("\n");
    print_size("library, stripped", file_size(ZVBENCH_STRIPPED), SIZE_GOAL);
    print_size("zvcam, stripped", file_size(ZVBENCH_STRIPPED_ZVCAM), ZVCAM_GOAL);
    // Of a copy, whose pages this process does not share.
    print_size("private memory after a poll", static_cast<long>(run_loader("memory", ZVBENCH_STRIPPED)), MEMORY_GOAL);
    printf("%-32s %6.1f us, %ld KiB\n", "first getCameraFilters", static_cast<double>(median.nanoseconds) / 1000,
           static_cast<long>(median.bytes / 1024));
}
