// zvsim - the simulated camera as a program
#include "simulator.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

using namespace zv::sim;

constexpr char CONTROL_QUEUE[] = "/to_zvsim";
constexpr size_t CONTROL_MESSAGE_MAX = 1024;

enum ExitCode : int { OK = 0, FAILED = 1, WRONG_USAGE = 2 };

int fail(ExitCode code, const std::string &text)
{
    std::cerr << "zvsim: " << text << '\n';
    return code;
}

// ---- One simulated camera on a machine -----------------------------------------------------------------------------
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

// Creates the control queue and locks it. Returns an empty text, or what went wrong.
std::string become_the_one(Queue &control)
{
    const std::string taken = "a simulated camera is already running on this machine";
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

// ---- Running ---------------------------------------------------------------------------------------------------

class Clock {
  public:
    // Microseconds since the last call.
    uint64_t elapsed()
    {
        const auto now = std::chrono::steady_clock::now();
        const auto passed = std::chrono::duration_cast<std::chrono::microseconds>(now - m_last);
        m_last += passed;
        return static_cast<uint64_t>(passed.count());
    }

  private:
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();
};

void take_orders(Queue &control, Faults &faults)
{
    while (const auto message = control.receive()) {
        const std::string order(message->begin(), message->end());
        FaultRule rule;
        if (order == "clear") {
            faults.clear();
        } else if (const std::string wrong = parse_fault(order, rule); wrong.empty()) {
            faults.add(rule);
        } else {
            std::cerr << "zvsim: " << wrong << '\n';
        }
    }
}

int signal_descriptor()
{
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    sigprocmask(SIG_BLOCK, &ends, nullptr);
    return signalfd(-1, &ends, SFD_CLOEXEC | SFD_NONBLOCK);
}

constexpr int SECOND_MS = 1000;

int wait_limit(const Simulator &camera)
{
    const auto due = camera.next_due();
    return due ? static_cast<int>(std::min<uint64_t>(*due / 1000 + 1, SECOND_MS)) : SECOND_MS;
}

// Until SIGINT or SIGTERM.
void run(Simulator &camera, Queue &control, int signals)
{
    Clock clock;
    for (;;) {
        pollfd sources[] = {
            {camera.reads(Link::DAEMON) ? camera.descriptor(Link::DAEMON) : -1, POLLIN, 0},
            {camera.reads(Link::RELAY) ? camera.descriptor(Link::RELAY) : -1, POLLIN, 0},
            {control.descriptor(), POLLIN, 0},
            {signals, POLLIN, 0},
        };
        poll(sources, std::size(sources), wait_limit(camera));
        if (sources[3].revents != 0) {
            return;
        }
        camera.advance(clock.elapsed());
        take_orders(control, camera.faults());
        camera.serve();
    }
}

struct Options {
    uint32_t model = 62;
    uint32_t seed = 1;
    std::vector<std::string> faults;
    std::string trace;
};

int simulate(const Options &options)
{
    Queue control; // before the camera, and so removed after the camera's queues
    Simulator camera(static_cast<uint8_t>(options.model), options.seed);
    for (const std::string &text : options.faults) {
        FaultRule rule;
        if (const std::string wrong = parse_fault(text, rule); !wrong.empty()) {
            return fail(WRONG_USAGE, "--fault " + text + ": " + wrong);
        }
        camera.faults().add(rule);
    }
    std::ofstream trace;
    if (!options.trace.empty()) {
        trace.open(options.trace);
        if (!trace) {
            return fail(FAILED, options.trace + ": " + strerror(errno));
        }
        trace << "# zvsim --model " << options.model << " --seed " << options.seed << '\n';
        camera.set_trace(&trace);
    }
    if (const std::string wrong = become_the_one(control); !wrong.empty()) {
        return fail(FAILED, wrong);
    }
    if (const std::string wrong = camera.open(); !wrong.empty()) {
        return fail(FAILED, wrong);
    }
    const int signals = signal_descriptor();
    std::cout << "zvsim: camera of model " << options.model << " is ready" << std::endl;
    run(camera, control, signals);
    close(signals);
    return OK;
}

int order(const std::string &text)
{
    FaultRule rule;
    if (text != "clear") {
        if (const std::string wrong = parse_fault(text, rule); !wrong.empty()) {
            return fail(WRONG_USAGE, wrong);
        }
    }
    if (!is_running()) {
        return fail(FAILED, "no simulated camera is running on this machine");
    }
    return post(CONTROL_QUEUE, view_of(text)) ? OK : fail(FAILED, "the simulated camera takes no orders now");
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app("A simulated camera: plays the control daemon and the firmware over their message queues.", "zvsim");
    Options options;
    app.add_option("--model", options.model, "Model number; 58 and 62 are the sable_knoll generation")
        ->check(CLI::Range(1, 255))
        ->capture_default_str();
    app.add_option("--seed", options.seed, "What the camera does by itself follows from it")->capture_default_str();
    app.add_option("--fault", options.faults, "Fault rule, such as drop:link=daemon,every=3; may be repeated");
    app.add_option("--trace", options.trace, "Write each message to this file");

    std::string rule;
    CLI::App *fault = app.add_subcommand("fault", "Add a fault rule to the running camera, or clear them all");
    fault->add_option("rule", rule, "The rule, or clear")->required();

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? OK : WRONG_USAGE;
    }
    return fault->parsed() ? order(rule) : simulate(options);
}
