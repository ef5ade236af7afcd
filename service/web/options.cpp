#include "options.h"

#include "text.h"

#include <CLI/CLI.hpp>

#include <arpa/inet.h>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <netdb.h>
#include <stdexcept>
#include <zvservice/result.h>

namespace zvweb {

namespace {

constexpr char DEFAULT_LISTEN[] = "127.0.0.1:8080";
constexpr unsigned CLIENTS_MAX = 65536;

// Wrong usage: what is wrong.
struct Wrong : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string read_file(const std::string &name)
{
    std::ifstream file(name, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file || text.empty()) {
        throw Wrong(name + ": " + (file ? "the file is empty" : strerror(errno)));
    }
    return text;
}

// What a bearer's token and a cookie can both hold.
std::string read_token(const std::string &name)
{
    const std::string text = read_file(name);
    std::string token(trim(text));
    constexpr std::string_view PUNCTUATION = "-._~+/=";
    for (const char c : token) {
        if (!isalnum(static_cast<unsigned char>(c)) && PUNCTUATION.find(c) == std::string_view::npos) {
            throw Wrong(name + ": a token is one line of letters, digits and -._~+/=");
        }
    }
    if (token.empty()) {
        throw Wrong(name + ": there is no token in it");
    }
    return token;
}

bool is_loopback(const sockaddr_storage &address)
{
    if (address.ss_family == AF_INET) {
        const auto &four = reinterpret_cast<const sockaddr_in &>(address);
        return ntohl(four.sin_addr.s_addr) >> IN_CLASSA_NSHIFT == IN_LOOPBACKNET;
    }
    return IN6_IS_ADDR_LOOPBACK(&reinterpret_cast<const sockaddr_in6 &>(address).sin6_addr);
}

bool is_any(const sockaddr_storage &address)
{
    if (address.ss_family == AF_INET) {
        return reinterpret_cast<const sockaddr_in &>(address).sin_addr.s_addr == htonl(INADDR_ANY);
    }
    return IN6_IS_ADDR_UNSPECIFIED(&reinterpret_cast<const sockaddr_in6 &>(address).sin6_addr);
}

// "ADDRESS:PORT", an IPv6 address in brackets.
void read_listen(const std::string &text, Options &options)
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
        throw Wrong("--listen takes ADDRESS:PORT, such as 127.0.0.1:8080 or [::1]:0, not \"" + text + "\"");
    }
    addrinfo hints = {};
    hints.ai_flags = AI_NUMERICSERV | AI_PASSIVE;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (const int wrong = getaddrinfo(host.c_str(), port.c_str(), &hints, &found); wrong != 0) {
        throw Wrong("--listen " + text + ": " + gai_strerror(wrong));
    }
    memcpy(&options.address, found->ai_addr, found->ai_addrlen);
    options.address_size = found->ai_addrlen;
    freeaddrinfo(found);
    options.host = host_text(options.address);
    options.any_address = is_any(options.address);
    if (host != options.host && !bracketed) {
        options.allowed_hosts.push_back(lower_case(host)); // a name
    }
}

void check_access(const Options &options, bool no_auth)
{
    if (!is_loopback(options.address) && options.token.empty() && !no_auth) {
        throw Wrong(options.host + " is not loopback: give a --token-file, or say --no-auth to let everybody in");
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
    try {
        app.parse(argc, argv);
        for (std::string &host : options.allowed_hosts) {
            host = lower_case(host);
        }
        read_listen(listen, options);
        if (!token_file.empty()) {
            options.token = read_token(token_file);
        }
        if (certificate.empty() != key.empty()) {
            throw Wrong("--tls-cert and --tls-key go together");
        }
        if (!certificate.empty()) {
            options.certificate = read_file(certificate);
            options.key = read_file(key);
        }
        check_access(options, no_auth);
    } catch (const CLI::Success &asked) {
        return app.exit(asked);
    } catch (const std::exception &wrong) { // of the parser, or our own
        fprintf(stderr, "zvweb: %s\n", wrong.what());
        return zvservice::EXIT_WRONG_USAGE;
    }
    return std::nullopt;
}

} // namespace zvweb
