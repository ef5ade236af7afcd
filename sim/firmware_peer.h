// The relay and the firmware that it leads to: the remote API.
#pragma once

#include "camera.h"
#include "message.h"
#include "remote_commands.h"
#include "request.h"

namespace zv::sim {

// A command to the relay itself has a plain good answer; one that the firmware does not know is refused.
Answer answer_as_firmware(Camera &camera, const Request &request);

// Carries out one command of the remote API.
Answer run_remote_command(Camera &camera, RemoteCommand command, View payload);

} // namespace zv::sim
