// Settings by their number, as the daemon is asked to change them.
#pragma once

#include "camera.h"

#include <cstdint>

namespace zv::sim {

// Sets the setting to an option's value, as the remote command for it would. Returns the daemon's return code:
// ZV_ERR_INVALID_PARAM for a setting that a camera of this model does not have or a value that cannot be.
int32_t write_setting(Camera &camera, uint32_t setting, uint32_t value);

} // namespace zv::sim
