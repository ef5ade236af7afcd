// Snapshot records as a camera in use sends them, every one different: a benchmark that renders one record over and
// over measures a branch predictor that has learnt it.
#pragma once

#include "camera_status.h"

#include <vector>

namespace bench {

inline constexpr uint32_t MODEL = 58; // sable_knoll
inline constexpr size_t RECORD_COUNT = 1000;

// RECORD_COUNT records, the same in every run. None holds a value that the library would log.
const std::vector<all_status_settings_t> &records();

inline const appc_system_all_status &status_of(const all_status_settings_t &record)
{
    return *reinterpret_cast<const appc_system_all_status *>(record.bytes + ALL_STATUS_OFFSET);
}

inline const appc_setup_all_settings &settings_of(const all_status_settings_t &record)
{
    return *reinterpret_cast<const appc_setup_all_settings *>(record.bytes + ALL_SETTINGS_OFFSET);
}

inline const zvcontrol_system_settings &system_settings_of(const all_status_settings_t &record)
{
    return *reinterpret_cast<const zvcontrol_system_settings *>(record.bytes + ALL_SYSTEM_SETTINGS_OFFSET);
}

} // namespace bench
