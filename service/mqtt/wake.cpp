#include "wake.h"

#include <cerrno>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace zvmqtt {

Wake::Wake() : m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
}

Wake::~Wake()
{
    close(m_descriptor);
}

void Wake::wake() const
{
    eventfd_write(m_descriptor, 1);
}

void Wake::clear() const
{
    eventfd_t count = 0;
    eventfd_read(m_descriptor, &count);
}

} // namespace zvmqtt
