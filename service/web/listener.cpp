#include "listener.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

namespace zvweb {

namespace {

// What the kernel holds for a client that does not read, in bytes: it comes on top of what the event log allows.
constexpr int SEND_BUFFER = 65536;

void set_option(int descriptor, int level, int name, int value)
{
    setsockopt(descriptor, level, name, &value, sizeof value);
}

} // namespace

int listen_on(const Options &options)
{
    const int descriptor = socket(options.address.ss_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor >= 0) {
        set_option(descriptor, SOL_SOCKET, SO_REUSEADDR, 1);
        set_option(descriptor, SOL_SOCKET, SO_SNDBUF, SEND_BUFFER); // those that it accepts have it from here
        if (bind(descriptor, reinterpret_cast<const sockaddr *>(&options.address), options.address_size) == 0 &&
            listen(descriptor, SOMAXCONN) == 0) {
            return descriptor;
        }
    }
    const std::string why = strerror(errno);
    if (descriptor >= 0) {
        close(descriptor);
    }
    throw std::runtime_error("cannot listen on " + options.host + ": " + why);
}

unsigned make_room(unsigned descriptors)
{
    constexpr unsigned OWN = 64; // of queues, files and threads' events
    rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlim_t wanted = descriptors + OWN;
    if (limit.rlim_cur < wanted) {
        limit.rlim_cur = std::min(wanted, limit.rlim_max);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    return static_cast<unsigned>(std::min<rlim_t>(descriptors, limit.rlim_cur - std::min<rlim_t>(limit.rlim_cur, OWN)));
}

} // namespace zvweb
