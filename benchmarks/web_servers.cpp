#include "web_servers.h"

#include "process.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <microhttpd.h>
#include <netinet/in.h>
#include <stdexcept>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

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

ServerProcess::ServerProcess(const std::function<void()> &serve)
{
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    const auto start = Clock::now();
    m_process = fork();
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        run_as_peer(Cores::TWO);
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        serve();
        _exit(1);
    }
    close(ends[1]);
    FILE *output = fdopen(ends[0], "r");
    char line[256] = "";
    if (fgets(line, sizeof line, output) != nullptr) {
        m_port = static_cast<uint16_t>(strtoul(strrchr(line, ':') + 1, nullptr, 10));
    }
    m_start_time = Clock::now() - start;
    fclose(output);
    if (m_port == 0) {
        waitpid(m_process, nullptr, 0);
        throw std::runtime_error("a server does not start");
    }
}

ServerProcess::~ServerProcess()
{
    kill(m_process, SIGTERM);
    waitpid(m_process, nullptr, 0);
}

std::chrono::nanoseconds ServerProcess::processor_time() const
{
    clockid_t clock = 0;
    timespec time = {};
    if (clock_getcpuclockid(m_process, &clock) != 0 || clock_gettime(clock, &time) != 0) {
        throw std::runtime_error("a server is gone");
    }
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

size_t ServerProcess::private_memory() const
{
    std::ifstream lines("/proc/" + std::to_string(m_process) + "/smaps_rollup");
    size_t sum = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("Private_")) {
            sum += strtoul(line.c_str() + line.find(':') + 1, nullptr, 10);
        }
    }
    return sum * 1024;
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
