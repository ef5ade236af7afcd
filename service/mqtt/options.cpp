#include "options.h"

#include "topics.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <cstdio>
#include <text.h>
#include <usage.h>
#include <zvservice/links.h>
#include <zvservice/result.h>

namespace zvmqtt {

using zvprogram::WrongUsage;

namespace {

constexpr int PORT = 1883;
constexpr int TLS_PORT = 8883;
constexpr unsigned INTERVAL_MAX = 3600000; // an hour, in milliseconds

// "HOST", "HOST:PORT", "[::1]" or "[::1]:PORT".
void read_broker(const std::string &text, Options &options)
{
    const size_t bracket = text.rfind(']');
    const size_t colon = text.find(':', bracket != std::string::npos ? bracket : 0);
    options.host = text.substr(0, colon);
    if (bracket != std::string::npos && options.host.size() > 2 && options.host.front() == '[' &&
        options.host.back() == ']') {
        options.host = options.host.substr(1, options.host.size() - 2);
    }
    options.port = options.cafile.empty() ? PORT : TLS_PORT;
    unsigned port = 1;
    if (options.host.empty() || options.host.find_first_of("[] ") != std::string::npos ||
        (colon != std::string::npos &&
         (!zvprogram::read_number(text.substr(colon + 1), port) || port == 0 || port > UINT16_MAX))) {
        throw WrongUsage("--broker takes HOST or HOST:PORT, such as broker.example:1883 or [::1]:1883, not \"" + text +
                         "\"");
    }
    if (colon != std::string::npos) {
        options.port = static_cast<int>(port);
    }
}

// A file's only line.
std::string read_password(const std::string &name)
{
    std::string password = zvprogram::read_file(name);
    password.erase(password.find_last_not_of("\r\n") + 1);
    if (password.empty() || password.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos) {
        throw WrongUsage(name + ": a password is one line");
    }
    return password;
}

void check_topic(const char *what, const std::string &text)
{
    if (const std::string fault = topic_fault(text); !fault.empty()) {
        throw WrongUsage(std::string(what) + " \"" + text + "\" " + fault);
    }
}

void check_files(const Options &options)
{
    if (options.certificate.empty() != options.key.empty()) {
        throw WrongUsage("--cert and --key go together");
    }
    if (!options.certificate.empty() && options.cafile.empty()) {
        throw WrongUsage("--cert needs --cafile, which the broker is known by");
    }
    for (const std::string &file : {options.cafile, options.certificate, options.key}) {
        if (!file.empty()) {
            zvprogram::read_file(file);
        }
    }
}

} // namespace

std::optional<int> read_options(int argc, char **argv, Options &options)
{
    CLI::App app("Joins a camera to an MQTT broker: its state, its changes, and orders to it. It ends with SIGTERM or "
                 "SIGINT.",
                 "zvmqtt");
    std::string broker;
    std::string password_file;
    std::string metrics;
    unsigned interval = 0;
    int protocol = 5;
    app.set_version_flag("--version", "zvmqtt " ZVMQTT_VERSION);
    app.add_option("--broker", broker, "where the broker is; port 1883, or 8883 with --cafile, unless given")
        ->type_name("HOST[:PORT]")
        ->required();
    app.add_option("--id", options.id, "the camera's name in topics; its serial number unless given")->type_name("ID");
    app.add_option("--prefix", options.prefix, "what the topics lie below: PREFIX/ID/status and so on")
        ->type_name("PREFIX")
        ->capture_default_str();
    auto *username = app.add_option("--username", options.username, "whom to be to the broker")->type_name("NAME");
    app.add_option("--password-file", password_file, "holds the password, in one line")
        ->type_name("FILE")
        ->needs(username);
    app.add_option("--cafile", options.cafile,
                   "speak TLS to a broker whose certificate these authorities signed, in PEM")
        ->type_name("FILE");
    app.add_option("--cert", options.certificate, "the certificate to show to the broker, in PEM")->type_name("FILE");
    app.add_option("--key", options.key, "its key, in PEM")->type_name("FILE");
    app.add_option("--protocol", protocol, "5 for MQTT 5, or 3 for MQTT 3.1.1")
        ->type_name("NUMBER")
        ->check(CLI::IsMember({3, 5}))
        ->capture_default_str();
    app.add_option("--discovery", options.discovery, "the prefix of home automation's discovery, or off")
        ->type_name("PREFIX")
        ->capture_default_str();
    app.add_option("--interval", interval, "between two polls, in milliseconds; what the camera asks for unless given")
        ->type_name("MS")
        ->check(CLI::Range(1U, INTERVAL_MAX));
    app.add_option("--metrics", metrics, "where to serve metrics over HTTP")->type_name("ADDRESS:PORT");
    const std::optional<int> over = zvprogram::read_command_line(app, argc, argv, [&] {
        read_broker(broker, options);
        check_topic("the prefix", options.prefix);
        options.version_3 = protocol == 3;
        options.interval = std::chrono::milliseconds(interval);
        if (options.discovery == "off") {
            options.discovery.clear();
        } else {
            check_topic("the prefix of discovery", options.discovery);
        }
        if (app.count("--username") > 0 && options.username.empty()) {
            throw WrongUsage("--username is empty");
        }
        if (!password_file.empty()) {
            options.password = read_password(password_file);
        }
        check_files(options);
        if (!metrics.empty()) {
            options.metrics = zvprogram::read_address("--metrics", metrics);
        }
        if (app.count("--id") == 0) {
            options.id = zvservice::camera_identity().serial_number;
        }
        if (app.count("--id") > 0 || !options.id.empty()) {
            check_topic("the id", options.id);
        }
    });
    if (!over && options.id.empty()) {
        fprintf(stderr, "zvmqtt: the camera has no serial number yet: give a name for it with --id\n");
        return zvservice::EXIT_NOT_THERE;
    }
    return over;
}

} // namespace zvmqtt
