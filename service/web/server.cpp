#include "server.h"

#include "event_stream.h"
#include "guard.h"
#include "listener.h"
#include "routes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <new>
#include <optional>
#include <stdexcept>
#include <unistd.h>
#include <utility>
#include <zvctrl/http_utils.h>

namespace zvweb {

using std::chrono::milliseconds;

namespace {

// For a connection's headers and its answer's, in bytes.
constexpr size_t CONNECTION_MEMORY = 16384;

// Connections beyond the limit that are told so.
constexpr unsigned TURNED_AWAY = 32;

// A write of an answer that makes no headway, in seconds.
constexpr unsigned WRITE_PATIENCE = 30;

// Between two looks after connections that say nothing.
constexpr milliseconds BETWEEN_LOOKS(1000);

// Of the second that the end may take, for answers on their way.
constexpr milliseconds LAST_ANSWERS(200);

// What a camera may take for a request, of which the sending takes a part.
constexpr milliseconds WORK_PATIENCE = zvservice::CALL_PATIENCE - milliseconds(250);

// An answer up to here, in bytes, is copied into one buffer: that costs less than to send it in pieces.
constexpr size_t COPIED_MAX = 8192;

milliseconds time_since(Request::Clock::time_point time)
{
    return std::chrono::duration_cast<milliseconds>(Request::Clock::now() - time);
}

// How many clients the system has room for, up to the number wanted. It says so where that is less.
unsigned room_for_clients(unsigned wanted)
{
    const unsigned room = make_room(wanted + TURNED_AWAY);
    if (room == wanted + TURNED_AWAY) {
        return wanted;
    }
    const unsigned clients = room > TURNED_AWAY ? room - TURNED_AWAY : 1;
    fprintf(stderr, "zvweb: %u clients at once, not %u: more files may not be open here (ulimit -n)\n", clients,
            wanted);
    return clients;
}

void drop(void *answer)
{
    delete static_cast<Answer *>(answer);
}

// One buffer leaves with the headers; pieces leave after them, with a system call and a packet of their own.
MHD_Response *make_short_response(Answer &answer)
{
    for (const std::string_view piece : answer.shared) {
        answer.head.append(piece);
    }
    return MHD_create_response_from_buffer_with_free_callback_cls(answer.head.size(), answer.head.data(), drop,
                                                                  &answer);
}

MHD_Response *make_long_response(Answer &answer)
{
    std::vector<MHD_IoVec> pieces;
    pieces.push_back({answer.head.data(), answer.head.size()});
    for (const std::string_view piece : answer.shared) {
        pieces.push_back({piece.data(), piece.size()});
    }
    return MHD_create_response_from_iovec(pieces.data(), static_cast<unsigned>(pieces.size()), drop, &answer);
}

// Of an answer that lives until it is sent.
MHD_Response *make_response(Answer given)
{
    auto answer = std::make_unique<Answer>(std::move(given));
    size_t size = answer->head.size();
    for (const std::string_view piece : answer->shared) {
        size += piece.size();
    }
    MHD_Response *response = size <= COPIED_MAX ? make_short_response(*answer) : make_long_response(*answer);
    if (response != nullptr) {
        answer.release(); // NOLINT(bugprone-unused-return-value): the response's now
    }
    return response;
}

// Without memory or a thread: there is nothing to tell it with.
Answer failed()
{
    return without_body(MHD_HTTP_INTERNAL_SERVER_ERROR);
}

Answer carry_out(const Work &work, Request::Clock::time_point arrival)
try {
    return work(std::max(WORK_PATIENCE - time_since(arrival), milliseconds(0)));
} catch (const std::bad_alloc &) {
    return failed();
}

} // namespace

class Server::Exchange {
  public:
    Exchange(Connections::Connection &of, MHD_Connection *handle, std::string_view method, std::string_view path)
        : connection(of), request(handle, method, path)
    {
    }

    Connections::Connection &connection;
    Request request;
    std::optional<Answer> worked_out; // by a thread that waited for the camera
    bool is_stream = false;
};

Server::Server(const Options &options) : m_options(options), m_service(room_for_clients(options.max_clients))
{
    const int listener = listen_for_clients(options.address);
    m_port = zvprogram::port_text(zvprogram::own_address(listener));
    m_daemon = start(listener);
    if (m_daemon == nullptr) {
        close(listener);
        throw std::runtime_error(options.tls() ? "cannot serve: is the certificate valid PEM, and the key its own?"
                                               : "cannot serve: no memory, threads or descriptors");
    }
    m_events = std::thread([this] { run_events(); });
}

Server::~Server()
{
    const int listener = MHD_quiesce_daemon(m_daemon);
    m_works.end();
    m_service.events.log().end();
    m_service.camera.end();
    m_events.join();
    m_works.wait(); // a connection that sleeps would outlive the server
    for (milliseconds waited(0); m_service.connections.answering() > 0 && waited < LAST_ANSWERS; ++waited) {
        std::this_thread::sleep_for(milliseconds(1));
    }
    MHD_stop_daemon(m_daemon);
    close(listener); // its thread had it until now
}

std::string Server::url() const
{
    return std::string(m_options.tls() ? "https" : "http") + "://" + m_options.address.host + ":" + m_port + "/";
}

void Server::run_events()
{
    auto looked = Connections::Clock::now();
    while (m_service.events.pass_on(BETWEEN_LOOKS)) {
        if (const auto now = Connections::Clock::now(); now - looked >= BETWEEN_LOOKS) {
            looked = now;
            m_service.connections.shut_down_idle();
        }
    }
}

MHD_Daemon *Server::start(int listener)
{
    std::vector<MHD_OptionItem> items = {
        {MHD_OPTION_LISTEN_SOCKET, listener, nullptr},
        {MHD_OPTION_CONNECTION_LIMIT, static_cast<intptr_t>(m_service.connections.limit() + TURNED_AWAY), nullptr},
        {MHD_OPTION_CONNECTION_MEMORY_LIMIT, static_cast<intptr_t>(CONNECTION_MEMORY), nullptr},
        {MHD_OPTION_CONNECTION_TIMEOUT, static_cast<intptr_t>(WRITE_PATIENCE), nullptr},
        {MHD_OPTION_STRICT_FOR_CLIENT, 1, nullptr},
        {MHD_OPTION_NOTIFY_COMPLETED, reinterpret_cast<intptr_t>(&on_completed), this},
        {MHD_OPTION_NOTIFY_CONNECTION, reinterpret_cast<intptr_t>(&on_connection), this},
        {MHD_OPTION_UNESCAPE_CALLBACK, reinterpret_cast<intptr_t>(&unescape), this},
    };
    unsigned flags = MHD_USE_EPOLL_INTERNAL_THREAD | MHD_ALLOW_SUSPEND_RESUME;
    if (m_options.tls()) {
        flags |= MHD_USE_TLS;
        items.push_back({MHD_OPTION_HTTPS_MEM_CERT, 0, const_cast<char *>(m_options.certificate.c_str())});
        items.push_back({MHD_OPTION_HTTPS_MEM_KEY, 0, const_cast<char *>(m_options.key.c_str())});
    }
    items.push_back({MHD_OPTION_END, 0, nullptr});
    return MHD_start_daemon(flags, 0, nullptr, nullptr, &on_request, this, MHD_OPTION_ARRAY, items.data(),
                            MHD_OPTION_END);
}

// ---- A request's way

MHD_Result Server::on_request(void *server, MHD_Connection *connection, const char *path, const char *method,
                              const char *, const char *data, size_t *size, void **exchange)
try {
    auto *self = static_cast<Server *>(server);
    auto *known = static_cast<Exchange *>(*exchange);
    if (known == nullptr) { // its headers are there
        auto *context = static_cast<Connections::Connection *>(
            MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT)->socket_context);
        known = new Exchange(*context, connection, method, path);
        *exchange = known;
        std::optional<Answer> refused = refuse_form(known->request);
        return refused ? self->send(*known, std::move(*refused)) : MHD_YES;
    }
    if (*size > 0) {
        return self->take(*known, std::string_view(data, std::exchange(*size, 0)));
    }
    return self->answer(*known);
} catch (const std::exception &) { // no memory
    return MHD_NO;
}

MHD_Result Server::take(Exchange &exchange, std::string_view part)
{
    exchange.request.add_to_body(part);
    return exchange.request.body_size() <= BODY_PATIENCE ? MHD_YES : MHD_NO;
}

MHD_Result Server::answer(Exchange &exchange)
{
    if (exchange.worked_out) {
        return send(exchange, *std::exchange(exchange.worked_out, std::nullopt));
    }
    m_service.connections.begin_answer(exchange.connection);
    Reply reply = reply_to(exchange);
    if (auto *known = std::get_if<Answer>(&reply)) {
        return send(exchange, std::move(*known));
    }
    if (auto *waiting = std::get_if<Work>(&reply)) {
        return work(exchange, std::move(*waiting));
    }
    return stream(exchange, std::get<Stream>(reply));
}

Reply Server::reply_to(const Exchange &exchange)
{
    const Request &request = exchange.request;
    if (exchange.connection.one_too_many) {
        return last(unavailable("as many clients are connected as may be"));
    }
    const Match match = find_route(request.method(), request.path());
    const bool is_public = match.route != nullptr && match.route->is_public;
    if (std::optional<Answer> refused = refuse(m_options, request, is_public)) {
        return *refused;
    }
    if (match.allowed.empty()) {
        return problem(MHD_HTTP_NOT_FOUND, "nothing is at " + std::string(request.path()));
    }
    if (match.route == nullptr) {
        Answer answer = problem(MHD_HTTP_METHOD_NOT_ALLOWED, "this takes " + match.allowed);
        answer.headers.emplace_back(MHD_HTTP_HEADER_ALLOW, match.allowed);
        return answer;
    }
    return match.route->handler(m_service, request, match.parameter);
}

// The connection sleeps meanwhile, and on_request is called again when it is woken.
MHD_Result Server::work(Exchange &exchange, Work work)
{
    MHD_Connection *connection = exchange.request.connection();
    std::function<void()> job = [&exchange, connection, work = std::move(work)] {
        exchange.worked_out = carry_out(work, exchange.request.arrival());
        MHD_resume_connection(connection);
    };
    MHD_suspend_connection(connection);
    if (!m_works.start(std::move(job))) {
        exchange.worked_out = failed();
        MHD_resume_connection(connection);
    }
    return MHD_YES;
}

MHD_Result Server::send(Exchange &exchange, Answer answer)
{
    const unsigned status = answer.status;
    const bool cacheable = answer.cacheable;
    const char *content_type = answer.content_type;
    const auto headers = std::move(answer.headers);
    MHD_Response *response = make_response(std::move(answer));
    if (response == nullptr) {
        return MHD_NO;
    }
    if (content_type != nullptr) {
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, content_type);
    }
    for (const auto &[name, value] : headers) {
        MHD_add_response_header(response, name, value.c_str());
    }
    return queue(exchange, status, response, cacheable);
}

MHD_Result Server::stream(Exchange &exchange, const Stream &stream)
{
    exchange.is_stream = true;
    MHD_Response *response = make_event_stream(m_service.events, exchange.request.connection(), stream);
    return response != nullptr ? queue(exchange, MHD_HTTP_OK, response, false) : MHD_NO;
}

MHD_Result Server::queue(Exchange &exchange, unsigned status, MHD_Response *response, bool cacheable)
{
    m_service.counters.count(static_cast<int>(status));
    MHD_add_response_header(response, MHD_HTTP_HEADER_CACHE_CONTROL, cacheable ? "no-cache" : "no-store");
    MHD_add_response_header(response, "X-Content-Type-Options", "nosniff");
    const MHD_Result queued = MHD_queue_response(exchange.request.connection(), status, response);
    MHD_destroy_response(response);
    return queued;
}

void Server::on_completed(void *server, MHD_Connection *, void **exchange, MHD_RequestTerminationCode)
{
    auto *self = static_cast<Server *>(server);
    const std::unique_ptr<Exchange> over(static_cast<Exchange *>(std::exchange(*exchange, nullptr)));
    if (over == nullptr) {
        return;
    }
    if (!over->is_stream) {
        self->m_service.counters.add_time(Request::Clock::now() - over->request.arrival());
    }
    self->m_service.connections.end_answer(over->connection);
}

void Server::on_connection(void *server, MHD_Connection *connection, void **context,
                           MHD_ConnectionNotificationCode code)
{
    auto *self = static_cast<Server *>(server);
    if (code == MHD_CONNECTION_NOTIFY_STARTED) {
        const auto *info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
        *context = &self->m_service.connections.open(info->connect_fd);
    } else {
        self->m_service.connections.close(*static_cast<Connections::Connection *>(*context));
    }
}

// Paths and queries, in place. What is decoded to a zero byte would end the text early: such a path leads nowhere.
size_t Server::unescape(void *, MHD_Connection *, char *text)
{
    std::string decoded = urlDecode(text);
    std::ranges::replace(decoded, '\0', '?');
    memcpy(text, decoded.c_str(), decoded.size() + 1);
    return decoded.size();
}

} // namespace zvweb
