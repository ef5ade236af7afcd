// Requests whose answers a client did not ask for.
#pragma once

#include "request.h"

namespace zv::sim {

// A request of the same client on the same link that is not this one, and whose answer is of another kind: on the
// daemon link another record. It changes nothing.
Request foreign_request(const Request &request);

} // namespace zv::sim
