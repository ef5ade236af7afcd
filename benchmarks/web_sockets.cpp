#include "web_sockets.h"

#include <algorithm>
#include <charconv>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr int PATIENCE = 5000; // in milliseconds
constexpr size_t BUFFER_SIZE = 65536;
constexpr std::string_view END_OF_HEADERS = "\r\n\r\n";
constexpr std::string_view END_OF_EVENT = "\n\n";
constexpr std::string_view LENGTH = "\r\nContent-Length: ";

int connect_to(uint16_t port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0 || connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        throw std::runtime_error("a connection does not come about");
    }
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return descriptor;
}

template <class Number>
Number number_at(std::string_view text, int base)
{
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, base);
    return number;
}

} // namespace

Sockets::Sockets(uint16_t port, size_t count) : m_epoll(epoll_create1(EPOLL_CLOEXEC)), m_buffer(BUFFER_SIZE)
{
    for (size_t i = 0; i < count; ++i) {
        m_descriptors.push_back(connect_to(port));
        epoll_event event = {};
        event.events = EPOLLIN;
        event.data.u64 = i;
        epoll_ctl(m_epoll, EPOLL_CTL_ADD, m_descriptors.back(), &event);
    }
}

Sockets::~Sockets()
{
    for (const int descriptor : m_descriptors) {
        close(descriptor);
    }
    close(m_epoll);
}

void Sockets::send(size_t socket, std::string_view text) const
{
    if (::send(m_descriptors[socket], text.data(), text.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("a request does not go out");
    }
}

void Sockets::receive(const Take &take)
{
    epoll_event events[64];
    const int count = epoll_wait(m_epoll, events, std::size(events), PATIENCE);
    if (count <= 0) {
        throw std::runtime_error("the server says nothing any more");
    }
    for (int i = 0; i < count; ++i) {
        const size_t socket = events[i].data.u64;
        const ssize_t size = recv(m_descriptors[socket], m_buffer.data(), m_buffer.size(), 0);
        if (size <= 0) {
            throw std::runtime_error("the server closed a connection");
        }
        take(socket, std::string_view(m_buffer.data(), static_cast<size_t>(size)));
    }
}

bool is_whole_answer(std::string_view text)
{
    const size_t end = text.find(END_OF_HEADERS);
    if (end == std::string_view::npos) {
        return false;
    }
    const size_t length = text.substr(0, end).find(LENGTH);
    if (!text.starts_with("HTTP/1.1 200 ") || length == std::string_view::npos) {
        throw std::runtime_error("not what was asked for: " + std::string(text));
    }
    const auto body = number_at<size_t>(text.substr(length + LENGTH.size()), 10);
    return text.size() >= end + END_OF_HEADERS.size() + body;
}

void EventStream::take(std::string_view bytes)
{
    while (!bytes.empty()) {
        if (m_chunk > 0) {
            const size_t part = std::min(m_chunk, bytes.size());
            m_events.append(bytes.substr(0, part));
            m_chunk -= part;
            bytes.remove_prefix(part);
            continue;
        }
        m_line += bytes.front();
        bytes.remove_prefix(1);
        if (m_line.ends_with("\r\n")) {
            if (!m_in_headers) {
                m_chunk = number_at<size_t>(m_line, 16); // 0 for the empty line after a chunk
            }
            m_in_headers = m_in_headers && m_line.size() > 2;
            m_line.clear();
        }
    }
}

std::string EventStream::next(std::string_view text)
{
    for (size_t end; (end = m_events.find(END_OF_EVENT)) != std::string::npos;) {
        std::string event = m_events.substr(0, end + END_OF_EVENT.size());
        m_events.erase(0, event.size());
        if (event.find(text) != std::string::npos) {
            return event;
        }
    }
    return {};
}

} // namespace bench
