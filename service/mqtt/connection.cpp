#include "connection.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <new>
#include <sys/socket.h>
#include <text.h>

namespace zvmqtt {

namespace {

constexpr int KEEPALIVE = 30; // in seconds; after half as long again without a word the broker tells the last will
constexpr std::chrono::seconds ACKNOWLEDGEMENT_PATIENCE(10);
constexpr std::chrono::seconds STEADY(10);
constexpr uint32_t PACKET_MAX = 2 << 20; // in bytes, of what comes in: a broker keeps larger ones to itself
constexpr int UNSENT_MAX = 16384;        // in bytes, that wait in the system: on a slow line the newest state is to win
constexpr int UNACKNOWLEDGED_MAX = 32;   // of requests that come in
constexpr int FIRST_REFUSAL = 128;       // of the protocol's reason codes

struct PropertiesDeleter {
    void operator()(mosquitto_property *properties) const { mosquitto_property_free_all(&properties); }
};
using Properties = std::unique_ptr<mosquitto_property, PropertiesDeleter>;

std::string text_property(const mosquitto_property *properties, int identifier)
{
    char *value = nullptr;
    if (mosquitto_property_read_string(properties, identifier, &value, false) == nullptr) {
        return "";
    }
    const std::unique_ptr<char, decltype(&free)> owner(value, free);
    return value;
}

std::string binary_property(const mosquitto_property *properties, int identifier)
{
    void *value = nullptr;
    uint16_t size = 0;
    if (mosquitto_property_read_binary(properties, identifier, &value, &size, false) == nullptr) {
        return "";
    }
    const std::unique_ptr<void, decltype(&free)> owner(value, free);
    return {static_cast<const char *>(value), size};
}

// "zv.C3441": no other camera's, for a broker lets one client have a name.
std::string client_name(const Options &options)
{
    return plain(options.prefix) + "." + plain(options.id);
}

// Whether it is the message that cannot be sent, and not the connection that is gone.
bool is_of_the_message(int outcome)
{
    constexpr int FAULTS[] = {MOSQ_ERR_INVAL,           MOSQ_ERR_PAYLOAD_SIZE,      MOSQ_ERR_MALFORMED_UTF8,
                              MOSQ_ERR_OVERSIZE_PACKET, MOSQ_ERR_QOS_NOT_SUPPORTED, MOSQ_ERR_RETAIN_NOT_SUPPORTED};
    return std::ranges::find(FAULTS, outcome) != std::end(FAULTS);
}

std::string without_stop(std::string text)
{
    text.erase(text.find_last_not_of('.') + 1);
    return text;
}

const char *text_or_null(const std::string &text)
{
    return text.empty() ? nullptr : text.c_str();
}

} // namespace

Connection::Connection(const Options &options, const Topics &topics, Listener &listener)
    : m_listener(listener), m_version_3(options.version_3),
      m_client(mosquitto_new(client_name(options).c_str(), true, this))
{
    if (m_client == nullptr) {
        throw std::bad_alloc();
    }
    configure(options, topics);
    mosquitto_property *limit = nullptr;
    if (!m_version_3) {
        mosquitto_property_add_int32(&limit, MQTT_PROP_MAXIMUM_PACKET_SIZE, PACKET_MAX);
    }
    const Properties properties(limit);
    if (!m_lost) {
        m_begun = Clock::now();
        check(mosquitto_connect_bind_v5(m_client, options.host.c_str(), options.port, KEEPALIVE, nullptr, limit));
        setsockopt(descriptor(), IPPROTO_TCP, TCP_NOTSENT_LOWAT, &UNSENT_MAX, sizeof UNSENT_MAX);
    }
}

Connection::~Connection()
{
    mosquitto_destroy(m_client);
}

void Connection::configure(const Options &options, const Topics &topics)
{
    mosquitto_int_option(m_client, MOSQ_OPT_PROTOCOL_VERSION, m_version_3 ? MQTT_PROTOCOL_V311 : MQTT_PROTOCOL_V5);
    mosquitto_int_option(m_client, MOSQ_OPT_RECEIVE_MAXIMUM, UNACKNOWLEDGED_MAX);
    mosquitto_int_option(m_client, MOSQ_OPT_TCP_NODELAY, 1);
    mosquitto_log_callback_set(m_client, on_log);
    mosquitto_connect_v5_callback_set(m_client, on_connect);
    mosquitto_disconnect_v5_callback_set(m_client, on_disconnect);
    mosquitto_message_v5_callback_set(m_client, on_message);
    mosquitto_publish_v5_callback_set(m_client, on_publish);
    mosquitto_subscribe_v5_callback_set(m_client, on_subscribe);
    check(mosquitto_will_set(m_client, topics.availability().c_str(), sizeof OFFLINE - 1, OFFLINE, 1, true));
    if (!options.username.empty()) {
        check(mosquitto_username_pw_set(m_client, options.username.c_str(), text_or_null(options.password)));
    }
    if (!options.cafile.empty()) {
        // Nobody is there to type the password of a key.
        if (mosquitto_tls_set(m_client, options.cafile.c_str(), nullptr, text_or_null(options.certificate),
                              text_or_null(options.key), [](char *, int, int, void *) { return 0; }) != 0) {
            lose("its authorities, the certificate or the key cannot be read");
        }
    }
}

bool Connection::was_steady() const
{
    return m_acknowledged < Clock::now() - STEADY;
}

int Connection::descriptor() const
{
    return mosquitto_socket(m_client);
}

bool Connection::wants_to_write() const
{
    return mosquitto_want_write(m_client);
}

void Connection::serve()
{
    if (!m_lost) {
        check(mosquitto_loop_read(m_client, 1));
    }
    if (!m_lost && wants_to_write()) {
        check(mosquitto_loop_write(m_client, 1));
    }
    if (!m_lost) {
        check(mosquitto_loop_misc(m_client));
    }
    if (!m_lost && !m_connected && Clock::now() - m_begun > ACKNOWLEDGEMENT_PATIENCE) {
        lose("it did not acknowledge the connection");
    }
}

bool Connection::publish(const Outgoing &message, int &number)
{
    mosquitto_property *added = nullptr;
    if (!message.correlation.empty() && !m_version_3) {
        mosquitto_property_add_binary(&added, MQTT_PROP_CORRELATION_DATA, message.correlation.data(),
                                      static_cast<uint16_t>(message.correlation.size()));
    }
    const Properties properties(added);
    const int outcome =
        mosquitto_publish_v5(m_client, &number, message.topic.c_str(), static_cast<int>(message.payload.size()),
                             message.payload.data(), message.qos, message.retained, added);
    if (outcome == MOSQ_ERR_SUCCESS) {
        return true;
    }
    number = 0;
    m_fault = words(outcome);
    if (!is_of_the_message(outcome)) {
        lose(m_fault);
    }
    return false;
}

void Connection::subscribe(const std::string &filter)
{
    // A retained order is to be seen as one, also while we are there.
    const int as_published = m_version_3 ? 0 : MQTT_SUB_OPT_RETAIN_AS_PUBLISHED;
    check(mosquitto_subscribe_v5(m_client, nullptr, filter.c_str(), 1, as_published, nullptr));
}

void Connection::disconnect()
{
    mosquitto_disconnect(m_client);
}

void Connection::check(int outcome)
{
    if (outcome != MOSQ_ERR_SUCCESS) {
        lose(words(outcome));
    }
}

// The first reason is the telling one: what comes after it is that the connection is gone.
void Connection::lose(const std::string &why)
{
    m_lost = true;
    m_connected = false;
    if (m_reason.empty()) {
        m_reason = why;
    }
}

std::string Connection::words(int outcome) const
{
    switch (outcome) {
    case MOSQ_ERR_ERRNO:
        return strerror(errno);
    case MOSQ_ERR_EAI:
        return "no such host";
    case MOSQ_ERR_TLS:
        // Of "OpenSSL Error[0]: error:0A000086:SSL routines::certificate verify failed" what a person needs.
        return "TLS: " + std::string(zvprogram::trim(m_last_error.substr(m_last_error.rfind(':') + 1)));
    default:
        return without_stop(mosquitto_strerror(outcome));
    }
}

void Connection::on_connect(mosquitto *, void *self, int code, int, const mqtt5__property *)
{
    auto *connection = static_cast<Connection *>(self);
    if (code != 0) {
        connection->lose(
            without_stop(connection->m_version_3 ? mosquitto_connack_string(code) : mosquitto_reason_string(code)));
        return;
    }
    connection->m_connected = true;
    connection->m_acknowledged = Clock::now();
    connection->m_listener.connected();
}

void Connection::on_disconnect(mosquitto *, void *self, int code, const mqtt5__property *)
{
    if (code >= FIRST_REFUSAL) {
        static_cast<Connection *>(self)->lose(mosquitto_reason_string(code));
    }
}

void Connection::on_message(mosquitto *, void *self, const mosquitto_message *message,
                            const mqtt5__property *properties)
{
    Incoming incoming;
    incoming.topic = message->topic;
    incoming.payload = {static_cast<const char *>(message->payload), static_cast<size_t>(message->payloadlen)};
    incoming.retained = message->retain;
    incoming.response_topic = text_property(properties, MQTT_PROP_RESPONSE_TOPIC);
    incoming.correlation = binary_property(properties, MQTT_PROP_CORRELATION_DATA);
    static_cast<Connection *>(self)->m_listener.received(incoming);
}

void Connection::on_publish(mosquitto *, void *self, int number, int code, const mqtt5__property *)
{
    auto *connection = static_cast<Connection *>(self);
    if (code >= FIRST_REFUSAL) {
        connection->m_listener.refused(std::string("a message: ") + mosquitto_reason_string(code));
    }
    connection->m_listener.sent(number);
}

void Connection::on_subscribe(mosquitto *, void *self, int, int count, const int *granted, const mqtt5__property *)
{
    for (int i = 0; i < count; ++i) {
        if (granted[i] >= FIRST_REFUSAL) {
            static_cast<Connection *>(self)->m_listener.refused(std::string("a subscription: ") +
                                                                mosquitto_reason_string(granted[i]));
        }
    }
}

void Connection::on_log(mosquitto *, void *self, int level, const char *text)
{
    if (level == MOSQ_LOG_ERR) {
        static_cast<Connection *>(self)->m_last_error = text;
    }
}

} // namespace zvmqtt
