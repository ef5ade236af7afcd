// The firmware's values of the settings, out of the records. Internal to the library.
#pragma once

#include "camera_settings.h"

namespace zv {

// Where a setting is read from: the two records' bytes, null where the caller has none, and the camera.
struct SettingsSource {
    const uint8_t *settings;
    const uint8_t *status;
    uint32_t model;
};

// The firmware's value of one setting. A missing record gives 0, after a message on standard error; a row that reaches
// past the record reads as 0.
int32_t field_value(const settings_field_t &field, const SettingsSource &source);

} // namespace zv

extern "C" int32_t get_field_value(const appc_setup_all_settings *settings, const settings_field_t *field,
                                   uint32_t model, const appc_system_all_status *status,
                                   const zvcontrol_system_settings *system);
