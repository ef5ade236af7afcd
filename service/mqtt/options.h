// What the program was started with.
#pragma once

#include <address.h>

#include <chrono>
#include <optional>
#include <string>

namespace zvmqtt {

struct Options {
    std::string host; // the broker's, an IPv6 address without brackets
    int port = 0;

    std::string id; // of the camera; never empty
    std::string prefix = "zv";

    std::string username; // empty: none is told, and no password
    std::string password;

    std::string cafile; // names of files in PEM; without it no TLS
    std::string certificate;
    std::string key;

    bool version_3 = false;                    // MQTT 3.1.1 in place of 5
    std::string discovery = "homeassistant";   // the prefix of discovery, empty for none
    std::chrono::milliseconds interval{0};     // between two polls; 0 for what the camera asks for
    std::optional<zvprogram::Address> metrics; // where to serve them
};

// Reads the command line, and the files that it names. With a result the program ends with that exit code; what was
// wrong, or the help, was printed.
std::optional<int> read_options(int argc, char **argv, Options &options);

} // namespace zvmqtt
