// The files that are served as they are: the page, and the description of the API.
#pragma once

#include "reply.h"
#include "request.h"

namespace zvweb {

// The answer for the path of one of them.
Answer asset(const Request &request);

} // namespace zvweb
