// zvweb under load, over a simulated camera that runs already, beside servers that do the same with less. Server and
// clients have a processor each, where there are two. Prints the figures of one run in a line, those of zvweb first.
//
//     zvbench_web state CONNECTIONS    GET /api/v1/state, over and over on each connection. Nanoseconds from one answer
//                                      to the next, of the slowest answer but 1 %, and of the server's processor for
//                                      one; then the same of libmicrohttpd with an answer of the same bytes
//     zvbench_web change CLIENTS       a setting is written, and all clients of the event stream hear of it.
//                                      Nanoseconds from the write's request until a client has the whole event, the
//                                      median, the slowest but 1 %, and of the server's processor for one change; then
//                                      the same of bare sends of the same bytes, without a camera
//     zvbench_web offers CLIENTS       the same for a change of what the camera offers
//     zvbench_web program CLIENTS      bytes of private memory without clients; nanoseconds from the start until it
//                                      serves; bytes for each of so many clients of the event stream, and of so many
//                                      connections that have had an answer
#include "orders.h"
#include "process.h"
#include "times.h"
#include "web_servers.h"
#include "web_sockets.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace bench;

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using Numbers = std::vector<double>;

constexpr size_t FIRST_REQUESTS = 500; // not counted
constexpr size_t REQUESTS = 4000;
constexpr size_t FIRST_CHANGES = 10; // not counted
constexpr size_t CHANGES_MAX = 150;  // fewer where that would be more events
constexpr size_t CHANGES_MIN = 25;
constexpr size_t EVENTS_MAX = 10000;
constexpr milliseconds BETWEEN_CHANGES(2);
constexpr int STARTS = 9;

constexpr char STATE_REQUEST[] = "GET /api/v1/state HTTP/1.1\r\nHost: localhost\r\n\r\n";
constexpr char EVENTS_REQUEST[] = "GET /api/v1/events HTTP/1.1\r\nHost: localhost\r\n\r\n";
constexpr char GREETING[] = "event: state\n";

// One request on each connection, and the answer to the last.
std::string ask_all(Sockets &sockets, std::string_view request)
{
    std::vector<std::string> answers(sockets.count());
    for (size_t i = 0; i < sockets.count(); ++i) {
        sockets.send(i, request);
        while (!is_whole_answer(answers[i])) {
            sockets.receive([&](size_t socket, std::string_view bytes) { answers[socket].append(bytes); });
        }
    }
    return answers.back();
}

// The answer with the state of the camera, once it is known.
std::string wait_for_state(const ServerProcess &server)
{
    Sockets sockets(server.port(), 1);
    for (int i = 0; i < 500; ++i) {
        std::string answer = ask_all(sockets, STATE_REQUEST);
        if (answer.find("\"link\":\"up\"") != std::string::npos) {
            return answer;
        }
        std::this_thread::sleep_for(milliseconds(10));
    }
    throw std::runtime_error("the simulated camera does not answer");
}

// ---- Requests

// As many requests at once as connections.
void load_with_requests(const ServerProcess &server, size_t connections, Numbers &figures)
{
    Sockets sockets(server.port(), connections);
    std::vector<std::string> answers(connections);
    std::vector<Clock::time_point> sent(connections);
    std::vector<double> times;
    Clock::time_point start;
    std::chrono::nanoseconds processor{};
    size_t answered = 0;
    const auto request = [&](size_t socket) {
        sent[socket] = Clock::now();
        sockets.send(socket, STATE_REQUEST);
    };
    for (size_t i = 0; i < connections; ++i) {
        request(i);
    }
    while (times.size() < REQUESTS) {
        sockets.receive([&](size_t socket, std::string_view bytes) {
            std::string &answer = answers[socket];
            answer.append(bytes);
            if (!is_whole_answer(answer)) {
                return;
            }
            const auto now = Clock::now();
            answer.clear();
            if (++answered == FIRST_REQUESTS) {
                start = now;
                processor = server.processor_time();
            } else if (answered > FIRST_REQUESTS) {
                times.push_back(nanoseconds(now - sent[socket]));
            }
            request(socket);
        });
    }
    const auto count = static_cast<double>(times.size());
    figures.push_back(nanoseconds(Clock::now() - start) / count);
    figures.push_back(percentile(times, 99));
    figures.push_back(nanoseconds(server.processor_time() - processor) / count);
}

void measure_state(size_t connections, Numbers &figures)
{
    std::string answer;
    {
        const ServerProcess zvweb(serve_camera);
        answer = wait_for_state(zvweb);
        load_with_requests(zvweb, connections, figures);
    }
    const ServerProcess bare([&] { serve_answer(answer); });
    load_with_requests(bare, connections, figures);
}

// ---- Events

// What is ordered, and what is in the event of either option.
struct Change {
    Order order;
    std::string events[2];
};

std::optional<Change> change_of(std::string_view what)
{
    if (what == "change") {
        const std::string event = "\"settings\":{\"" + std::to_string(SETS_VOLUME.setting) + "\":";
        const auto [one, other] = SETS_VOLUME.options;
        return Change{SETS_VOLUME, {event + std::to_string(one) + '}', event + std::to_string(other) + '}'}};
    }
    if (what == "offers") {
        return Change{SETS_FRAME_RATE, {"event: available\n", "event: available\n"}};
    }
    return std::nullopt;
}

std::string write_request(const Order &order, size_t number)
{
    const std::string body = "{\"option\":" + std::to_string(order.option(number)) + "}";
    return "PUT /api/v1/settings/" + std::to_string(order.setting) +
           " HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

// Clients of the event stream, and a connection more that writes.
class Audience {
  public:
    Audience(const ServerProcess &server, size_t clients) : m_sockets(server.port(), clients + 1), m_streams(clients)
    {
        for (size_t i = 0; i < clients; ++i) {
            m_sockets.send(i, EVENTS_REQUEST);
        }
        await(GREETING);
    }

    // Until the write is answered and every client has its event; returns the one that came last.
    std::string change(const Change &change, size_t number)
    {
        m_answer.clear();
        m_asked = Clock::now();
        m_sockets.send(m_streams.size(), write_request(change.order, number));
        std::string event = await(change.events[number % 2]);
        while (!is_whole_answer(m_answer)) {
            receive({});
        }
        return event;
    }

    size_t size() const { return m_streams.size(); }
    Numbers &times() { return m_times; } // from a change's request to each client's event

  private:
    std::string await(std::string_view text)
    {
        std::string last;
        for (size_t waiting = m_streams.size(); waiting > 0;) {
            receive([&](EventStream &stream) {
                if (std::string event = stream.next(text); !event.empty()) {
                    m_times.push_back(nanoseconds(Clock::now() - m_asked));
                    last = std::move(event);
                    --waiting;
                }
            });
        }
        return last;
    }

    void receive(const std::function<void(EventStream &)> &look)
    {
        m_sockets.receive([&](size_t socket, std::string_view bytes) {
            if (socket == m_streams.size()) {
                m_answer.append(bytes);
                return;
            }
            m_streams[socket].take(bytes);
            if (look) {
                look(m_streams[socket]);
            }
        });
    }

    Sockets m_sockets;
    std::vector<EventStream> m_streams;
    std::string m_answer; // to the write
    Clock::time_point m_asked;
    Numbers m_times;
};

// Returns the events of a change to either option.
std::vector<std::string> load_with_changes(const ServerProcess &server, const Change &change, size_t clients,
                                           Numbers &figures)
{
    const size_t count = std::clamp(EVENTS_MAX / clients, CHANGES_MIN, CHANGES_MAX);
    std::vector<std::string> events(2);
    std::chrono::nanoseconds processor{};
    Audience audience(server, clients);
    for (size_t i = 0; i < FIRST_CHANGES + count; ++i) {
        if (i == FIRST_CHANGES) {
            audience.times().clear();
            processor = server.processor_time();
        }
        events[i % 2] = audience.change(change, i);
        std::this_thread::sleep_for(BETWEEN_CHANGES);
    }
    figures.push_back(percentile(audience.times(), 50));
    figures.push_back(percentile(audience.times(), 99));
    figures.push_back(nanoseconds(server.processor_time() - processor) / static_cast<double>(count));
    return events;
}

void measure_changes(const Change &change, size_t clients, Numbers &figures)
{
    std::vector<std::string> events;
    {
        const ServerProcess zvweb(serve_camera);
        wait_for_state(zvweb);
        events = load_with_changes(zvweb, change, clients, figures);
    }
    const ServerProcess bare([&] { serve_events(clients + 1, events); });
    load_with_changes(bare, change, clients, figures);
}

// ---- The program

// What each of the clients between a tenth of them and all takes.
double memory_of_streams(size_t clients)
{
    const ServerProcess zvweb(serve_camera);
    wait_for_state(zvweb);
    const Change change = *change_of("change");
    Audience few(zvweb, clients / 10);
    few.change(change, 0);
    const auto before = static_cast<double>(zvweb.private_memory());
    Audience most(zvweb, clients - clients / 10);
    most.change(change, 1);
    return (static_cast<double>(zvweb.private_memory()) - before) / static_cast<double>(most.size());
}

double memory_of_connections(size_t connections)
{
    const ServerProcess zvweb(serve_camera);
    wait_for_state(zvweb);
    Sockets few(zvweb.port(), connections / 10);
    Sockets most(zvweb.port(), connections - connections / 10);
    ask_all(few, STATE_REQUEST);
    const auto before = static_cast<double>(zvweb.private_memory());
    ask_all(most, STATE_REQUEST);
    return (static_cast<double>(zvweb.private_memory()) - before) / static_cast<double>(most.count());
}

void measure_program(size_t clients, Numbers &figures)
{
    Numbers memory;
    Numbers starts;
    for (int i = 0; i < STARTS; ++i) {
        const ServerProcess zvweb(serve_camera);
        wait_for_state(zvweb);
        memory.push_back(static_cast<double>(zvweb.private_memory()));
        starts.push_back(nanoseconds(zvweb.start_time()));
    }
    figures.push_back(percentile(memory, 50));
    figures.push_back(percentile(starts, 50));
    figures.push_back(memory_of_streams(clients));
    figures.push_back(memory_of_connections(clients));
}

void make_room_for_descriptors()
{
    rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace

int main(int argc, char **argv)
try {
    const std::string_view what = argc == 3 ? argv[1] : "";
    const size_t number = argc == 3 ? strtoul(argv[2], nullptr, 10) : 0;
    const std::optional<Change> change = change_of(what);
    if (number < 1 || (what != "state" && what != "program" && !change)) {
        fprintf(stderr, "usage: zvbench_web state|change|offers|program NUMBER\n");
        return 2;
    }
    run_anywhere();
    make_room_for_descriptors();
    run_as_client();
    Numbers figures;
    if (change) {
        measure_changes(*change, number, figures);
    } else {
        what == "state" ? measure_state(number, figures) : measure_program(number, figures);
    }
    for (const double figure : figures) {
        printf("%.0f ", figure);
    }
    printf("\n");
    return 0;
} catch (const std::exception &wrong) {
    fprintf(stderr, "zvbench_web: %s\n", wrong.what());
    return 1;
}
