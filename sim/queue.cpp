#include "queue.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace zv::sim {

namespace {

constexpr long DEPTH = 10; // what the kernel allows without a raised limit
constexpr mode_t EVERYBODY = 0666;
constexpr char FILLER = 0;

std::string failure(const std::string &name, size_t message_size)
{
    const int error = errno;
    std::string text = name + ": " + strerror(error);
    if (error == EINVAL) {
        text += "; it holds messages of " + std::to_string(message_size) +
                " bytes, which the limit fs.mqueue.msgsize_max must allow: sysctl -w fs.mqueue.msgsize_max=16384";
    } else if (error == EMFILE) {
        text += "; the limit on bytes in message queues (ulimit -q) is too small";
    }
    return text;
}

} // namespace

std::string Queue::open(const std::string &name, size_t message_size)
{
    mq_attr attributes = {};
    attributes.mq_maxmsg = DEPTH;
    attributes.mq_msgsize = static_cast<long>(message_size);
    for (bool taken_over = true;; taken_over = false) {
        m_descriptor = mq_open(name.c_str(), O_RDWR | O_CREAT | O_NONBLOCK | O_CLOEXEC, EVERYBODY, &attributes);
        if (m_descriptor < 0) {
            return failure(name, message_size);
        }
        mq_attr present = {};
        mq_getattr(m_descriptor, &present);
        if (present.mq_msgsize == attributes.mq_msgsize || !taken_over) {
            break;
        }
        mq_close(m_descriptor);
        mq_unlink(name.c_str());
    }
    fchmod(m_descriptor, EVERYBODY); // whatever the process's mask says
    m_name = name;
    m_buffer.resize(message_size);
    while (receive()) {
    }
    return {};
}

void Queue::close()
{
    if (m_descriptor >= 0) {
        mq_unlink(m_name.c_str()); // first: what has the name afterwards is another's
        mq_close(m_descriptor);
        m_descriptor = -1;
    }
}

void Queue::abandon()
{
    mq_close(m_descriptor);
    m_descriptor = -1;
}

std::optional<Bytes> Queue::receive()
{
    auto *buffer = reinterpret_cast<char *>(m_buffer.data());
    ssize_t length = 0;
    do {
        length = mq_receive(m_descriptor, buffer, m_buffer.size(), nullptr);
    } while (length == sizeof FILLER && buffer[0] == FILLER);
    if (length < 0) {
        return std::nullopt;
    }
    return Bytes(m_buffer.begin(), m_buffer.begin() + length);
}

void Queue::fill()
{
    while (mq_send(m_descriptor, &FILLER, sizeof FILLER, 0) == 0) {
    }
}

bool post(const std::string &queue, View message)
{
    const mqd_t descriptor = mq_open(queue.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    const bool sent = mq_send(descriptor, reinterpret_cast<const char *>(message.data()), message.size(), 0) == 0;
    mq_close(descriptor);
    return sent;
}

} // namespace zv::sim
