// One connection to the broker, from the attempt to its end: a later one starts from nothing.
#pragma once

#include "options.h"
#include "topics.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct mosquitto;
struct mosquitto_message;
struct mqtt5__property;

namespace zvmqtt {

// A message that came in. Its texts live as long as the call that brings it.
struct Incoming {
    std::string_view topic;
    std::string_view payload;
    bool retained = false;
    std::string response_topic; // empty without one
    std::string correlation;    // any bytes
};

struct Outgoing {
    std::string topic;
    std::string payload;
    int qos = 0;
    bool retained = false;
    std::string correlation; // empty without any
};

class Connection {
  public:
    using Clock = std::chrono::steady_clock;

    // What a connection tells, from within serve() and publish().
    class Listener {
      public:
        virtual void connected() = 0; // the broker has acknowledged it
        virtual void received(const Incoming &message) = 0;
        virtual void sent(int number) = 0; // a message is the broker's, or with QoS 0 was given to the system
        virtual void refused(const std::string &what) = 0; // a message or a subscription, by the broker

      protected:
        ~Listener() = default;
    };

    // Looks the broker up and connects, which can block as long as the network likes; the camera's last will is with
    // the broker from then on. Options, topics and listener outlive it.
    Connection(const Options &options, const Topics &topics, Listener &listener);

    // Without a farewell, so that the broker tells the last will, unless there was one.
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    bool lost() const { return m_lost; }
    bool is_connected() const { return m_connected; }

    // It was acknowledged, and then lasted: not one of many that the broker takes and closes again, for a message that
    // it does not bear, or for another client of the same name.
    bool was_steady() const;

    // Why it was lost, or why it could not be had.
    const std::string &reason() const { return m_reason; }

    // To wait on, for reading and, where wants_to_write(), for writing.
    int descriptor() const;
    bool wants_to_write() const;

    // Reads and writes what can be, and looks after what is due: at least once a second.
    void serve();

    // Gives a message to the connection. `number` is set before sent() can name it, and 0 on failure: fault() has it in
    // words, which may be a fault of the message alone.
    bool publish(const Outgoing &message, int &number);
    const std::string &fault() const { return m_fault; }

    void subscribe(const std::string &filter);

    // Says farewell: the last will is not told.
    void disconnect();

  private:
    void configure(const Options &options, const Topics &topics);
    void check(int outcome);
    void lose(const std::string &why);
    std::string words(int outcome) const;

    // What the library of the protocol calls, with the connection as its second argument.
    static void on_connect(mosquitto *, void *self, int code, int flags, const mqtt5__property *);
    static void on_disconnect(mosquitto *, void *self, int code, const mqtt5__property *);
    static void on_message(mosquitto *, void *self, const mosquitto_message *message,
                           const mqtt5__property *properties);
    static void on_publish(mosquitto *, void *self, int number, int code, const mqtt5__property *);
    static void on_subscribe(mosquitto *, void *self, int number, int count, const int *granted,
                             const mqtt5__property *);
    static void on_log(mosquitto *, void *self, int level, const char *text);

    Listener &m_listener;
    const bool m_version_3;
    mosquitto *m_client;
    Clock::time_point m_begun = Clock::now();
    Clock::time_point m_acknowledged = Clock::time_point::max();
    bool m_connected = false;
    bool m_lost = false;
    std::string m_reason;
    std::string m_fault;
    std::string m_last_error; // of the log
};

} // namespace zvmqtt
