// The HTTP server: takes requests in, and sends their replies.
#pragma once

#include "options.h"
#include "reply.h"
#include "request.h"
#include "service.h"
#include "works.h"

#include <memory>
#include <microhttpd.h>
#include <string>
#include <thread>

namespace zvweb {

class Server {
  public:
    // Serves from now on. The options outlive it. Throws std::runtime_error with what is wrong.
    explicit Server(const Options &options);

    // Within a second: lets go of the camera, and so ends what waits for it; closes the event streams in order.
    ~Server();
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    // Where the page is: "http://127.0.0.1:8080/".
    std::string url() const;

  private:
    class Exchange; // a request with its reply

    void run_events();
    MHD_Daemon *start(int listener);
    Reply reply_to(const Exchange &exchange);
    MHD_Result take(Exchange &exchange, std::string_view part);
    MHD_Result answer(Exchange &exchange);
    MHD_Result work(Exchange &exchange, Work work);
    MHD_Result send(Exchange &exchange, Answer answer);
    MHD_Result stream(Exchange &exchange, const Stream &stream);
    MHD_Result queue(Exchange &exchange, unsigned status, MHD_Response *response, bool cacheable);

    // What the library of the protocol calls, with the server as its first argument.
    static MHD_Result on_request(void *server, MHD_Connection *connection, const char *path, const char *method,
                                 const char *version, const char *data, size_t *size, void **exchange);
    static void on_completed(void *server, MHD_Connection *connection, void **exchange, MHD_RequestTerminationCode);
    static void on_connection(void *server, MHD_Connection *connection, void **context,
                              MHD_ConnectionNotificationCode code);
    static size_t unescape(void *server, MHD_Connection *connection, char *text);

    const Options &m_options;
    Service m_service;
    Works m_works;
    std::thread m_events;
    std::string m_port;
    MHD_Daemon *m_daemon = nullptr;
};

} // namespace zvweb
