// A log call that the level keeps silent, beside the test alone.
#include "zvDbg.h"

#include <benchmark/benchmark.h>
#include <cstdlib>

namespace {

// Nobody evaluates the arguments of a silent call.
int argument()
{
    abort();
}

void silent_log(benchmark::State &state)
{
    for (auto _ : state) {
        ZV_LOG(ZV_LOG_INFO, "%d", argument());
        benchmark::ClobberMemory();
    }
}

void bare_test(benchmark::State &state)
{
    for (auto _ : state) {
        if (g_logLevel >= ZV_LOG_INFO) {
            argument();
        }
        benchmark::ClobberMemory();
    }
}

BENCHMARK(silent_log)->Name("silent_log/library");
BENCHMARK(bare_test)->Name("silent_log/bare_if");

} // namespace
