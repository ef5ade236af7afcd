#include "guard.h"

#include "host.h"

#include <address.h>
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <text.h>

namespace zvweb {

namespace {

constexpr std::string_view HTTP = "http://";
constexpr std::string_view HTTPS = "https://";
constexpr std::string_view HTTP_PORT = "80";
constexpr std::string_view HTTPS_PORT = "443";
constexpr std::string_view BEARER = "bearer ";

std::string reached_host(const Request &request)
{
    const int descriptor = MHD_get_connection_info(request.connection(), MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
    return zvprogram::host_text(zvprogram::own_address(descriptor));
}

bool is_own_host(const Options &options, const Request &request, const std::string &host)
{
    return host == options.address.host || host == "localhost" ||
           std::ranges::find(options.allowed_hosts, host) != options.allowed_hosts.end() ||
           (options.address.is_any() && host == reached_host(request));
}

std::string_view without(std::string_view port, std::string_view usual)
{
    return port == usual ? std::string_view() : port;
}

// Whether the origin is a page that we serve: of one of our hosts, on the port that this request came to.
bool is_own_origin(const Options &options, const Request &request, std::string_view origin, const HostAndPort &host)
{
    const bool secure = origin.substr(0, HTTPS.size()) == HTTPS;
    if (!secure && origin.substr(0, HTTP.size()) != HTTP) {
        return false;
    }
    const HostAndPort page = split_host(origin.substr(secure ? HTTPS.size() : HTTP.size()));
    return is_own_host(options, request, page.host) && without(page.port, secure ? HTTPS_PORT : HTTP_PORT) ==
                                                           without(host.port, options.tls() ? HTTPS_PORT : HTTP_PORT);
}

// Takes as long for every text of a length.
bool same_secret(std::string_view a, std::string_view b)
{
    unsigned char difference = a.size() != b.size();
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        difference |= static_cast<unsigned char>(a[i] ^ b[i]);
    }
    return difference == 0;
}

bool has_token(const Request &request, std::string_view token)
{
    if (const auto authorization = request.header(MHD_HTTP_HEADER_AUTHORIZATION)) {
        return zvprogram::lower_case(authorization->substr(0, BEARER.size())) == BEARER &&
               same_secret(zvprogram::trim(authorization->substr(BEARER.size())), token);
    }
    const auto cookie = request.cookie(TOKEN_COOKIE);
    return cookie && same_secret(*cookie, token);
}

// What a body is announced to have, in bytes; 0 where it is not.
uint64_t announced_size(const Request &request)
{
    uint64_t size = 0;
    const std::string_view text = request.header(MHD_HTTP_HEADER_CONTENT_LENGTH).value_or("");
    std::from_chars(text.data(), text.data() + text.size(), size);
    return size;
}

} // namespace

std::optional<Answer> refuse_form(const Request &request)
{
    const int lengths = request.headers(MHD_HTTP_HEADER_CONTENT_LENGTH);
    if (lengths + request.headers(MHD_HTTP_HEADER_TRANSFER_ENCODING) > 1) {
        return last(problem(MHD_HTTP_BAD_REQUEST, "the request says more than once how long it is"));
    }
    if (request.headers(MHD_HTTP_HEADER_HOST) > 1) {
        return last(problem(MHD_HTTP_BAD_REQUEST, "the request has more than one Host"));
    }
    const auto encoding = request.header(MHD_HTTP_HEADER_TRANSFER_ENCODING);
    if (encoding && zvprogram::lower_case(*encoding) != "chunked") {
        return last(problem(MHD_HTTP_NOT_IMPLEMENTED, "the only transfer encoding that is understood is chunked"));
    }
    const bool asks_first = request.header(MHD_HTTP_HEADER_EXPECT).has_value();
    if (announced_size(request) > (asks_first ? BODY_MAX : BODY_PATIENCE)) {
        return last(body_too_large());
    }
    return std::nullopt;
}

std::optional<Answer> refuse(const Options &options, const Request &request, bool is_public)
{
    const HostAndPort host = split_host(request.header(MHD_HTTP_HEADER_HOST).value_or(""));
    if (!is_own_host(options, request, host.host)) {
        return problem(MHD_HTTP_FORBIDDEN, "\"" + host.host + "\" is no name of this server; --allow-host adds one");
    }
    const auto origin = request.header(MHD_HTTP_HEADER_ORIGIN);
    if (origin && request.method() != MHD_HTTP_METHOD_GET && !is_own_origin(options, request, *origin, host)) {
        return problem(MHD_HTTP_FORBIDDEN, "pages of " + std::string(*origin) + " may change nothing here");
    }
    if (!is_public && !options.token.empty() && !has_token(request, options.token)) {
        Answer answer = problem(MHD_HTTP_UNAUTHORIZED, "the token of this server is asked for");
        answer.headers.emplace_back(MHD_HTTP_HEADER_WWW_AUTHENTICATE, "Bearer");
        return answer;
    }
    return std::nullopt;
}

} // namespace zvweb
