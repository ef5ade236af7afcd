// What several files do with texts of HTTP.
#pragma once

#include <string>
#include <string_view>
#include <sys/socket.h>

namespace zvweb {

std::string lower_case(std::string_view text);
std::string_view trim(std::string_view text);              // of blanks and line feeds at both ends
bool read_number(std::string_view text, unsigned &number); // digits alone

// An address as a URL has it, an IPv6 address in brackets.
std::string host_text(const sockaddr_storage &address);

// Of "NAME:PORT" or "[::1]:PORT", in lower case; the port as text, empty where there is none.
struct HostAndPort {
    std::string host;
    std::string port;
};
HostAndPort split_host(std::string_view text);

// A socket's own address, so: where it listens, or where its client reached us.
HostAndPort own_address(int descriptor);

} // namespace zvweb
