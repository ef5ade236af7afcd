// What the program was started with.
#pragma once

#include <netinet/in.h>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <vector>

namespace zvweb {

struct Options {
    sockaddr_storage address = {}; // to listen on
    socklen_t address_size = 0;
    std::string host;         // the address as a URL and a Host header have it: "127.0.0.1", "[::1]"
    bool any_address = false; // it stands for all of the machine's

    std::vector<std::string> allowed_hosts; // lower case
    std::string token;                      // empty: none is asked for
    std::string certificate;                // PEM, and so is the key; empty without TLS
    std::string key;
    unsigned max_clients = 1024;

    bool tls() const { return !certificate.empty(); }
};

// Reads the command line. With a result the program ends with that exit code; what was wrong, or the help, was printed.
std::optional<int> read_options(int argc, char **argv, Options &options);

} // namespace zvweb
