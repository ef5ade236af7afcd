// Where a scraper reads the bridge's metrics, over HTTP.
#pragma once

#include <address.h>
#include <cstddef>
#include <functional>
#include <list>
#include <microhttpd.h>
#include <string>

namespace zvmqtt {

class MetricsServer {
  public:
    // Answers GET and HEAD of /metrics with what `text` gives, asked in the server's one thread; an exception of it is
    // a 500. Everything else is refused. Throws std::runtime_error with what is wrong.
    MetricsServer(const zvprogram::Address &address, std::function<std::string()> text);

    // At once, whoever is connected; waits for a `text` that is being asked.
    ~MetricsServer();
    MetricsServer(const MetricsServer &) = delete;
    MetricsServer &operator=(const MetricsServer &) = delete;

    // "http://127.0.0.1:9100/metrics"
    const std::string &url() const { return m_url; }

  private:
    // One more takes the place of the one that has been there for longest: scrapers are few, and an answer takes no
    // time.
    static constexpr size_t CLIENTS_MAX = 16;

    // What the library of the protocol calls, in its thread, with the server as its first argument.
    static MHD_Result on_request(void *server, MHD_Connection *connection, const char *path, const char *method,
                                 const char *version, const char *data, size_t *size, void **context);
    static void on_connection(void *server, MHD_Connection *connection, void **context,
                              MHD_ConnectionNotificationCode code);

    std::function<std::string()> m_text;
    std::string m_url;
    std::list<int> m_clients; // their sockets, in order of arrival; the thread's own
    MHD_Daemon *m_daemon = nullptr;
};

} // namespace zvmqtt
