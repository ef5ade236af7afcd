// The relay and the firmware behind it: the remote API.
#pragma once

#include "camera.h"
#include "request.h"

namespace zv::sim {

// A command to the relay itself has a plain good answer; one that the firmware does not know is refused.
Answer answer_as_firmware(Camera &camera, const Request &request);

// Carries out one command of the remote API.
Answer run_remote_command(Camera &camera, uint8_t group, uint8_t action, View payload);

} // namespace zv::sim
