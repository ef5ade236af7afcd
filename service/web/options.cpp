#include "options.h"

#include <CLI/CLI.hpp>

#include <cctype>
#include <string_view>
#include <text.h>
#include <usage.h>

namespace zvweb {

using zvprogram::WrongUsage;

namespace {

constexpr char DEFAULT_LISTEN[] = "127.0.0.1:8080";
constexpr unsigned CLIENTS_MAX = 65536;

// What a bearer's token and a cookie can both hold.
std::string read_token(const std::string &name)
{
    const std::string text = zvprogram::read_file(name);
    std::string token(zvprogram::trim(text));
    constexpr std::string_view PUNCTUATION = "-._~+/=";
    for (const char c : token) {
        if (!isalnum(static_cast<unsigned char>(c)) && PUNCTUATION.find(c) == std::string_view::npos) {
            throw WrongUsage(name + ": a token is one line of letters, digits and -._~+/=");
        }
    }
    if (token.empty()) {
        throw WrongUsage(name + ": there is no token in it");
    }
    return token;
}

void check_access(const Options &options, bool no_auth)
{
    if (!options.address.is_loopback() && options.token.empty() && !no_auth) {
        throw WrongUsage(options.address.host +
                         " is not loopback: give a --token-file, or say --no-auth to let everybody in");
    }
}

} // namespace

std::optional<int> read_options(int argc, char **argv, Options &options)
{
    CLI::App app("Serves a camera over HTTP: a live page, and an API. It ends with SIGTERM or SIGINT.", "zvweb");
    std::string listen = DEFAULT_LISTEN;
    std::string token_file;
    std::string certificate;
    std::string key;
    bool no_auth = false;
    app.set_version_flag("--version", "zvweb " ZVWEB_VERSION);
    app.add_option("--listen", listen, "where to serve; port 0 takes a free one")
        ->type_name("ADDRESS:PORT")
        ->capture_default_str();
    app.add_option("--token-file", token_file,
                   "ask every request but the page's for the token in FILE: as a bearer's, or in the page's form")
        ->type_name("FILE");
    app.add_flag("--no-auth", no_auth, "serve an address that is not loopback without a token");
    auto *certificate_option =
        app.add_option("--tls-cert", certificate, "serve HTTPS, with this certificate and its chain, in PEM")
            ->type_name("FILE");
    app.add_option("--tls-key", key, "its key, in PEM")->type_name("FILE")->needs(certificate_option);
    app.add_option("--allow-host", options.allowed_hosts, "a name that the page is reached by, besides the address")
        ->type_name("NAME");
    app.add_option("--max-clients", options.max_clients, "connections at once; one more gets 503")
        ->type_name("NUMBER")
        ->check(CLI::Range(1U, CLIENTS_MAX))
        ->capture_default_str();
    return zvprogram::read_command_line(app, argc, argv, [&] {
        for (std::string &host : options.allowed_hosts) {
            host = zvprogram::lower_case(host);
        }
        options.address = zvprogram::read_address("--listen", listen);
        if (!options.address.name.empty()) {
            options.allowed_hosts.push_back(options.address.name);
        }
        if (!token_file.empty()) {
            options.token = read_token(token_file);
        }
        if (certificate.empty() != key.empty()) {
            throw WrongUsage("--tls-cert and --tls-key go together");
        }
        if (!certificate.empty()) {
            options.certificate = zvprogram::read_file(certificate);
            options.key = zvprogram::read_file(key);
        }
        check_access(options, no_auth);
    });
}

} // namespace zvweb
