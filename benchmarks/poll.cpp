#include "poll.h"

#include "bytes.h"
#include "measure.h"

#include <map>

namespace bench {

namespace {

enum class Regime { STEADY, MOVING, RANDOM, COLD };

struct NamedRegime {
    Regime regime;
    const char *name;
};
constexpr NamedRegime regimes[] = {
    {Regime::STEADY, "steady"},
    {Regime::MOVING, "moving"},
    {Regime::RANDOM, "random"},
    {Regime::COLD, "cold"},
};

using Cache = std::vector<std::string>;

Cache cache_that_saw(const all_status_settings_t &record)
{
    Cache cache;
    camera_status_init_bossCache(MODEL, cache);
    std::stringstream ignored;
    camera_status_serialize_status_changes_to_json(ignored, &status_of(record), nullptr, MODEL, cache);
    return cache;
}

// Unrelated clients, each of which has seen its record.
class RandomRecords {
  public:
    explicit RandomRecords(Poll &poll) : m_poll(poll)
    {
        for (const all_status_settings_t &record : records()) {
            m_caches.push_back(cache_that_saw(record));
        }
        m_poll.record = &records().back();
    }
    void next()
    {
        m_index = m_index + 1 < RECORD_COUNT ? m_index + 1 : 0;
        m_poll.previous = m_poll.record;
        m_poll.record = &records()[m_index];
        m_poll.cache = &m_caches[m_index];
    }

  private:
    Poll &m_poll;
    std::vector<Cache> m_caches;
    size_t m_index = 0;
};

// One client, which receives into two buffers in turn.
class OneCamera {
  public:
    OneCamera(Poll &poll, bool moves)
        : m_poll(poll), m_moves(moves), m_buffers{records()[0], records()[0]}, m_cache(cache_that_saw(records()[0]))
    {
        m_poll.record = &m_buffers[0];
        m_poll.previous = &m_buffers[1];
        m_poll.cache = &m_cache;
    }
    void next()
    {
        if (!m_moves) {
            return;
        }
        all_status_settings_t &record = m_buffers[++m_polls % 2];
        uint8_t *status = record.bytes + ALL_STATUS_OFFSET;
        zv::put_le32(status + STATUS_VIDEO_VIDEO_PROGRESS_COUNTER, m_polls);
        zv::put_le32(status + STATUS_STORAGE_REMAINING_VIDEO_TIME, 86400 - m_polls % 86400);
        zv::put_le32(status + STATUS_STORAGE_REMAINING_SPACE, 60000000 - m_polls % 4000 * 12500);
        status[STATUS_SYSTEM_INTERNAL_BATTERY_PERCENTAGE] = static_cast<uint8_t>(100 - m_polls % 100);
        m_poll.previous = m_poll.record;
        m_poll.record = &record;
    }

  private:
    Poll &m_poll;
    bool m_moves;
    all_status_settings_t m_buffers[2];
    Cache m_cache;
    uint32_t m_polls = 0;
};

// What a worker makes of all records, without what some put around or between members. It begins with an empty cache.
std::string outcome(const Worker &worker)
{
    Poll poll = {};
    Cache cache;
    camera_status_init_bossCache(MODEL, cache);
    poll.cache = &cache;
    poll.previous = &records().back();
    std::string text;
    for (const all_status_settings_t &record : records()) {
        poll.record = &record;
        worker.run(poll);
        for (const uint32_t value : poll.values) {
            text += std::to_string(value) + ' ';
        }
        poll.previous = &record;
    }
    text += poll.stream.str();
    std::erase_if(text,
                  [](char character) { return std::string_view("{},\n").find(character) != std::string_view::npos; });
    return text;
}

bool does_the_same(const Worker &worker, const Worker &library)
{
    static std::map<const Worker *, bool> known;
    const auto [entry, is_new] = known.try_emplace(&worker);
    if (is_new) {
        entry->second = outcome(worker) == outcome(library);
    }
    return entry->second;
}

template <class Camera>
auto call_of(const Worker &worker, Poll &poll, Camera &camera)
{
    return [&poll, &camera, run = worker.run] {
        camera.next();
        if (run(poll) != 0) {
            poll.stream.seekp(0);
        }
        benchmark::ClobberMemory();
    };
}

void run(benchmark::State &state, const Worker *worker, const Worker *library, Regime regime)
{
    if (!does_the_same(*worker, *library)) {
        state.SkipWithError("it does not do what the library does");
        return;
    }
    Poll poll = {};
    if (regime == Regime::RANDOM) {
        RandomRecords records(poll);
        measure(state, call_of(*worker, poll, records));
    } else {
        OneCamera camera(poll, regime == Regime::MOVING);
        const auto call = call_of(*worker, poll, camera);
        regime == Regime::COLD ? measure_cold(state, call) : measure(state, call);
    }
}

} // namespace

bool add_workers(std::span<const Worker> workers)
{
    for (const Worker &worker : workers) {
        for (const auto &[regime, name] : regimes) {
            const std::string benchmark = std::string(worker.work) + '/' + worker.name + '/' + name;
            auto *added = benchmark::RegisterBenchmark(benchmark.c_str(), run, &worker, &workers.front(), regime);
            if (regime == Regime::COLD) {
                added->UseManualTime()->Iterations(1);
            }
        }
    }
    return true;
}

} // namespace bench
