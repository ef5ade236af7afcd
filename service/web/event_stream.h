// The event stream of one connection.
#pragma once

#include "events.h"
#include "reply.h"

#include <microhttpd.h>

namespace zvweb {

// The response that streams the events to this connection; null without memory. The client leaves the log when the
// response goes.
MHD_Response *make_event_stream(Events &events, MHD_Connection *connection, const Stream &stream);

} // namespace zvweb
