// Log calls that the level keeps silent, a thousand of them, beside the test alone.
#include "measure.h"
#include "zvDbg.h"

#include <cstdlib>

namespace {

constexpr int CALLS = 1000; // one alone is too short to measure

// Nobody evaluates the arguments of a silent call.
int argument()
{
    abort();
}

void silent_log(benchmark::State &state)
{
    bench::measure(state, [] {
        for (int i = 0; i < CALLS; ++i) {
            ZV_LOG(ZV_LOG_INFO, "%d", argument());
            benchmark::ClobberMemory();
        }
    });
}

void bare_test(benchmark::State &state)
{
    bench::measure(state, [] {
        for (int i = 0; i < CALLS; ++i) {
            if (g_logLevel >= ZV_LOG_INFO) {
                argument();
            }
            benchmark::ClobberMemory();
        }
    });
}

BENCHMARK(silent_log)->Name("silent_log/library");
BENCHMARK(bare_test)->Name("silent_log/bare_if");

} // namespace
