#include "measure.h"

#include <cstdint>
#include <string>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define RUNNING_ON_VALGRIND 0
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_STOP_INSTRUMENTATION
#define CALLGRIND_ZERO_STATS
#define CALLGRIND_DUMP_STATS_AT(name) static_cast<void>(name)
#endif

namespace bench {

namespace {

bool counted = false;

} // namespace

bool is_counting_instructions()
{
    return RUNNING_ON_VALGRIND != 0;
}

void start_counting()
{
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
}

void stop_counting()
{
    CALLGRIND_STOP_INSTRUMENTATION;
    counted = true;
}

void dump_instructions(const std::string &name)
{
    if (counted) {
        CALLGRIND_DUMP_STATS_AT(name.c_str());
        counted = false;
    }
}

void do_other_work()
{
    static std::vector<uint32_t> memory((1 << 20) / sizeof(uint32_t), 1);
    uint32_t sum = 0;
    for (uint32_t &number : memory) {
        sum += number;
        number = sum;
    }
    benchmark::ClobberMemory();
}

} // namespace bench
