#include "mqtt_fleet.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr char MOSQUITTO[] = "/usr/sbin/mosquitto"; // in nobody's PATH but root's

uint16_t free_port()
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool bound = bind(descriptor, reinterpret_cast<const sockaddr *>(&address), size) == 0 &&
                       getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &size) == 0;
    close(descriptor);
    if (!bound) {
        throw std::runtime_error("no free port");
    }
    return ntohs(address.sin_port);
}

void tell_ready()
{
    printf("ready\n");
    fflush(stdout);
}

// In place of this process.
void run(std::vector<std::string> words)
{
    std::vector<char *> arguments(words.size() + 1);
    std::ranges::transform(words, arguments.begin(), [](std::string &word) { return word.data(); });
    execvp(arguments.front(), arguments.data());
}

// Runs a program, after the words that lead to its place, under a user id of its own: the bytes of a user's queues are
// few. Where that cannot be, it is run as it is.
void run_as_user(size_t number, std::vector<std::string> place, const std::vector<std::string> &program)
{
    if (!may_give_users(number + 1)) {
        run(program);
    }
    const std::string user = std::to_string(FIRST_USER + number);
    place.insert(place.end(), {"setpriv", "--reuid=" + user, "--regid=" + user, "--clear-groups", "--pdeathsig=KILL"});
    place.insert(place.end(), program.begin(), program.end());
    run(std::move(place));
}

void run_camera(size_t number)
{
    unsetenv("ZVCTRL_NAMESPACE"); // this one is to be a further one
    unsetenv("ZVCSI_DIR");        // which has a folder of its own
    run_as_user(number, {ZVBENCH_PRIVATE_NAMESPACE}, {ZVBENCH_ZVSIM});
}

void run_bridge(size_t number, pid_t camera, uint16_t port)
{
    unsetenv("ZVCSI_DIR");
    run_as_user(number, {"nsenter", "--target=" + std::to_string(camera), "--ipc", "--mount"},
                {ZVBENCH_ZVMQTT, "--broker", "127.0.0.1:" + std::to_string(port), "--id", id_of(number)});
}

// The same of another camera.
std::string with_id(std::string text, size_t camera)
{
    const std::string first = id_of(0);
    for (size_t place = 0; (place = text.find(first, place)) != std::string::npos; place += first.size()) {
        text.replace(place, first.size(), id_of(camera));
    }
    return text;
}

void answer(uint16_t port, size_t camera, std::vector<Exchange> exchanges)
{
    for (Exchange &exchange : exchanges) {
        exchange.order.topic = with_id(exchange.order.topic, camera);
        for (Message &message : exchange.answers) {
            message.topic = with_id(message.topic, camera);
        }
    }
    MqttClient client(port);
    client.subscribe(base_of(camera) + "/set/#", 1);
    tell_ready();
    for (;;) {
        client.receive(std::chrono::minutes(1), [&](const Message &order) {
            const auto found = std::ranges::find_if(exchanges, [&](const Exchange &exchange) {
                return exchange.order.topic == order.topic && exchange.order.payload == order.payload;
            });
            if (found != exchanges.end()) {
                std::ranges::for_each(found->answers, [&](const Message &message) { client.publish(message); });
            }
        });
    }
}

} // namespace

Broker::Broker()
    : m_port(free_port()), m_program(Cores::SAME, [port = m_port] {
          tell_ready(); // it prints nothing itself; a client waits for it
          run_as_user(0, {}, {MOSQUITTO, "-p", std::to_string(port), "-c", ZVBENCH_MOSQUITTO_CONF});
      })
{
    const MqttClient serves(m_port);
}

std::string id_of(size_t camera)
{
    char text[32]; // of one length, so that all messages are
    snprintf(text, sizeof text, "bench-%03zu", camera);
    return text;
}

std::string base_of(size_t camera)
{
    return "zv/" + id_of(camera);
}

Bridges::Bridges(const Broker &broker, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        m_cameras.emplace_back(Cores::SAME, [i] { run_camera(i); });
        m_bridges.emplace_back(Cores::TWO, [&, i] { run_bridge(i, m_cameras.back().process(), broker.port()); });
    }
}

BareClients::BareClients(const Broker &broker, size_t count, const std::vector<Exchange> &exchanges)
{
    for (size_t i = 0; i < count; ++i) {
        m_clients.emplace_back(Cores::TWO, [&, i] { answer(broker.port(), i, exchanges); });
    }
}

} // namespace bench
