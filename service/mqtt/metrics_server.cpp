#include "metrics_server.h"

#include <cstddef>
#include <cstring>
#include <exception>
#include <microhttpd.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <zvservice/statistics.h>

namespace zvmqtt {

namespace {

constexpr char PATH[] = "/metrics";
constexpr char METHODS[] = "GET, HEAD";

// For a connection's headers and its answer's, in bytes.
constexpr size_t CONNECTION_MEMORY = 4096;

// In seconds, of a client that neither sends nor takes anything.
constexpr unsigned PATIENCE = 10;

// The connection ends with its answer: a scraper comes back after a while that is longer than a client may be silent.
MHD_Result send(MHD_Connection *connection, unsigned status, std::string body = {}, const char *header = nullptr,
                const char *value = nullptr)
{
    MHD_Response *response = MHD_create_response_from_buffer(body.size(), body.data(), MHD_RESPMEM_MUST_COPY);
    if (response == nullptr) {
        return MHD_NO;
    }
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
    MHD_add_response_header(response, MHD_HTTP_HEADER_CACHE_CONTROL, "no-store");
    MHD_add_response_header(response, "X-Content-Type-Options", "nosniff");
    if (header != nullptr) {
        MHD_add_response_header(response, header, value);
    }
    const MHD_Result queued = MHD_queue_response(connection, status, response);
    MHD_destroy_response(response);
    return queued;
}

} // namespace

MetricsServer::MetricsServer(const zvprogram::Address &address, std::function<std::string()> text)
    : m_text(std::move(text))
{
    const int listener = zvprogram::listen_on(address);
    m_url = "http://" + address.host + ":" + zvprogram::port_text(zvprogram::own_address(listener)) + PATH;
    m_daemon = MHD_start_daemon(MHD_USE_EPOLL_INTERNAL_THREAD | MHD_USE_ITC, 0, nullptr, nullptr, &on_request, this,
                                MHD_OPTION_LISTEN_SOCKET, listener,                                  //
                                MHD_OPTION_CONNECTION_LIMIT, static_cast<unsigned>(CLIENTS_MAX + 1), //
                                MHD_OPTION_CONNECTION_MEMORY_LIMIT, CONNECTION_MEMORY,               //
                                MHD_OPTION_CONNECTION_TIMEOUT, PATIENCE,                             //
                                MHD_OPTION_STRICT_FOR_CLIENT, 1,                                     //
                                MHD_OPTION_NOTIFY_CONNECTION, &on_connection, this,                  //
                                MHD_OPTION_END);
    if (m_daemon == nullptr) {
        close(listener);
        throw std::runtime_error("cannot serve metrics: no memory, threads or descriptors");
    }
}

MetricsServer::~MetricsServer()
{
    MHD_stop_daemon(m_daemon); // the listening socket is its own
}

MHD_Result MetricsServer::on_request(void *server, MHD_Connection *connection, const char *path, const char *method,
                                     const char *, const char *, size_t *, void **)
{
    if (strcmp(path, PATH) != 0) {
        return send(connection, MHD_HTTP_NOT_FOUND);
    }
    if (strcmp(method, MHD_HTTP_METHOD_GET) != 0 && strcmp(method, MHD_HTTP_METHOD_HEAD) != 0) {
        return send(connection, MHD_HTTP_METHOD_NOT_ALLOWED, {}, MHD_HTTP_HEADER_ALLOW, METHODS);
    }
    std::string text;
    try {
        text = static_cast<MetricsServer *>(server)->m_text();
    } catch (const std::exception &) { // most likely no memory
        return send(connection, MHD_HTTP_INTERNAL_SERVER_ERROR);
    }
    return send(connection, MHD_HTTP_OK, std::move(text), MHD_HTTP_HEADER_CONTENT_TYPE, zvservice::METRICS_TYPE);
}

void MetricsServer::on_connection(void *server, MHD_Connection *connection, void **,
                                  MHD_ConnectionNotificationCode code)
{
    auto &clients = static_cast<MetricsServer *>(server)->m_clients;
    const int client = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
    if (code == MHD_CONNECTION_NOTIFY_CLOSED) {
        clients.remove(client);
        return;
    }
    if (clients.size() >= CLIENTS_MAX) {
        shutdown(clients.front(), SHUT_RDWR);
    }
    clients.push_back(client);
}

} // namespace zvmqtt
