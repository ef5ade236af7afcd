// What the system information service tells of the camera.
#pragma once

#include <cstdint>
#include <string>

namespace zv::sim {

// The firmware update's state, as the service holds it.
enum OtaState : uint8_t { OTA_IDLE = 0, OTA_DOWNLOADING = 6, OTA_DOWNLOADED = 7, OTA_FLASHING = 8 };

// Stores the identity of a camera of this model, and nothing going on. Returns an empty text, or what went wrong.
std::string store_identity(uint8_t model);

// The access point's name, which is also in the status record.
std::string ap_ssid(uint8_t model);

uint8_t ota_state();
void set_ota_state(uint8_t state);

} // namespace zv::sim
