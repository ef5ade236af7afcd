// zvsim - the simulated camera as a program
#include "simulator.h"

#include <CLI/CLI.hpp>

#include <algorithm>
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
constexpr size_t CONTROL_MESSAGE_MAX = 8192;

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

// ---- Orders --------------------------------------------------------------------------------------------------------
// Posted to the control queue by another zvsim: "clear", "media QUEUE", or a fault rule.

constexpr char CLEAR[] = "clear";
constexpr char MEDIA[] = "media ";

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

void take_order(const std::string &order, Simulator &simulator)
{
    FaultRule rule;
    if (order == CLEAR) {
        simulator.faults().clear();
    } else if (order.starts_with(MEDIA)) {
        post(order.substr(strlen(MEDIA)), view_of(cut_listing(simulator.camera().card().listing())));
    } else if (parse_fault(order, rule).empty()) {
        simulator.faults().add(rule);
    }
}

int give_order(const std::string &text)
{
    if (!is_running()) {
        return fail(FAILED, "no simulated camera is running on this machine");
    }
    return post(CONTROL_QUEUE, view_of(text)) ? OK : fail(FAILED, "the simulated camera takes no orders now");
}

int give_fault(const std::string &text)
{
    FaultRule rule;
    if (const std::string wrong = text == CLEAR ? "" : parse_fault(text, rule); !wrong.empty()) {
        return fail(WRONG_USAGE, wrong);
    }
    return give_order(text);
}

int list_media()
{
    constexpr int PATIENCE_MS = 2000;
    Queue reply;
    if (const std::string wrong = reply.open("/to_zvsim" + std::to_string(getpid()), CONTROL_MESSAGE_MAX);
        !wrong.empty()) {
        return fail(FAILED, wrong);
    }
    if (const int result = give_order(MEDIA + reply.name()); result != OK) {
        return result;
    }
    pollfd source = {reply.descriptor(), POLLIN, 0};
    poll(&source, 1, PATIENCE_MS);
    const auto listing = reply.receive();
    if (!listing) {
        return fail(FAILED, "the simulated camera does not answer");
    }
    std::cout << std::string(listing->begin(), listing->end());
    return OK;
}

// ---- Running -------------------------------------------------------------------------------------------------------

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

// SIGINT and SIGTERM, as a descriptor.
int signal_descriptor()
{
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    sigprocmask(SIG_BLOCK, &ends, nullptr);
    return signalfd(-1, &ends, SFD_CLOEXEC | SFD_NONBLOCK);
}

// How long to wait for a message, in milliseconds, when time passes by itself meanwhile.
int wait_limit(const Simulator &simulator)
{
    constexpr uint64_t SECOND = 1000000; // in microseconds
    const uint64_t due = std::min(simulator.next_due().value_or(SECOND), SECOND);
    return static_cast<int>(due / 1000 + 1);
}

// Until a signal comes.
void run(Simulator &simulator, Queue &control, int signals)
{
    Clock clock;
    for (;;) {
        pollfd sources[] = {
            {simulator.reads(Link::DAEMON) ? simulator.descriptor(Link::DAEMON) : -1, POLLIN, 0},
            {simulator.reads(Link::RELAY) ? simulator.descriptor(Link::RELAY) : -1, POLLIN, 0},
            {control.descriptor(), POLLIN, 0},
            {signals, POLLIN, 0},
        };
        poll(sources, std::size(sources), wait_limit(simulator));
        if (sources[3].revents != 0) {
            return;
        }
        simulator.advance(clock.elapsed());
        while (const auto order = control.receive()) {
            take_order(std::string(order->begin(), order->end()), simulator);
        }
        simulator.serve();
    }
}

struct Options {
    uint32_t model = 62;
    uint32_t seed = 1;
    std::vector<std::string> faults;
    std::string trace;
    std::string replay;
};

std::string concerning(const std::string &subject, const std::string &wrong)
{
    return subject + ": " + wrong;
}

int simulate(const Options &options)
{
    const int signals = signal_descriptor(); // first: from here on nothing is left behind
    Queue control;                           // before the simulator, and so removed after its queues
    Simulator simulator(static_cast<uint8_t>(options.model), options.seed);
    for (const std::string &text : options.faults) {
        FaultRule rule;
        if (const std::string wrong = parse_fault(text, rule); !wrong.empty()) {
            return fail(WRONG_USAGE, concerning(text, wrong));
        }
        simulator.faults().add(rule);
    }
    if (!options.replay.empty()) {
        std::ifstream recorded(options.replay);
        const std::string wrong = recorded ? simulator.replay().read(recorded) : strerror(errno);
        if (!wrong.empty()) {
            return fail(FAILED, concerning(options.replay, wrong));
        }
    }
    if (const std::string wrong = become_the_one(control); !wrong.empty()) {
        return fail(FAILED, wrong);
    }
    std::ofstream trace;
    if (!options.trace.empty()) {
        trace.open(options.trace);
        if (!trace) {
            return fail(FAILED, concerning(options.trace, strerror(errno)));
        }
        trace << std::unitbuf; // whoever watches the file sees each message at once
        trace << "# zvsim --model " << options.model << " --seed " << options.seed << '\n';
        simulator.set_trace(&trace);
    }
    if (const std::string wrong = simulator.open(); !wrong.empty()) {
        return fail(FAILED, wrong);
    }
    std::cout << "zvsim: camera of model " << options.model << " is ready" << std::endl;
    run(simulator, control, signals);
    close(signals);
    return OK;
}

// The whole program: reads the command line and does what it says.
int run_program(int argc, char **argv)
{
    CLI::App app("A simulated camera: plays the control daemon and the firmware over their message queues.", "zvsim");
    Options options;
    app.add_option("--model", options.model, "Model number; 58 and 62 are the sable_knoll generation")
        ->check(CLI::Range(1, 255))
        ->type_name("N")
        ->capture_default_str();
    app.add_option("--seed", options.seed, "What the camera does by itself follows from it")
        ->type_name("N")
        ->capture_default_str();
    app.add_option("--fault", options.faults, "What goes wrong, as told below; may be repeated")
        ->type_name("RULE")
        ->allow_extra_args(false);
    app.add_option("--trace", options.trace, "Write each message to this file")->type_name("FILE");
    app.add_option("--replay", options.replay, "Answer the requests of this trace as they were answered there")
        ->type_name("FILE");

    std::string rule;
    app.footer(fault_help());
    app.set_version_flag("--version", ZVSIM_VERSION);
    CLI::App *fault = app.add_subcommand("fault", "Add a fault rule to the running camera, or clear them all");
    fault->add_option("rule", rule, "The rule, or clear")->type_name("RULE")->required();
    CLI::App *media = app.add_subcommand("media", "List what is on the running camera's card");
    app.require_subcommand(0, 1);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? OK : WRONG_USAGE;
    }
    if (fault->parsed()) {
        return give_fault(rule);
    }
    return media->parsed() ? list_media() : simulate(options);
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run_program(argc, argv);
    } catch (const std::exception &error) {
        return fail(FAILED, error.what());
    }
}
