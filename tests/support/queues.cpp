#include "queues.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>

namespace test {

namespace {

struct Failure {
    int error = 0;
    int count = 0;
    int skip = 0;
};

Failure failures[4];

// True when this use of `call` is to fail; errno is set then.
bool fails(Call call)
{
    Failure &failure = failures[static_cast<size_t>(call)];
    if (failure.count == 0) {
        return false;
    }
    if (failure.skip > 0) {
        --failure.skip;
        return false;
    }
    --failure.count;
    errno = failure.error;
    return true;
}

template <class Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

Queue::Queue(std::string name, long depth, long message_size) : m_name(std::move(name))
{
    mq_attr attributes = {};
    attributes.mq_maxmsg = depth;
    attributes.mq_msgsize = message_size;
    mq_unlink(m_name.c_str());
    m_descriptor = mq_open(m_name.c_str(), O_RDWR | O_CREAT | O_NONBLOCK, 0600, &attributes);
    EXPECT_GE(m_descriptor, 0) << m_name << ": " << strerror(errno)
                               << " (messages of 10000 bytes need a raised fs.mqueue.msgsize_max)";
}

Queue::~Queue()
{
    mq_close(m_descriptor);
    mq_unlink(m_name.c_str());
}

void Queue::send(const Bytes &message) const
{
    const auto *bytes = reinterpret_cast<const char *>(message.data());
    ASSERT_EQ(0, next<decltype(mq_send)>("mq_send")(m_descriptor, bytes, message.size(), 0))
        << m_name << ": " << strerror(errno);
}

bool Queue::empty() const
{
    mq_attr attributes = {};
    return next<decltype(mq_getattr)>("mq_getattr")(m_descriptor, &attributes) == 0 && attributes.mq_curmsgs == 0;
}

Bytes Queue::receive() const
{
    Bytes message(16384);
    auto *bytes = reinterpret_cast<char *>(message.data());
    const ssize_t length = next<decltype(mq_receive)>("mq_receive")(m_descriptor, bytes, message.size(), nullptr);
    message.resize(length > 0 ? static_cast<size_t>(length) : 0);
    return message;
}

void fail(Call call, int error, int count, int skip)
{
    failures[static_cast<size_t>(call)] = {error, count, skip};
}

void fail_nothing()
{
    for (Failure &failure : failures) {
        failure = {};
    }
}

} // namespace test

extern "C" {

mqd_t mq_open(const char *name, int flags, ...)
{
    if (test::fails(test::Call::MQ_OPEN)) {
        return -1;
    }
    using Open = mqd_t(const char *, int, mode_t, mq_attr *);
    mode_t mode = 0;
    mq_attr *attributes = nullptr;
    if ((flags & O_CREAT) != 0) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        attributes = va_arg(arguments, mq_attr *);
        va_end(arguments);
    }
    return test::next<Open>("mq_open")(name, flags, mode, attributes);
}

int mq_send(mqd_t queue, const char *message, size_t length, unsigned priority)
{
    return test::fails(test::Call::MQ_SEND)
               ? -1
               : test::next<decltype(mq_send)>("mq_send")(queue, message, length, priority);
}

ssize_t mq_receive(mqd_t queue, char *message, size_t size, unsigned *priority)
{
    return test::fails(test::Call::MQ_RECEIVE)
               ? -1
               : test::next<decltype(mq_receive)>("mq_receive")(queue, message, size, priority);
}

int mq_getattr(mqd_t queue, mq_attr *attributes) noexcept
{
    return test::fails(test::Call::MQ_GETATTR) ? -1 : test::next<decltype(mq_getattr)>("mq_getattr")(queue, attributes);
}

} // extern "C"
