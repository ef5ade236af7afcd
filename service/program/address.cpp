#include "address.h"

#include "text.h"
#include "usage.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <netdb.h>
#include <stdexcept>
#include <unistd.h>

namespace zvprogram {

namespace {

const sockaddr_in &four(const sockaddr_storage &address)
{
    return reinterpret_cast<const sockaddr_in &>(address);
}

const sockaddr_in6 &six(const sockaddr_storage &address)
{
    return reinterpret_cast<const sockaddr_in6 &>(address);
}

} // namespace

bool Address::is_loopback() const
{
    return socket.ss_family == AF_INET ? ntohl(four(socket).sin_addr.s_addr) >> IN_CLASSA_NSHIFT == IN_LOOPBACKNET
                                       : IN6_IS_ADDR_LOOPBACK(&six(socket).sin6_addr);
}

bool Address::is_any() const
{
    return socket.ss_family == AF_INET ? four(socket).sin_addr.s_addr == htonl(INADDR_ANY)
                                       : IN6_IS_ADDR_UNSPECIFIED(&six(socket).sin6_addr);
}

Address read_address(const std::string &option, const std::string &text)
{
    const size_t colon = text.rfind(':');
    std::string host = text.substr(0, colon);
    const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
    if (bracketed) {
        host = host.substr(1, host.size() - 2);
    }
    const std::string port = colon == std::string::npos ? "" : text.substr(colon + 1);
    unsigned number = 0;
    if (!read_number(port, number) || number > UINT16_MAX || host.empty() ||
        (!bracketed && host.find(':') != std::string::npos)) {
        throw WrongUsage(option + " takes ADDRESS:PORT, such as 127.0.0.1:8080 or [::1]:0, not \"" + text + "\"");
    }
    addrinfo hints = {};
    hints.ai_flags = AI_NUMERICSERV | AI_PASSIVE;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (const int wrong = getaddrinfo(host.c_str(), port.c_str(), &hints, &found); wrong != 0) {
        throw WrongUsage(option + " " + text + ": " + gai_strerror(wrong));
    }
    Address address;
    memcpy(&address.socket, found->ai_addr, found->ai_addrlen);
    address.size = found->ai_addrlen;
    freeaddrinfo(found);
    address.host = host_text(address.socket);
    if (host != address.host && !bracketed) {
        address.name = lower_case(host);
    }
    return address;
}

std::string host_text(const sockaddr_storage &address)
{
    char text[INET6_ADDRSTRLEN] = "";
    if (address.ss_family == AF_INET) {
        inet_ntop(AF_INET, &four(address).sin_addr, text, sizeof text);
        return text;
    }
    inet_ntop(AF_INET6, &six(address).sin6_addr, text, sizeof text);
    return std::string("[") + text + "]";
}

std::string port_text(const sockaddr_storage &address)
{
    return std::to_string(ntohs(address.ss_family == AF_INET ? four(address).sin_port : six(address).sin6_port));
}

sockaddr_storage own_address(int descriptor)
{
    sockaddr_storage address = {};
    socklen_t size = sizeof address;
    getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size);
    return address;
}

int listen_on(const Address &address)
{
    const int descriptor = socket(address.socket.ss_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor >= 0) {
        const int on = 1;
        setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        if (bind(descriptor, reinterpret_cast<const sockaddr *>(&address.socket), address.size) == 0 &&
            listen(descriptor, SOMAXCONN) == 0) {
            return descriptor;
        }
    }
    const std::string why = strerror(errno);
    if (descriptor >= 0) {
        close(descriptor);
    }
    throw std::runtime_error("cannot listen on " + address.host + ": " + why);
}

} // namespace zvprogram
