#include "metrics_server.h"

#include <cstdint>
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

MHD_Response *make_response(const std::string &body)
{
    MHD_Response *response =
        MHD_create_response_from_buffer(body.size(), const_cast<char *>(body.data()), MHD_RESPMEM_MUST_COPY);
    if (response == nullptr) {
        return nullptr;
    }
    MHD_add_response_header(response, MHD_HTTP_HEADER_CACHE_CONTROL, "no-store");
    MHD_add_response_header(response, "X-Content-Type-Options", "nosniff");
    return response;
}

MHD_Result send(MHD_Connection *connection, unsigned status, MHD_Response *response)
{
    if (response == nullptr) {
        return MHD_NO;
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
        return send(connection, MHD_HTTP_NOT_FOUND, make_response(""));
    }
    if (strcmp(method, MHD_HTTP_METHOD_GET) != 0 && strcmp(method, MHD_HTTP_METHOD_HEAD) != 0) {
        MHD_Response *response = make_response("");
        MHD_add_response_header(response, MHD_HTTP_HEADER_ALLOW, METHODS);
        return send(connection, MHD_HTTP_METHOD_NOT_ALLOWED, response);
    }
    try {
        MHD_Response *response = make_response(static_cast<MetricsServer *>(server)->m_text());
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, zvservice::METRICS_TYPE);
        return send(connection, MHD_HTTP_OK, response);
    } catch (const std::exception &) {
        return send(connection, MHD_HTTP_INTERNAL_SERVER_ERROR, make_response(""));
    }
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
