// The control daemon: snapshots of the record, settings, resynchronisation.
#pragma once

#include "camera.h"
#include "request.h"

namespace zv::sim {

// A command that it does not know is answered with ZV_ERR_NOT_SUPPORTED.
Answer answer_as_daemon(Camera &camera, const Request &request);

} // namespace zv::sim
