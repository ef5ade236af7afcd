// The values of a record as numbers: the library's functions beside a walk over plain tables.
#include "poll.h"
#include "settings_values.h"
#include "status_values.h"

namespace {

using namespace bench;

int32_t status_library(Poll &poll)
{
    update_camera_status(&status_of(*poll.record), MODEL, poll.values);
    return 0;
}

int32_t status_table(Poll &poll)
{
    for (const zv::StatusField &row : zv::published_statuses()) {
        read_status(poll.record->bytes, row, [&](auto value) {
            if constexpr (std::is_arithmetic_v<decltype(value)>) {
                poll.values[row.id] = static_cast<uint32_t>(value);
            } else {
                poll.values[row.id] = 0;
            }
        });
    }
    return 0;
}

constexpr Worker status_workers[] = {
    {"update_camera_status", "library", status_library},
    {"update_camera_status", "table", status_table},
};

int32_t settings_library(Poll &poll)
{
    update_camera_settings(poll.record, MODEL, poll.values);
    return 0;
}

int32_t settings_table(Poll &poll)
{
    for (const SettingRow &row : settings_rows()) {
        poll.values[row.field.id] = read_setting(*poll.record, row);
    }
    return 0;
}

constexpr Worker settings_workers[] = {
    {"update_camera_settings", "library", settings_library},
    {"update_camera_settings", "table", settings_table},
};

const bool added = add_workers(status_workers) && add_workers(settings_workers);

} // namespace
