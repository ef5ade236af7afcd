// What has changed since the last poll: the status against the client's cache, the settings against the record before.
#include "poll.h"
#include "table_writer.h"

namespace {

using namespace bench;

int32_t status_library(Poll &poll)
{
    return camera_status_serialize_status_changes_to_json(poll.stream, &status_of(*poll.record), nullptr, MODEL,
                                                          *poll.cache);
}

template <class Number>
int32_t status_table(Poll &poll)
{
    return table_writer<Number>().write_changes(poll.stream, *poll.record, *poll.cache);
}

constexpr Worker status_workers[] = {
    {"status_changes", "library", status_library},
    {"status_changes", "to_chars_table", status_table<ToChars>},
    {"status_changes", "digit_table", status_table<DigitTable>},
};

int32_t settings_library(Poll &poll)
{
    return camera_status_serialize_settings_changes_to_json(poll.stream, poll.record, poll.previous, MODEL);
}

template <class Number>
int32_t settings_table(Poll &poll)
{
    return table_writer<Number>().write_settings_changes(poll.stream, *poll.record, *poll.previous);
}

constexpr Worker settings_workers[] = {
    {"settings_changes", "library", settings_library},
    {"settings_changes", "to_chars_table", settings_table<ToChars>},
};

const bool added = add_workers(status_workers) && add_workers(settings_workers);

} // namespace
