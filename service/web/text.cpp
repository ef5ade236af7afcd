#include "text.h"

#include <algorithm>
#include <arpa/inet.h>
#include <charconv>
#include <netinet/in.h>

namespace zvweb {

std::string lower_case(std::string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

std::string_view trim(std::string_view text)
{
    constexpr std::string_view BLANKS = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

bool read_number(std::string_view text, unsigned &number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

std::string host_text(const sockaddr_storage &address)
{
    char text[INET6_ADDRSTRLEN] = "";
    if (address.ss_family == AF_INET) {
        inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in &>(address).sin_addr, text, sizeof text);
        return text;
    }
    inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6 &>(address).sin6_addr, text, sizeof text);
    return std::string("[") + text + "]";
}

HostAndPort split_host(std::string_view text)
{
    const size_t bracket = text.find(']');
    const size_t colon = text.find(':', bracket != std::string_view::npos ? bracket : 0);
    return {lower_case(text.substr(0, colon)),
            colon != std::string_view::npos ? std::string(text.substr(colon + 1)) : std::string()};
}

HostAndPort own_address(int descriptor)
{
    sockaddr_storage address = {};
    socklen_t size = sizeof address;
    getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size);
    const in_port_t port = address.ss_family == AF_INET ? reinterpret_cast<const sockaddr_in &>(address).sin_port
                                                        : reinterpret_cast<const sockaddr_in6 &>(address).sin6_port;
    return {host_text(address), std::to_string(ntohs(port))};
}

} // namespace zvweb
