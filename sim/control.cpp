#include "control.h"

#include "faults.h"
#include "message.h"

#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <mqueue.h>
#include <poll.h>
#include <unistd.h>

namespace zv::sim {

namespace {

constexpr char CONTROL_QUEUE[] = "/to_zvsim";
constexpr size_t CONTROL_MESSAGE_MAX = 8192;
constexpr int PATIENCE_MS = 2000;
constexpr char MEDIA[] = "media "; // and the queue that the listing goes to

// The lock lies on the control queue itself: it belongs to the same machine as the other queues, and ends with the
// process, however that ends.
bool is_running()
{
    const mqd_t control = mq_open(CONTROL_QUEUE, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (control < 0) {
        return false;
    }
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    const bool locked = fcntl(control, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    mq_close(control);
    return locked;
}

// Lines that fit in one message.
std::string cut_listing(std::string listing)
{
    if (listing.size() > CONTROL_MESSAGE_MAX) {
        const std::string more = "...\n";
        listing.resize(listing.rfind('\n', CONTROL_MESSAGE_MAX - more.size() - 1) + 1);
        listing += more;
    }
    return listing;
}

void wait_until_taken()
{
    constexpr useconds_t MILLISECOND = 1000;
    const mqd_t control = mq_open(CONTROL_QUEUE, O_WRONLY | O_CLOEXEC);
    mq_attr present = {};
    for (int left = PATIENCE_MS; left > 0 && mq_getattr(control, &present) == 0 && present.mq_curmsgs > 0; --left) {
        usleep(MILLISECOND);
    }
    mq_close(control);
}

void take_order(const std::string &order, Simulator &simulator)
{
    FaultRule rule;
    if (order == CLEAR_FAULTS) {
        simulator.clear_faults();
    } else if (order.starts_with(MEDIA)) {
        post(order.substr(strlen(MEDIA)), view_of(cut_listing(simulator.camera().card().listing())));
    } else if (parse_fault(order, rule).empty()) {
        simulator.add_fault(rule);
    }
}

} // namespace

std::string claim_machine(Queue &control)
{
    std::string taken = "a simulated camera is already running on this machine";
    do { // again when the queue was removed, by one that was just ending, before it was locked
        control.close();
        if (is_running()) {
            return taken;
        }
        if (std::string wrong = control.open(CONTROL_QUEUE, CONTROL_MESSAGE_MAX); !wrong.empty()) {
            return wrong;
        }
        struct flock lock = {};
        lock.l_type = F_WRLCK;
        if (fcntl(control.descriptor(), F_OFD_SETLK, &lock) != 0) {
            control.abandon();
            return taken;
        }
    } while (!is_running());
    return {};
}

void take_orders(Queue &control, Simulator &simulator)
{
    while (const auto order = control.receive()) {
        take_order(std::string(order->begin(), order->end()), simulator);
    }
}

std::string give_order(const std::string &order)
{
    if (!is_running()) {
        return "no simulated camera is running on this machine";
    }
    if (!post(CONTROL_QUEUE, view_of(order))) {
        return "the simulated camera takes no orders now";
    }
    wait_until_taken();
    return {};
}

std::string ask_for_media(std::string &listing)
{
    Queue reply;
    if (std::string wrong = reply.open(CONTROL_QUEUE + std::to_string(getpid()), CONTROL_MESSAGE_MAX); !wrong.empty()) {
        return wrong;
    }
    if (std::string wrong = give_order(MEDIA + reply.name()); !wrong.empty()) {
        return wrong;
    }
    pollfd source = {reply.descriptor(), POLLIN, 0};
    poll(&source, 1, PATIENCE_MS);
    const auto answer = reply.receive();
    if (!answer) {
        return "the simulated camera does not answer";
    }
    listing.assign(answer->begin(), answer->end());
    return {};
}

} // namespace zv::sim
