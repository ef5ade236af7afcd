#include "mqtt_client.h"

#include <algorithm>
#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <stdexcept>
#include <thread>
#include <utility>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds PATIENCE(5000);
constexpr int KEEP_ALIVE = 60; // in seconds

void check(int result)
{
    if (result != MOSQ_ERR_SUCCESS) {
        throw std::runtime_error(std::string("the broker's client: ") + mosquitto_strerror(result));
    }
}

} // namespace

MqttClient::MqttClient(uint16_t port) : m_client(mosquitto_new(nullptr, true, this))
{
    mosquitto_int_option(m_client, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
    mosquitto_int_option(m_client, MOSQ_OPT_TCP_NODELAY, 1);
    mosquitto_message_callback_set(m_client, [](mosquitto *, void *self, const mosquitto_message *message) {
        static_cast<MqttClient *>(self)->m_messages.push_back(
            {message->topic, std::string(static_cast<const char *>(message->payload), size_t(message->payloadlen)),
             message->qos, message->retain, Clock::now()});
    });
    mosquitto_subscribe_callback_set(m_client, [](mosquitto *, void *self, int number, int, const int *) {
        static_cast<MqttClient *>(self)->m_subscribed = number;
    });
    const auto end = Clock::now() + PATIENCE;
    while (mosquitto_connect(m_client, "127.0.0.1", port, KEEP_ALIVE) != MOSQ_ERR_SUCCESS) {
        if (Clock::now() > end) {
            mosquitto_destroy(m_client);
            throw std::runtime_error("the broker does not answer");
        }
        std::this_thread::sleep_for(milliseconds(10));
    }
}

MqttClient::~MqttClient()
{
    mosquitto_disconnect(m_client);
    mosquitto_destroy(m_client);
}

void MqttClient::subscribe(const std::string &filter, int qos)
{
    int number = 0;
    check(mosquitto_subscribe_v5(m_client, &number, filter.c_str(), qos, MQTT_SUB_OPT_RETAIN_AS_PUBLISHED, nullptr));
    while (m_subscribed != number) {
        loop(PATIENCE);
    }
}

void MqttClient::publish(const Message &message)
{
    check(mosquitto_publish(m_client, nullptr, message.topic.c_str(), int(message.payload.size()),
                            message.payload.data(), message.qos, message.retained));
}

bool MqttClient::receive(milliseconds patience, const Take &take)
{
    const auto end = Clock::now() + patience;
    while (m_messages.empty()) {
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
        if (left <= milliseconds::zero()) {
            return false;
        }
        loop(left);
    }
    std::ranges::for_each(std::exchange(m_messages, {}), take);
    return true;
}

void MqttClient::loop(milliseconds patience)
{
    check(mosquitto_loop(m_client, int(patience.count()), 1));
}

} // namespace bench
