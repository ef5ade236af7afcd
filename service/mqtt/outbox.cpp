#include "outbox.h"

#include <algorithm>
#include <utility>

namespace zvmqtt {

Outbox::Slot Outbox::add(const std::string &topic, int qos, Slot before)
{
    Item item;
    item.message.topic = topic;
    item.message.qos = qos;
    item.message.retained = true;
    return m_slots.insert(before, std::move(item));
}

void Outbox::put(Slot slot, std::string payload)
{
    if (slot->message.payload != payload) {
        slot->message.payload = std::move(payload);
        slot->due = true;
    }
}

void Outbox::send_again(Slot slot)
{
    slot->due = !slot->message.payload.empty();
}

void Outbox::put_change(const std::string &topic, std::string payload)
{
    if (m_changes.size() == CHANGE_MAX) {
        m_changes.pop_front();
        ++m_dropped_changes;
    }
    Item item;
    item.message.topic = topic;
    item.message.payload = std::move(payload);
    item.due = true;
    m_changes.push_back(std::move(item));
}

void Outbox::put_answer(Outgoing answer, bool tried)
{
    if (!tried && m_answers.size() >= REFUSAL_MAX) {
        ++m_dropped_answers;
        return;
    }
    m_answers.push_back({std::move(answer), true, 0});
}

void Outbox::begin()
{
    for (Item &item : m_slots) {
        item.due = !item.message.payload.empty();
        item.number = 0;
    }
    sweep();
    for (Item &item : m_answers) {
        item.due = true;
        item.number = 0;
    }
    m_dropped_changes += m_changes.size();
    m_changes.clear();
}

std::string Outbox::flush(Connection &connection)
{
    std::string fault;
    sweep();
    for (Item &item : m_slots) {
        give(connection, item, fault);
    }
    for (Item &item : m_changes) {
        give(connection, item, fault);
        if (item.number != 0) {
            break; // the system takes no more now
        }
    }
    for (Item &item : m_answers) {
        give(connection, item, fault);
    }
    return fault;
}

void Outbox::sent(int number)
{
    // Not taken away yet: a message can be sent within flush().
    for (Item &item : m_slots) {
        item.number = item.number == number ? 0 : item.number;
    }
    for (Item &item : m_answers) {
        item.number = item.number == number ? 0 : item.number;
    }
    for (Item &item : m_changes) {
        item.number = item.number == number ? 0 : item.number;
    }
}

bool Outbox::empty() const
{
    const auto over = [](const Item &item) { return item.over(); };
    return std::ranges::all_of(m_slots, over) && std::ranges::all_of(m_answers, over) &&
           std::ranges::all_of(m_changes, over);
}

void Outbox::give(Connection &connection, Item &item, std::string &fault)
{
    if (!item.due || item.number != 0 || connection.lost()) {
        return;
    }
    item.due = false;
    if (!connection.publish(item.message, item.number)) {
        item.due = connection.lost();
        fault = item.message.topic + ": " + connection.fault();
        return;
    }
    ++m_given;
    m_given_bytes += item.message.payload.size();
}

void Outbox::sweep()
{
    const auto over = [](const Item &item) { return item.over(); };
    std::erase_if(m_answers, over);
    std::erase_if(m_changes, over);
}

} // namespace zvmqtt
