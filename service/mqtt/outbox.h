// What is to be told to the broker, also while it is away: bounded, whatever the broker does.
#pragma once

#include "connection.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <list>
#include <string>

namespace zvmqtt {

// One thread.
class Outbox {
    // A message and where it is.
    struct Item {
        Outgoing message;
        bool due = false;
        int number = 0; // on its way, as this

        bool over() const { return !due && number == 0; }
    };

  public:
    static constexpr size_t CHANGE_MAX = 64;
    static constexpr size_t REFUSAL_MAX = 64;

    // A retained topic: of its payloads one is on its way, and the newest waits for that. What was added last is told
    // last, but for what goes before another one.
    using Slot = std::list<Item>::iterator;
    Slot add(const std::string &topic, int qos) { return add(topic, qos, m_slots.end()); }
    Slot add(const std::string &topic, int qos, Slot before);

    // The newest payload. One that is the same is not sent again.
    void put(Slot slot, std::string payload);
    void send_again(Slot slot);

    // A message that is nothing without those before it. Beyond CHANGE_MAX the oldest go, and all at a new connection.
    void put_change(const std::string &topic, std::string payload);

    // An answer to a request, kept until it is the broker's. Where the request was not tried it is a refusal, and is
    // dropped if REFUSAL_MAX answers wait.
    void put_answer(Outgoing answer, bool tried);

    // A new connection: everything is to be told anew.
    void begin();

    // Gives the connection what may go. Returns what it does not take, in words; empty when it takes everything.
    std::string flush(Connection &connection);

    // A message of this number is the broker's.
    void sent(int number);

    // Nothing waits, and nothing is on its way.
    bool empty() const;

    uint64_t dropped_changes() const { return m_dropped_changes; }
    uint64_t dropped_answers() const { return m_dropped_answers; }
    uint64_t given() const { return m_given; } // messages to the connection
    uint64_t given_bytes() const { return m_given_bytes; }

  private:
    void give(Connection &connection, Item &item, std::string &fault);
    void sweep();

    std::list<Item> m_slots; // in the order in which they are told
    std::deque<Item> m_changes;
    std::deque<Item> m_answers;
    uint64_t m_dropped_changes = 0;
    uint64_t m_dropped_answers = 0;
    uint64_t m_given = 0;
    uint64_t m_given_bytes = 0;
};

} // namespace zvmqtt
