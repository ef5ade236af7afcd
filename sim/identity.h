// What the system information service says of the camera.
#pragma once

#include <cstdint>
#include <string>

namespace zv::sim {

// Stores the identity of a camera of this model, and nothing going on. Returns an empty text, or what went wrong.
std::string store_identity(uint8_t model);

// The access point's name, which is also in the status record.
std::string ap_ssid(uint8_t model);

// The firmware update's state, an OtaState as the service holds it.
uint8_t ota_state();
void set_ota_state(uint8_t state);

} // namespace zv::sim
