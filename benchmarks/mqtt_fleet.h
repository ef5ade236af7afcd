// A broker, and what serves cameras on it: bridges with a simulated camera each, or clients without one.
#pragma once

#include "child.h"
#include "mqtt_client.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <vector>

namespace bench {

// mosquitto, on a free port of loopback; with nothing in its configuration but that it sends at once.
class Broker {
  public:
    Broker();

    uint16_t port() const { return m_port; }

  private:
    uint16_t m_port;
    Child m_program;
};

// What names a camera in its topics, and what they begin with.
std::string id_of(size_t camera);
std::string base_of(size_t camera);

// zvmqtt and its camera, so many times. More than one of them need a user id each, which root alone can give them.
class Bridges {
  public:
    Bridges(const Broker &broker, size_t count);

    const std::list<Child> &programs() const { return m_bridges; }

  private:
    std::list<Child> m_cameras;
    std::list<Child> m_bridges; // end first
};

// What is answered to an order, as the first camera's bridge did.
struct Exchange {
    Message order;
    std::vector<Message> answers;
};

// In place of each bridge libmosquitto alone: it answers an order by the messages of the same exchange at once.
class BareClients {
  public:
    BareClients(const Broker &broker, size_t count, const std::vector<Exchange> &exchanges);

    const std::list<Child> &programs() const { return m_clients; }

  private:
    std::list<Child> m_clients;
};

} // namespace bench
