// What the program was started with.
#pragma once

#include <address.h>

#include <optional>
#include <string>
#include <vector>

namespace zvweb {

struct Options {
    zvprogram::Address address;             // to listen on
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
