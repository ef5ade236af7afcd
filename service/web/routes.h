// Which request is whose.
#pragma once

#include "handlers.h"

#include <string>
#include <string_view>

namespace zvweb {

struct Route {
    std::string_view path; // one that ends with "*" leaves the rest of the path open
    const char *method;
    Handler handler;
    bool is_public = false; // needs no token
};

// What a request's path and method lead to.
struct Match {
    const Route *route = nullptr; // null where there is none
    std::string_view parameter;   // the rest of the path
    std::string allowed;          // the methods of the path, as an Allow header has them; empty for an unknown path
};

Match find_route(std::string_view method, std::string_view path);

} // namespace zvweb
