// The remote API's commands that are more than one value.
#pragma once

#include "camera.h"
#include "message.h"
#include "remote_commands.h"
#include "request.h"

#include <cstdint>

namespace zv::sim {

struct RemoteAction {
    RemoteCommand command;
    uint8_t least; // bytes of payload; `run` gets no fewer
    Answer (*run)(Camera &camera, View payload);
};

// Null for a command that is none of these.
const RemoteAction *find_remote_action(RemoteCommand command);

} // namespace zv::sim
