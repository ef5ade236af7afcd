// How the work of a poll grows: with what is in the record, with what has changed, and with the clients' caches.
#include "bytes.h"
#include "camera_settings.h"
#include "camera_status_fields.h"
#include "measure.h"
#include "records.h"

#include <algorithm>
#include <sstream>

namespace {

using namespace bench;

// A record with texts of so many letters, and every number of four bytes with so many digits.
all_status_settings_t record_of(int letters, int digits)
{
    all_status_settings_t record = records()[0];
    uint8_t *status = record.bytes + ALL_STATUS_OFFSET;
    uint32_t number = 4;
    for (int i = 1; i < digits; ++i) {
        number = 10 * number + 2;
    }
    for (const zv::StatusField &row : zv::status_fields) {
        uint8_t *field = status + row.offset;
        if (row.output == zv::StatusOutput::TEXT) {
            std::fill_n(field, zv::NETWORK_NAME_SIZE, 0);
            std::fill_n(field, letters, 'a');
        } else if (row.output == zv::StatusOutput::NUMBER) {
            zv::put_le32(field, number);
        }
    }
    return record;
}

void write_status(benchmark::State &state, const all_status_settings_t &record)
{
    std::stringstream stream;
    measure(state, [&] {
        stream.seekp(0);
        camera_status_serialize_status_to_json(stream, &status_of(record), MODEL);
    });
}

void write_settings(benchmark::State &state)
{
    const all_status_settings_t &record = records()[0];
    std::stringstream stream;
    measure(state, [&] {
        stream.seekp(0);
        camera_settings_serialize_to_json(stream, &settings_of(record), &status_of(record), nullptr, MODEL);
    });
}

int32_t find_changes(std::stringstream &stream, std::vector<std::string> &cache)
{
    stream.seekp(0);
    return camera_status_serialize_status_changes_to_json(stream, &status_of(records()[0]), nullptr, MODEL, cache);
}

// The client forgets some members' texts before each call.
void write_changes(benchmark::State &state, int changes)
{
    std::vector<std::string> cache;
    camera_status_init_bossCache(MODEL, cache);
    std::stringstream stream;
    find_changes(stream, cache);
    std::vector<std::string *> members;
    for (std::string &text : cache) {
        if (!text.empty()) {
            members.push_back(&text);
        }
    }
    measure(state, [&] {
        for (int i = 0; i < changes; ++i) {
            members[static_cast<size_t>(i)]->clear();
        }
        if (find_changes(stream, cache) != changes) {
            state.SkipWithError("other changes than were made");
        }
    });
}

// Clients that have all seen the record.
void serve_caches(benchmark::State &state, int count)
{
    std::vector<std::vector<std::string>> caches(static_cast<size_t>(count));
    std::stringstream stream;
    for (std::vector<std::string> &cache : caches) {
        camera_status_init_bossCache(MODEL, cache);
        find_changes(stream, cache);
    }
    size_t i = 0;
    measure(state, [&] {
        i = i + 1 < caches.size() ? i + 1 : 0;
        find_changes(stream, caches[i]);
    });
}

void add(const char *name, std::initializer_list<int> numbers, auto run)
{
    for (const int number : numbers) {
        benchmark::RegisterBenchmark((std::string(name) + '/' + std::to_string(number)).c_str(), run, number);
    }
}

const bool registered = [] {
    add("status_members", {82}, [](auto &state, int) { write_status(state, records()[0]); });
    add("settings_members", {89}, [](auto &state, int) { write_settings(state); });
    add("status_letters", {0, 8, 16, 32}, [](auto &state, int letters) { write_status(state, record_of(letters, 1)); });
    add("status_digits", {1, 3, 5, 8, 10}, [](auto &state, int digits) { write_status(state, record_of(0, digits)); });
    add("changed_members", {0, 1, 4, 16, 82}, write_changes);
    add("caches", {1, 10, 100, 1000, 10000}, serve_caches);
    return true;
}();

} // namespace
