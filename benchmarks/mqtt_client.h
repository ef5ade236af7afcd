// A client of libmosquitto without a thread: it orders and listens, or answers in a bridge's place.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct mosquitto;

namespace bench {

struct Message {
    std::string topic;
    std::string payload;
    int qos = 0;
    bool retained = false;                              // as it was published
    std::chrono::steady_clock::time_point arrived = {}; // whole
};

class MqttClient {
  public:
    // Connected to a broker on loopback. Throws std::runtime_error when that does not come about for seconds.
    explicit MqttClient(uint16_t port);
    ~MqttClient();
    MqttClient(const MqttClient &) = delete;
    MqttClient &operator=(const MqttClient &) = delete;

    // Returns when the broker has it; messages that came meanwhile are kept for receive().
    void subscribe(const std::string &filter, int qos);

    // Leaves at once.
    void publish(const Message &message);

    // Hands over the messages that have come, after a wait for the first; false when none came in time. Throws
    // std::runtime_error when the broker closes the connection.
    using Take = std::function<void(const Message &message)>;
    bool receive(std::chrono::milliseconds patience, const Take &take);

  private:
    void loop(std::chrono::milliseconds patience);

    mosquitto *m_client;
    std::vector<Message> m_messages;
    int m_subscribed = 0; // the number of the last request that the broker acknowledged
};

} // namespace bench
