// What each request does. All run in the server's thread and return at once; what waits for the camera is the Work that
// they return. `parameter` is the part of the path that a route leaves open.
#pragma once

#include "reply.h"
#include "request.h"
#include "service.h"

#include <string_view>

namespace zvweb {

using Handler = Reply (*)(Service &service, const Request &request, std::string_view parameter);

// ---- reads.cpp

Reply read_page(Service &service, const Request &request, std::string_view parameter); // and the other files
Reply read_camera(Service &service, const Request &request, std::string_view parameter);
Reply read_state(Service &service, const Request &request, std::string_view parameter);
Reply read_status(Service &service, const Request &request, std::string_view parameter);
Reply read_settings(Service &service, const Request &request, std::string_view parameter);
Reply read_setting(Service &service, const Request &request, std::string_view parameter);
Reply read_catalogue(Service &service, const Request &request, std::string_view parameter);
Reply read_available(Service &service, const Request &request, std::string_view parameter);
Reply read_events(Service &service, const Request &request, std::string_view parameter);
Reply read_metrics(Service &service, const Request &request, std::string_view parameter);

// ---- writes.cpp

Reply set_setting(Service &service, const Request &request, std::string_view parameter);
Reply start_capture(Service &service, const Request &request, std::string_view parameter);
Reply stop_capture(Service &service, const Request &request, std::string_view parameter);
Reply delete_last(Service &service, const Request &request, std::string_view parameter);
Reply delete_all(Service &service, const Request &request, std::string_view parameter);
Reply tag_media(Service &service, const Request &request, std::string_view parameter);

} // namespace zvweb
