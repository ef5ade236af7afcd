#include "listener.h"

#include <algorithm>
#include <sys/resource.h>
#include <sys/socket.h>

namespace zvweb {

namespace {

// What the kernel holds for a client that does not read, in bytes: it comes on top of what the event log allows.
constexpr int SEND_BUFFER = 65536;

} // namespace

int listen_for_clients(const zvprogram::Address &address)
{
    const int descriptor = zvprogram::listen_on(address);
    setsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &SEND_BUFFER, sizeof SEND_BUFFER); // those that it accepts have it
    return descriptor;
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
