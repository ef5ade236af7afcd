#include "connections.h"

#include <sys/socket.h>

namespace zvweb {

Connections::Connection &Connections::open(int descriptor)
{
    const std::lock_guard lock(m_mutex);
    m_connections.push_back({descriptor, m_connections.size() >= m_limit});
    return m_connections.back();
}

void Connections::close(Connection &connection)
{
    const std::lock_guard lock(m_mutex);
    m_answering -= connection.answering ? 1 : 0;
    m_connections.remove_if([&](const Connection &other) { return &other == &connection; });
}

void Connections::begin_answer(Connection &connection)
{
    const std::lock_guard lock(m_mutex);
    connection.answering = true;
    ++m_answering;
}

void Connections::end_answer(Connection &connection)
{
    const std::lock_guard lock(m_mutex);
    m_answering -= connection.answering ? 1 : 0;
    connection.answering = false;
    connection.since = Clock::now();
}

void Connections::shut_down_idle()
{
    const std::lock_guard lock(m_mutex);
    const Clock::time_point longest = Clock::now() - REQUEST_PATIENCE;
    for (const Connection &connection : m_connections) {
        if (!connection.answering && connection.since < longest) {
            shutdown(connection.descriptor, SHUT_RDWR);
        }
    }
}

size_t Connections::count() const
{
    const std::lock_guard lock(m_mutex);
    return m_connections.size();
}

size_t Connections::answering() const
{
    const std::lock_guard lock(m_mutex);
    return m_answering;
}

} // namespace zvweb
