// Hosts and ports, as HTTP writes them.
#pragma once

#include <string>
#include <string_view>

namespace zvweb {

// Of "NAME:PORT" or "[::1]:PORT", in lower case; the port as text, empty where there is none.
struct HostAndPort {
    std::string host;
    std::string port;
};
HostAndPort split_host(std::string_view text);

} // namespace zvweb
