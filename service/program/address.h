// Addresses that a program listens on.
#pragma once

#include <netinet/in.h>
#include <string>
#include <sys/socket.h>

namespace zvprogram {

struct Address {
    sockaddr_storage socket = {};
    socklen_t size = 0;
    std::string host; // as a URL and a Host header have it: "127.0.0.1", "[::1]"
    std::string name; // that it was given as in place of numbers, in lower case; else empty

    bool is_loopback() const;
    bool is_any() const; // stands for all of the machine's
};

// "ADDRESS:PORT", an IPv6 address in brackets; port 0 takes a free one. A name is looked up, which may take its time.
// Throws WrongUsage, which names `option`.
Address read_address(const std::string &option, const std::string &text);

// An address as a URL has it.
std::string host_text(const sockaddr_storage &address);

// A socket's own port: where it listens, or where its client reached us.
std::string port_text(const sockaddr_storage &address);
sockaddr_storage own_address(int descriptor);

// A socket that listens, and does not block. Throws std::runtime_error with what is wrong.
int listen_on(const Address &address);

} // namespace zvprogram
