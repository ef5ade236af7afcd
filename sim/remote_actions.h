// The remote API's commands that are more than one value.
#pragma once

#include "camera.h"
#include "request.h"

namespace zv::sim {

// The acknowledge byte of a command that the firmware does not know, or whose payload it cannot read.
inline constexpr int32_t NAK = 1;

// The firmware's own errors: the command was understood and cannot be carried out.
enum FirmwareError : uint8_t {
    FIRMWARE_BUSY = 1,      // a capture is going on, or none can begin
    FIRMWARE_NO_FILE = 2,   // no such file on the card
    FIRMWARE_BAD_VALUE = 3, // no such mode, preset, ...
};

Answer failed(FirmwareError error);

struct RemoteAction {
    uint8_t group;
    uint8_t action;
    uint8_t least; // bytes of payload; `run` gets no fewer
    Answer (*run)(Camera &camera, View payload);
};

// Null for a command that is none of these.
const RemoteAction *find_remote_action(uint8_t group, uint8_t action);

} // namespace zv::sim
