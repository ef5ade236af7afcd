#include "bridge.h"

#include "discovery.h"

#include <algorithm>
#include <cstdio>
#include <mosquitto.h>
#include <poll.h>

namespace zvmqtt {

using std::chrono::milliseconds;

namespace {

// At the latest the connection is looked after: keep-alive goes by seconds.
constexpr milliseconds BETWEEN_LOOKS(1000);

// Of the two seconds that the end may take. The camera lets go within one, and its last answers go out before.
constexpr milliseconds FAREWELL_PATIENCE(1500);
constexpr milliseconds END_PATIENCE(1800);

zvservice::CameraOptions camera_options(const Options &options)
{
    zvservice::CameraOptions camera;
    camera.poll_interval = options.interval;
    return camera;
}

// Where an answer goes. Not to a topic of the camera's own but those for answers: a request is not to have us write a
// state, or an order, in the camera's name.
std::string answer_topic(const Topics &topics, const std::string &wanted)
{
    const bool is_own = wanted == topics.base() || wanted.starts_with(topics.base() + "/");
    const bool is_for_answers = wanted == topics.response() || wanted.starts_with(topics.response() + "/");
    const bool is_topic = !wanted.empty() && wanted.front() != '$' && // the broker's own
                          mosquitto_pub_topic_check(wanted.c_str()) == MOSQ_ERR_SUCCESS;
    return is_topic && (is_for_answers || !is_own) ? wanted : topics.response();
}

} // namespace

Bridge::Bridge(const Options &options)
    : m_options(options), m_topics(options.prefix, options.id), m_camera(camera_options(options)),
      m_subscription(m_camera.subscribe()), m_publisher(m_outbox, m_topics, options.discovery),
      m_orders(m_camera, m_wake)
{
}

Bridge::~Bridge()
{
    if (m_thread.joinable()) {
        end();
        m_thread.join();
    }
}

void Bridge::start()
{
    m_thread = std::thread([this] { run(); });
}

bool Bridge::end()
{
    const auto deadline = Clock::now() + END_PATIENCE;
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_wake.wake();
    m_orders.end();
    m_camera.end(); // and so the order that is being carried out
    m_wake.wake();
    std::unique_lock lock(m_mutex);
    return m_changed.wait_until(lock, deadline, [this] { return m_over; });
}

void Bridge::run()
{
    m_publisher.set_online(true);
    while (!is_over()) {
        wait();
        pass_events_on();
        pass_answers_on();
        if (m_connection) {
            serve();
        } else if (Clock::now() >= m_next_attempt) {
            attempt();
        }
        const std::lock_guard lock(m_mutex);
        m_measured.connected = m_connection && m_connection->is_connected();
        m_measured.given = m_outbox.given();
        m_measured.given_bytes = m_outbox.given_bytes();
        m_measured.dropped_changes = m_outbox.dropped_changes();
        m_measured.dropped_answers = m_outbox.dropped_answers();
    }
    m_connection.reset();
    const std::lock_guard lock(m_mutex);
    m_over = true;
    m_changed.notify_all();
}

void Bridge::wait()
{
    pollfd descriptors[] = {
        {m_wake.descriptor(), POLLIN, 0}, {m_subscription.descriptor(), POLLIN, 0}, {-1, POLLIN, 0}};
    if (m_subscription.ended()) {
        descriptors[1].fd = -1;
    }
    auto patience = BETWEEN_LOOKS;
    if (m_connection) {
        descriptors[2].fd = m_connection->descriptor();
        descriptors[2].events = static_cast<short>(POLLIN | (m_connection->wants_to_write() ? POLLOUT : 0));
    } else {
        const auto left = std::chrono::ceil<milliseconds>(m_next_attempt - Clock::now());
        patience = std::clamp(left, milliseconds(0), BETWEEN_LOOKS);
    }
    poll(descriptors, std::size(descriptors), static_cast<int>(patience.count()));
    if (descriptors[0].revents != 0) {
        m_wake.clear();
    }
}

void Bridge::attempt()
{
    Listener &listener = *this;
    m_connection.emplace(m_options, m_topics, listener);
    serve();
}

void Bridge::serve()
{
    m_connection->serve();
    flush();
    if (m_connection->lost()) {
        complain(m_options.host + ":" + std::to_string(m_options.port) + ": " + m_connection->reason() +
                 "; trying again");
        if (m_connection->was_steady()) {
            m_backoff.reset();
        }
        m_connection.reset();
        m_next_attempt = Clock::now() + m_backoff.next();
    }
}

void Bridge::flush()
{
    if (m_connection && m_connection->is_connected()) {
        if (const std::string fault = m_outbox.flush(*m_connection); !fault.empty() && !m_connection->lost()) {
            complain("cannot publish " + fault);
        }
    }
}

void Bridge::pass_events_on()
{
    while (const std::optional<zvservice::Event> event = m_subscription.next(milliseconds(0))) {
        m_publisher.publish_change(*event);
        flush();
        m_publisher.publish(*event);
    }
}

void Bridge::pass_answers_on()
{
    for (const Answered &answered : m_orders.answered()) {
        answer(answered.request, answered.answer, true);
    }
}

void Bridge::answer(const Request &request, const Answer &answer, bool tried)
{
    Outgoing message;
    message.topic = answer_topic(m_topics, request.response_topic);
    message.payload = answer.json(request.name);
    message.qos = 1;
    message.correlation = request.correlation;
    m_outbox.put_answer(std::move(message), tried);
    const std::lock_guard lock(m_mutex);
    m_measured.requests.count(answer.status);
    m_measured.requests.add_time(Clock::now() - request.arrival);
}

// Whether the thread's work is done: everything is told, or there is nobody to tell it to, or no time left.
bool Bridge::is_over()
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_ending) {
            return false;
        }
    }
    if (!m_taking_leave) {
        m_taking_leave = true;
        m_end = Clock::now() + FAREWELL_PATIENCE;
    }
    if (!m_connection || !m_connection->is_connected()) {
        return true;
    }
    if (m_said_offline && m_outbox.empty()) {
        m_connection->disconnect();
        return true;
    }
    if (!m_said_offline && m_orders.idle() && m_subscription.ended()) {
        m_said_offline = true;
        m_publisher.set_online(false);
        m_wake.wake();
    }
    return Clock::now() >= m_end;
}

void Bridge::complain(const std::string &what)
{
    if (m_complaint != what && !m_taking_leave) {
        fprintf(stderr, "zvmqtt: %s\n", what.c_str());
        m_complaint = what;
    }
}

void Bridge::connected()
{
    printf("zvmqtt: connected to %s:%d as %s\n", m_options.host.c_str(), m_options.port, m_topics.base().c_str());
    fflush(stdout);
    m_complaint.clear();
    m_connection->subscribe(m_topics.set_filter());
    m_connection->subscribe(m_topics.command());
    if (!m_options.discovery.empty()) {
        m_connection->subscribe(birth_topic(m_options.discovery));
    }
    m_outbox.begin();
    const std::lock_guard lock(m_mutex);
    ++m_measured.connections;
}

void Bridge::received(const Incoming &message)
{
    {
        const std::lock_guard lock(m_mutex);
        ++m_measured.taken;
        m_measured.taken_bytes += message.payload.size();
    }
    if (message.payload.empty() && (message.retained || m_options.version_3)) {
        return; // somebody clears a topic; MQTT 3.1.1 does not say that it was a retained one
    }
    if (!m_options.discovery.empty() && message.topic == birth_topic(m_options.discovery)) {
        if (message.payload == ONLINE && !message.retained) {
            m_publisher.send_discovery_again();
        }
        return;
    }
    const std::optional<std::string> name = m_topics.request_of(message.topic);
    if (!name) {
        return;
    }
    Request request;
    request.name = *name;
    request.response_topic = message.response_topic;
    request.correlation = message.correlation;
    if (const std::optional<Answer> over = m_orders.take(request, message)) {
        answer(request, *over, false);
    }
}

void Bridge::sent(int number)
{
    m_outbox.sent(number);
}

void Bridge::refused(const std::string &what)
{
    complain("the broker refuses " + what);
}

std::string Bridge::metrics()
{
    zvservice::MetricsText text;
    zvservice::write_metrics(text, *m_camera.snapshot(), m_camera.statistics());
    const std::lock_guard lock(m_mutex);
    text.family("zv_broker_connected", "gauge", "Whether the broker has acknowledged the connection.");
    text.sample("", static_cast<uint64_t>(m_measured.connected));
    text.family("zv_broker_connections", "counter", "Connections that the broker acknowledged.");
    text.sample("", m_measured.connections);
    text.family("zv_messages", "counter", "Messages of the broker, and to it.");
    text.sample("direction=\"in\"", m_measured.taken);
    text.sample("direction=\"out\"", m_measured.given);
    text.family("zv_message_bytes", "counter", "Their payloads.");
    text.sample("direction=\"in\"", m_measured.taken_bytes);
    text.sample("direction=\"out\"", m_measured.given_bytes);
    text.family("zv_messages_dropped", "counter", "Messages that the broker was not there for, or too slow.");
    text.sample("kind=\"change\"", m_measured.dropped_changes);
    text.sample("kind=\"response\"", m_measured.dropped_answers);
    m_measured.requests.write(text, "From a request's arrival to its answer.");
    return text.end();
}

} // namespace zvmqtt
