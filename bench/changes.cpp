// Change detection where nothing has changed, the common case of a poll.
#include "records.h"
#include "table_writer.h"

#include <benchmark/benchmark.h>

namespace {

using namespace bench;

int32_t library(const all_status_settings_t &record, std::vector<std::string> &cache)
{
    static std::stringstream stream;
    return camera_status_serialize_status_changes_to_json(stream, &status_of(record), nullptr, MODEL, cache);
}

int32_t table(const all_status_settings_t &record, std::vector<std::string> &cache)
{
    static const TableWriter writer;
    return writer.compare(record, cache);
}

using Detector = int32_t (*)(const all_status_settings_t &, std::vector<std::string> &);

// Every record has a cache that has seen it.
void detect_changes(benchmark::State &state, Detector detect)
{
    std::vector<std::vector<std::string>> caches(RECORD_COUNT);
    Rotation rotation;
    for (size_t i = 0; i < RECORD_COUNT; ++i) {
        const all_status_settings_t &record = rotation.next();
        std::vector<std::string> &cache = caches[rotation.index()];
        camera_status_init_bossCache(MODEL, cache);
        detect(record, cache);
    }
    for (auto _ : state) {
        const all_status_settings_t &record = rotation.next();
        if (detect(record, caches[rotation.index()]) != 0) {
            state.SkipWithError("a change where there is none");
        }
    }
}

BENCHMARK_CAPTURE(detect_changes, library, library)->Name("changes/library");
BENCHMARK_CAPTURE(detect_changes, table, table)->Name("changes/table");

} // namespace
