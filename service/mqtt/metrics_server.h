// Where a scraper reads the bridge's metrics, over HTTP.
#pragma once

#include <address.h>
#include <functional>
#include <string>

struct MHD_Daemon;

namespace zvmqtt {

class MetricsServer {
  public:
    // Answers GET /metrics with what `text` gives, asked in a thread of the server; everything else is refused. Throws
    // std::runtime_error with what is wrong.
    MetricsServer(const zvprogram::Address &address, std::function<std::string()> text);
    ~MetricsServer();
    MetricsServer(const MetricsServer &) = delete;
    MetricsServer &operator=(const MetricsServer &) = delete;

    // "http://127.0.0.1:9100/metrics"
    std::string url() const;

  private:
    std::function<std::string()> m_text;
    std::string m_url;
    MHD_Daemon *m_daemon = nullptr;
};

} // namespace zvmqtt
