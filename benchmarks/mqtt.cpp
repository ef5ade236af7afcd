// zvmqtt under load: so many simulated cameras with a bridge each, and a broker, which this program starts and ends.
// All bridges have one processor, where there are two; the cameras, the broker and the one client have the other one.
// Prints the figures of one run in a line, times in nanoseconds, of the bridges and then of bare clients of
// libmosquitto in their place, which have no camera and answer each order by messages of the same bytes:
//
//     of a setting's order, one camera after the other, from its leaving until the client has the change: the median,
//     the slowest but 1 %, and of the bridges' processor for one; the same of a setting that changes what the camera
//     offers, until the client has what it offers now; from one answer to the next while several orders wait at each
//     camera
//
// and after those the processor's time of an idle bridge in a second, and bytes of its private and its resident memory.
//
//     zvbench_mqtt CAMERAS
#include "mqtt_client.h"
#include "mqtt_fleet.h"
#include "orders.h"
#include "process.h"
#include "times.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <list>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace bench;

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using Numbers = std::vector<double>;

constexpr milliseconds PATIENCE(20000);
constexpr milliseconds REST(300); // of an order's consequences none comes later
constexpr milliseconds IDLE(2000);
constexpr milliseconds BETWEEN_CHANGES(2);
constexpr size_t FIRST_CHANGES = 10; // not counted, and at least one of each camera
constexpr size_t CHANGES = 200;
constexpr size_t ORDERS = 1000;
constexpr size_t WAITING = 4; // orders at each camera

// What is ordered, and where the client hears of it.
struct Change {
    Order order;
    const char *topic;
    bool names_option;
};
constexpr Change VOLUME_CHANGE = {SETS_VOLUME, "change", true};
constexpr Change OFFERS_CHANGE = {SETS_FRAME_RATE, "available", false};

Message order_message(size_t camera, const Order &order, size_t number)
{
    return {base_of(camera) + "/set/" + std::to_string(order.setting),
            "{\"option\":" + std::to_string(order.option(number)) + '}', 1};
}

// What comes until an order has brought about all that it does.
void hear(MqttClient &client, const MqttClient::Take &take)
{
    const auto end = Clock::now() + REST;
    while (client.receive(std::chrono::ceil<milliseconds>(end - Clock::now()), take)) {
    }
}

// Orders at all cameras, and hears of all.
class Client {
  public:
    Client(const Broker &broker, size_t cameras) : m_client(broker.port())
    {
        for (size_t i = 0; i < cameras; ++i) {
            m_cameras[base_of(i) + "/response"] = i;
        }
        for (const char *topic : {"change", "available", "response"}) {
            m_client.subscribe(std::string("zv/+/") + topic, 1);
        }
        forget(); // what is retained
    }

    size_t cameras() const { return m_cameras.size(); }

    // From the order's leaving until the change is here; the answer is awaited, too.
    double time_of(const Change &change, size_t camera)
    {
        const std::string topic = base_of(camera) + '/' + change.topic;
        const uint32_t option = change.order.option(m_orders[{camera, change.order.setting}]);
        const std::string text = change.names_option ? "\"settings\":{\"" + std::to_string(change.order.setting) +
                                                           "\":" + std::to_string(option) + '}'
                                                     : "";
        const auto start = Clock::now();
        order(change.order, camera);
        double time = 0;
        for (bool answered = false; !answered || time == 0;) {
            receive([&](const Message &message) {
                answered = answered || m_cameras.contains(message.topic);
                if (time == 0 && message.topic == topic && message.payload.find(text) != std::string::npos) {
                    time = nanoseconds(message.arrived - start);
                }
            });
        }
        return time;
    }

    // From one answer to the next, while orders wait at each camera.
    double time_of_orders(const Order &setting)
    {
        size_t answers = 0; // a first one of each that waits is not counted
        const size_t first = cameras() * WAITING;
        for (size_t i = 0; i < first; ++i) {
            order(setting, i % cameras());
        }
        Clock::time_point start;
        while (answers < first + ORDERS) {
            receive([&](const Message &message) {
                if (const auto camera = m_cameras.find(message.topic); camera != m_cameras.end()) {
                    ++answers;
                    start = answers == first ? message.arrived : start;
                    order(setting, camera->second);
                }
            });
        }
        const auto counted = static_cast<double>(answers - first);
        const double time = nanoseconds(Clock::now() - start) / counted;
        forget();
        return time;
    }

  private:
    void order(const Order &setting, size_t camera)
    {
        m_client.publish(order_message(camera, setting, m_orders[{camera, setting.setting}]++));
    }

    void receive(const MqttClient::Take &take)
    {
        const bool came = m_client.receive(PATIENCE, [&](const Message &message) {
            if (message.topic.ends_with("/response") && message.payload.find("\"ok\":true") == std::string::npos) {
                throw std::runtime_error("not what was ordered: " + message.payload);
            }
            take(message);
        });
        if (!came) {
            throw std::runtime_error("nothing is said any more");
        }
    }

    void forget()
    {
        hear(m_client, [](const Message &) {});
    }

    MqttClient m_client;
    std::map<std::string, size_t> m_cameras;                     // by the topics of their answers
    std::map<std::pair<size_t, uint32_t>, size_t> m_orders = {}; // by camera and setting
};

void wait_for_links(const Broker &broker, size_t cameras)
{
    MqttClient client(broker.port());
    client.subscribe("zv/+/link", 1);
    for (std::set<std::string> up; up.size() < cameras;) {
        const bool came = client.receive(PATIENCE, [&](const Message &message) {
            if (message.payload == "up") {
                up.insert(message.topic);
            }
        });
        if (!came) {
            throw std::runtime_error("a camera does not answer");
        }
    }
}

// Everything that the first bridge publishes after an order, of each change in both directions.
std::vector<Exchange> record_exchanges(const Broker &broker)
{
    std::vector<Exchange> exchanges;
    MqttClient client(broker.port());
    client.subscribe("#", 1);
    hear(client, [](const Message &) {});
    for (const Change &change : {VOLUME_CHANGE, OFFERS_CHANGE}) {
        for (const size_t number : {size_t{0}, size_t{1}}) {
            Exchange &exchange = exchanges.emplace_back(Exchange{order_message(0, change.order, number), {}});
            client.publish(exchange.order);
            hear(client, [&](const Message &message) {
                if (message.topic.find(id_of(0)) != std::string::npos && message.topic != exchange.order.topic) {
                    exchange.answers.push_back(message);
                }
            });
        }
    }
    return exchanges;
}

double processor_time(const std::list<Child> &programs)
{
    std::chrono::nanoseconds sum{};
    for (const Child &program : programs) {
        sum += program.processor_time();
    }
    return nanoseconds(sum);
}

void load_with_changes(Client &client, const Change &change, const std::list<Child> &programs, Numbers &figures)
{
    const size_t first = std::max(FIRST_CHANGES, client.cameras());
    std::vector<double> times;
    double processor = 0;
    for (size_t i = 0; i < first + CHANGES; ++i) {
        if (i == first) {
            times.clear();
            processor = processor_time(programs);
        }
        times.push_back(client.time_of(change, i % client.cameras()));
        std::this_thread::sleep_for(BETWEEN_CHANGES);
    }
    figures.push_back(percentile(times, 50));
    figures.push_back(percentile(times, 99));
    figures.push_back((processor_time(programs) - processor) / CHANGES);
}

void load(Client &client, const std::list<Child> &programs, Numbers &figures)
{
    load_with_changes(client, VOLUME_CHANGE, programs, figures);
    load_with_changes(client, OFFERS_CHANGE, programs, figures);
    figures.push_back(client.time_of_orders(SETS_VOLUME));
}

// What each of the programs takes in a second in which nothing is ordered.
double idle_time(const std::list<Child> &programs)
{
    const auto start = Clock::now();
    const double processor = processor_time(programs);
    std::this_thread::sleep_for(IDLE);
    const double seconds = nanoseconds(Clock::now() - start) * 1e-9;
    return (processor_time(programs) - processor) / seconds / static_cast<double>(programs.size());
}

double mean_memory(const std::list<Child> &programs, std::string_view name)
{
    size_t sum = 0;
    for (const Child &program : programs) {
        sum += program.memory(name);
    }
    return static_cast<double>(sum) / static_cast<double>(programs.size());
}

Numbers measure(size_t cameras)
{
    Numbers figures;
    Numbers of_bridges;
    std::vector<Exchange> exchanges;
    const Broker broker;
    {
        const Bridges bridges(broker, cameras);
        wait_for_links(broker, cameras);
        of_bridges.push_back(idle_time(bridges.programs()));
        exchanges = record_exchanges(broker);
        Client client(broker, cameras);
        load(client, bridges.programs(), figures);
        of_bridges.push_back(mean_memory(bridges.programs(), "Private_Dirty"));
        of_bridges.push_back(mean_memory(bridges.programs(), "Rss"));
    }
    const BareClients clients(broker, cameras, exchanges);
    Client client(broker, cameras);
    load(client, clients.programs(), figures);
    figures.insert(figures.end(), of_bridges.begin(), of_bridges.end());
    return figures;
}

} // namespace

int main(int argc, char **argv)
try {
    const size_t cameras = argc == 2 ? strtoul(argv[1], nullptr, 10) : 0;
    if (cameras < 1) {
        fprintf(stderr, "usage: zvbench_mqtt CAMERAS\n");
        return 2;
    }
    run_anywhere();
    run_as_client();
    for (const double figure : measure(cameras)) {
        printf("%.0f ", figure);
    }
    printf("\n");
    return 0;
} catch (const std::exception &wrong) {
    fprintf(stderr, "zvbench_mqtt: %s\n", wrong.what());
    return 1;
}
