#include "web_servers.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <microhttpd.h>
#include <netinet/in.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace bench {

namespace {

constexpr char LOOPBACK[] = "http://127.0.0.1:";

sockaddr_in free_port()
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void tell_port(uint16_t port)
{
    printf("%s%u/\n", LOOPBACK, port);
    fflush(stdout);
}

// Called twice for a request: with its headers, and at its end.
MHD_Result on_request(void *response, MHD_Connection *connection, const char *, const char *, const char *,
                      const char *, size_t *, void **known)
{
    return std::exchange(*known, response) != nullptr
               ? MHD_queue_response(connection, MHD_HTTP_OK, static_cast<MHD_Response *>(response))
               : MHD_YES;
}

// Of an answer as it was sent; the library adds its own date and length again.
MHD_Response *make_response(std::string_view answer)
{
    const size_t end = answer.find("\r\n\r\n");
    const std::string_view body = answer.substr(end + 4);
    MHD_Response *response =
        MHD_create_response_from_buffer(body.size(), const_cast<char *>(body.data()), MHD_RESPMEM_MUST_COPY);
    std::string_view lines = answer.substr(0, end);
    while (lines.find("\r\n") != std::string_view::npos) {
        lines.remove_prefix(lines.find("\r\n") + 2);
        const std::string line(lines.substr(0, lines.find("\r\n")));
        const std::string name = line.substr(0, line.find(": "));
        if (name != MHD_HTTP_HEADER_DATE && name != MHD_HTTP_HEADER_CONTENT_LENGTH) {
            MHD_add_response_header(response, name.c_str(), line.c_str() + name.size() + 2);
        }
    }
    return response;
}

void send_all(int descriptor, std::string_view text)
{
    if (send(descriptor, text.data(), text.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(text.size())) {
        _exit(1);
    }
}

std::string chunk(const std::string &text)
{
    char size[32];
    snprintf(size, sizeof size, "%zx\r\n", text.size());
    return size + text + "\r\n";
}

} // namespace

uint16_t ServerProcess::port() const
{
    return static_cast<uint16_t>(strtoul(greeting().c_str() + greeting().rfind(':') + 1, nullptr, 10));
}

void serve_camera()
{
    execl(ZVBENCH_ZVWEB, ZVBENCH_ZVWEB, "--listen", "127.0.0.1:0", nullptr);
}

void serve_answer(const std::string &answer)
{
    const sockaddr_in address = free_port();
    MHD_Daemon *daemon =
        MHD_start_daemon(MHD_USE_EPOLL_INTERNAL_THREAD | MHD_ALLOW_SUSPEND_RESUME, 0, nullptr, nullptr, on_request,
                         make_response(answer), MHD_OPTION_SOCK_ADDR, &address, MHD_OPTION_END);
    if (daemon == nullptr) {
        return;
    }
    tell_port(MHD_get_daemon_info(daemon, MHD_DAEMON_INFO_BIND_PORT)->port);
    for (;;) {
        pause();
    }
}

void serve_events(size_t connections, const std::vector<std::string> &events)
{
    sockaddr_in address = free_port();
    socklen_t size = sizeof address;
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    if (bind(listener, reinterpret_cast<const sockaddr *>(&address), size) != 0 || listen(listener, SOMAXCONN) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size) != 0) {
        return;
    }
    tell_port(ntohs(address.sin_port));
    std::vector<int> clients;
    while (clients.size() + 1 < connections) {
        clients.push_back(accept(listener, nullptr, nullptr));
        send_all(clients.back(), "HTTP/1.1 200 OK\r\n\r\n" + chunk("event: state\n\n"));
    }
    const int asking = accept(listener, nullptr, nullptr);
    std::vector<std::string> chunks;
    std::ranges::transform(events, std::back_inserter(chunks), chunk);
    char request[1024];
    for (size_t i = 0; recv(asking, request, sizeof request, 0) > 0; ++i) {
        for (const int client : clients) {
            send_all(client, chunks[i % chunks.size()]);
        }
        send_all(asking, "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    }
}

} // namespace bench
