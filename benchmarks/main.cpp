// Runs all benchmarks and prints the table; options are those of Google Benchmark. Under callgrind it runs what the
// processor alone decides on, once, and writes down the instructions.
#include "library.h"
#include "measure.h"
#include "mqtt_rows.h"
#include "report.h"
#include "web_rows.h"

#include <benchmark/benchmark.h>
#include <cstdlib>

namespace {

using enum bench::Conditions;

// The regimes are steady, moving, random and cold; the cores two and one; connections 1 and 16; clients 1, 100, 1000;
// cameras 1, 10, 50.
constexpr bench::Row rows[] = {
    {REGIMES, "documents", "to_chars_table", {0.65, 0.65, 0.40}},
    {REGIMES, "documents", "digit_table", {1.05, 1.05, 0.80}},
    {REGIMES, "documents", "rapidjson", {1, 1, 1, 1}},
    {REGIMES, "documents", "fmt", {1, 1, 1, 1}},
    {REGIMES, "documents", "ostream", {1, 1, 1, 1}},
    {REGIMES, "documents", "nlohmann_json", {1, 1, 1, 1}},
    {REGIMES, "status_changes", "to_chars_table", {0.60, 0, 0.50, 1.05}},
    {REGIMES, "status_changes", "digit_table"},
    {REGIMES, "settings_changes", "to_chars_table", {}, {30, 400}},
    {REGIMES, "update_camera_status", "table", {}, {300, 300, 300}},
    {REGIMES, "update_camera_settings", "table", {1.5, 1.5, 1.5}, {190, 190, 190}},
    {ONCE, "option_ids", "direct_tables", {1.5}},
    {ONCE, "tlv_message", "by_hand", {2}},
    {ONCE, "silent_log", "bare_if", {1.1}}, // the same instructions: above 1 is noise
    {CORES, "remote_api", "bare_60_bytes", {1.15, 1.3}},
    {CORES, "remote_api", "bare_60_bytes_with_wait", {1.1, 1.1}},
    {CORES, "daemon_snapshot", "bare_700_bytes", {1.3, 1.6}},
    {CORES, "daemon_snapshot", "bare_700_bytes_with_wait", {1.1, 1.1}},
    {CORES, "service_poll", nullptr, {}, {0, 20000}}, // the scheduler by itself leaves both on one core
    {CORES, "service_changes", nullptr},
    {ONCE, "service_documents", nullptr},
    {ONCE, "event_median", nullptr},
    {ONCE, "event_99_percent", nullptr},
    {ONCE, "idle_second_at_2_hz", nullptr}, // of the processor
    {ONCE, "zvcam_status", "busctl_version", {}, {2200000}},
    {ONCE, "start", "empty_library", {1.3}},
    {ONCE, "load", "empty_library", {1.4}},
    {CONNECTIONS, "web_state", "libmicrohttpd"},
    {CONNECTIONS, "web_state_99_percent", "libmicrohttpd"},
    {CONNECTIONS, "web_state_processor", "libmicrohttpd", {}, {50000, 50000}},
    {CLIENTS, "web_change", "bare_sends"},
    {CLIENTS, "web_change_99_percent", "bare_sends"},
    {CLIENTS, "web_change_processor", "bare_sends"},
    {CLIENTS, "web_offers", "bare_sends"},
    {CLIENTS, "web_offers_99_percent", "bare_sends"},
    {CLIENTS, "web_offers_processor", "bare_sends"},
    {CAMERAS, "mqtt_change", "bare_clients"},
    {CAMERAS, "mqtt_change_99_percent", "bare_clients"},
    {CAMERAS, "mqtt_change_processor", "bare_clients"},
    {CAMERAS, "mqtt_offers", "bare_clients"},
    {CAMERAS, "mqtt_offers_99_percent", "bare_clients"},
    {CAMERAS, "mqtt_offers_processor", "bare_clients"},
    {CAMERAS, "mqtt_order", "bare_clients"},
    {CAMERAS, "mqtt_idle_second", nullptr}, // of the processor
};

constexpr bench::Series series[] = {
    {"status_members", "status document, members"},
    {"settings_members", "settings document, members"},
    {"status_letters", "status document, letters of its two texts"},
    {"status_digits", "status document, digits of its 15 32-bit numbers"},
    {"changed_members", "status changes, members that differ"},
    {"caches", "status changes, caches served in turn"},
    {"remote_payload", "remote API exchange, bytes of the answer"},
    {"daemon_payload", "daemon exchange, bytes of the answer"},
    {"clients", "whole poll, clients at once"},
    {"snapshot", "snapshot of the service core, threads at once"},
};

std::vector<std::string> default_options()
{
    if (!bench::is_counting_instructions()) {
        // Medians of interleaved repetitions: what disturbs the machine for a while disturbs all of them alike.
        return {"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=15",
                "--benchmark_min_time=0.02"};
    }
    std::string filter = "--benchmark_filter=^(";
    for (const bench::Row &row : rows) {
        if (row.conditions == REGIMES) {
            filter += std::string(row.work) + '|';
        }
    }
    return {"--benchmark_min_time=0", filter + "option_ids|tlv_message|silent_log)/"};
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<std::string> defaults = default_options();
    std::vector<char *> arguments(argv, argv + argc);
    for (std::string &argument : defaults) {
        arguments.insert(arguments.begin() + 1, argument.data());
    }
    auto count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    bench::Figures figures(getenv("ZVBENCH_INSTRUCTIONS"));
    benchmark::RunSpecifiedBenchmarks(&figures);
    if (!bench::is_counting_instructions()) {
        bench::print(rows, figures);
        bench::print(series, figures);
        bench::print_library();
        bench::print_web();
        bench::print_mqtt();
    }
    return figures.failed() ? 1 : 0;
}
