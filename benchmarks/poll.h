// What a client does with the record of a poll, and how the records of its polls follow each other.
#pragma once

#include "camera_settings.h"
#include "records.h"

#include <span>
#include <sstream>
#include <string>
#include <vector>

namespace bench {

// What a client has at hand after a poll; all but the records is its own, and kept from poll to poll.
struct Poll {
    const all_status_settings_t *record;
    const all_status_settings_t *previous; // of the poll before
    std::vector<std::string> *cache;       // the status texts that it saw last
    std::stringstream stream;
    std::vector<uint32_t> values = std::vector<uint32_t>(SETTINGS_ALL_FIELDS_COUNT);
};

// A piece of work, as the library does it or one of its peers.
struct Worker {
    const char *work;
    const char *name;
    int32_t (*run)(Poll &poll); // 0 when it has written nothing into the stream
};

// Registers "work/name/regime" for each worker and each of these regimes:
//
//     steady  one camera, whose record stays the same
//     moving  the same camera while it records: four of its numbers move between two polls
//     random  1000 unrelated records, which no branch predictor learns
//     cold    the steady camera; each call alone, after other work that has emptied the caches
//
// Nothing has changed against the cache but for what moves. The first worker is the library: all others must write and
// store what it does, or they are not measured.
bool add_workers(std::span<const Worker> workers);

} // namespace bench
