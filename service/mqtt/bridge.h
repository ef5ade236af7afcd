// The bridge between a camera and a broker.
#pragma once

#include "backoff.h"
#include "connection.h"
#include "options.h"
#include "orders.h"
#include "outbox.h"
#include "publisher.h"
#include "topics.h"
#include "wake.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <request_counters.h>
#include <string>
#include <thread>
#include <zvservice/camera.h>
#include <zvservice/statistics.h>
#include <zvservice/subscription.h>

namespace zvmqtt {

// One thread of its own has the broker. Nothing of the camera waits for that: its changes and the answers to requests
// gather in the outbox.
class Bridge : private Connection::Listener {
  public:
    // The options outlive it. Throws std::system_error where there is no thread or descriptor left.
    explicit Bridge(const Options &options);
    ~Bridge();
    Bridge(const Bridge &) = delete;
    Bridge &operator=(const Bridge &) = delete;

    // Begins with the broker. Once.
    void start();

    // Takes leave: no order is carried out any more, what waits is answered, "offline" is told. Within two seconds;
    // false where the network kept it from that, and the thread still hangs there: then the process is to end without
    // the destructor, and the broker tells the last will.
    bool end();

    // What is measured, as OpenMetrics text. Any thread.
    std::string metrics();

  private:
    using Clock = std::chrono::steady_clock;

    void run();
    void wait();
    void attempt();
    void serve();
    void flush();
    void pass_events_on();
    void pass_answers_on();
    void answer(const Request &request, const Answer &answer, bool tried);
    bool is_over();
    void complain(const std::string &what);

    void connected() override;
    void received(const Incoming &message) override;
    void sent(int number) override;
    void refused(const std::string &what) override;

    const Options &m_options;
    const Topics m_topics;
    const Wake m_wake;
    zvservice::Camera m_camera;
    zvservice::Subscription m_subscription;

    // The thread's own.
    Outbox m_outbox;
    Publisher m_publisher;
    Orders m_orders;
    Backoff m_backoff;
    std::optional<Connection> m_connection;
    Clock::time_point m_next_attempt = Clock::now();
    Clock::time_point m_end; // of the farewell
    std::string m_complaint; // the last, so that it is said once
    bool m_taking_leave = false;
    bool m_said_offline = false;

    // What others look at.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_ending = false;
    bool m_over = false;
    struct Measured {
        bool connected = false;
        uint64_t connections = 0;
        uint64_t taken = 0; // messages that came in
        uint64_t taken_bytes = 0;
        uint64_t given = 0;
        uint64_t given_bytes = 0;
        uint64_t dropped_changes = 0;
        uint64_t dropped_answers = 0;
        zvprogram::RequestCounters requests;
    } m_measured;

    std::thread m_thread;
};

} // namespace zvmqtt
