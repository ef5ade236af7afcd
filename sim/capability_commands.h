// The capability service's commands.
#pragma once

#include "camera.h"
#include "message.h"
#include "request.h"

namespace zv::sim {

// The payload is the key of the setting to list. What depends on resolution or frame rate is listed for the present
// ones.
Answer present_list(Camera &camera, View payload);

// The payload is the situation: lens, user interface mode, power profile, capture mode, number of pairs, pairs of a
// key and a value, 0, and the key of the setting to list.
Answer filtered_list(Camera &camera, View payload);

// Whether a horizon field of view can be had: the payload is resolution, frame rate, field of view, the answer 1 or 0.
// There is none without stabilisation.
Answer horizon_option(Camera &camera, View payload);

} // namespace zv::sim
