#include "library.h"
#include "report.h"

#include <benchmark/benchmark.h>

namespace {

constexpr bench::Comparison comparisons[] = {
    {"documents/library", "documents/table", 1.0},
    {"documents/library", "documents/rapidjson", 1.0},
    {"documents/library", "documents/nlohmann-json", 1.0},
    {"documents/library", "documents/ostream", 1.0},
    {"changes/library", "changes/table", 1.0},
    {"record_option_ids/library", "record_option_ids/direct_tables", 1.5},
    {"option_ids/library", "option_ids/direct_tables", 1.5},
    {"tlv_message/library", "tlv_message/by_hand", 2.0},
    {"silent_log/library", "silent_log/bare_if", 1.1}, // the same instructions: above 1 is noise
    {"remote_api/two_cores", "bare_60_bytes/two_cores", 1.15},
    {"remote_api/same_core", "bare_60_bytes/same_core", 1.3},
    {"remote_api/same_core", "bare_60_bytes_with_wait/same_core", 0},
    {"daemon_snapshot/two_cores", "bare_700_bytes/two_cores", 1.3},
    {"daemon_snapshot/same_core", "bare_700_bytes/same_core", 1.6},
    {"start/library", "start/empty_library", 1.3},
    {"load/library", "load/empty_library", 1.3},
};

} // namespace

int main(int argc, char **argv)
{
    // Medians of interleaved repetitions: what disturbs the machine for a while disturbs all of them alike.
    std::vector<char *> arguments(argv, argv + argc);
    std::string defaults[] = {"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=15",
                              "--benchmark_min_time=0.02"};
    for (std::string &argument : defaults) {
        arguments.insert(arguments.begin() + 1, argument.data());
    }
    auto count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    bench::Figures figures;
    benchmark::RunSpecifiedBenchmarks(&figures);
    bench::print(comparisons, figures);
    bench::print_library();
    return figures.failed() ? 1 : 0;
}
