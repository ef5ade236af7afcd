// Which options the simulated camera can have in its present mode: those that the filter rules leave.
#pragma once

#include "camera.h"

namespace zv::sim {

// Each setting whose present option the rules take away takes the first one that they leave, in menu order. A setting
// without any option left stays as it is, and so do the mode and the preset that brought it. Does nothing on a camera
// whose generation has no options.
void take_offered_options(Camera &camera);

} // namespace zv::sim
