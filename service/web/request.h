// A request as it came in, checked by nobody yet.
#pragma once

#include <chrono>
#include <cstddef>
#include <microhttpd.h>
#include <optional>
#include <string>
#include <string_view>

namespace zvweb {

// The longest body that is read, in bytes.
inline constexpr size_t BODY_MAX = 65536;

// One that is too long is read up to here before it is refused, for its sender listens only when all is sent.
inline constexpr size_t BODY_PATIENCE = 1048576;

class Request {
  public:
    using Clock = std::chrono::steady_clock;

    // Decoded `path`, without the query.
    Request(MHD_Connection *connection, std::string_view method, std::string_view path);

    MHD_Connection *connection() const { return m_connection; }

    // GET also for HEAD, which has the same answer without its body.
    std::string_view method() const { return m_method; }
    bool is_head() const { return m_is_head; }

    std::string_view path() const { return m_path; }
    Clock::time_point arrival() const { return m_arrival; }

    // The first of that name, in any case of letters.
    std::optional<std::string_view> header(const char *name) const;
    std::optional<std::string_view> cookie(const char *name) const;

    // How many headers have that name.
    int headers(std::string_view name) const;

    // What of the body came, up to BODY_MAX bytes, and how many bytes it was in all.
    const std::string &body() const { return m_body; }
    size_t body_size() const { return m_body_size; }
    void add_to_body(std::string_view part);

  private:
    std::optional<std::string_view> value(MHD_ValueKind kind, const char *name) const;

    MHD_Connection *m_connection;
    bool m_is_head;
    std::string m_method;
    std::string m_path;
    Clock::time_point m_arrival = Clock::now();
    std::string m_body;
    size_t m_body_size = 0;
};

} // namespace zvweb
