// zvsim - the simulated camera as a program
#include "control.h"
#include "faults.h"
#include "message.h"
#include "queue.h"
#include "simulator.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <poll.h>
#include <string>
#include <sys/signalfd.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace zv::sim;

enum ExitCode : int { OK = 0, FAILED = 1, WRONG_USAGE = 2 };

// How the program ends, and why where it did not go well.
struct Outcome {
    ExitCode code = OK;
    std::string wrong;
};

Outcome outcome(const std::string &wrong)
{
    return {wrong.empty() ? OK : FAILED, wrong};
}

int complain(const Outcome &outcome)
{
    std::cerr << "zvsim: " << outcome.wrong << '\n';
    return outcome.code;
}

std::string concerning(const std::string &subject, const std::string &wrong)
{
    return subject + ": " + wrong;
}

// ---- Orders to a running camera ------------------------------------------------------------------------------------

Outcome give_fault(const std::string &text)
{
    FaultRule rule;
    if (const std::string wrong = text == CLEAR_FAULTS ? "" : parse_fault(text, rule); !wrong.empty()) {
        return {WRONG_USAGE, wrong};
    }
    return outcome(give_order(text));
}

Outcome list_media()
{
    std::string listing;
    const std::string wrong = ask_for_media(listing);
    std::cout << listing;
    return outcome(wrong);
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
        take_orders(control, simulator);
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

// What is wrong with the rules, or empty.
std::string read_faults(const Options &options, std::vector<FaultRule> &rules)
{
    for (const std::string &text : options.faults) {
        if (const std::string wrong = parse_fault(text, rules.emplace_back()); !wrong.empty()) {
            return concerning(text, wrong);
        }
    }
    return {};
}

// What is wrong with the recorded trace, or empty.
std::string load_replay(const Options &options, Simulator &simulator)
{
    if (options.replay.empty()) {
        return {};
    }
    std::ifstream recorded(options.replay);
    const std::string wrong = recorded ? simulator.replay().read(recorded) : strerror(errno);
    return wrong.empty() ? wrong : concerning(options.replay, wrong);
}

// Why the trace cannot be written, or empty.
std::string open_trace(const Options &options, Simulator &simulator, std::ofstream &trace)
{
    if (options.trace.empty()) {
        return {};
    }
    trace.open(options.trace);
    if (!trace) {
        return concerning(options.trace, strerror(errno));
    }
    trace << std::unitbuf; // whoever watches the file sees each message at once
    trace << "# zvsim --model " << options.model << " --seed " << options.seed << '\n';
    simulator.set_trace(&trace);
    return {};
}

Outcome simulate(const Options &options)
{
    const int signals = signal_descriptor(); // first: from here on nothing is left when the process ends
    Queue control;                           // before the simulator, and so removed after its queues
    std::ofstream trace;
    Simulator simulator(static_cast<uint8_t>(options.model), options.seed);
    std::vector<FaultRule> faults;
    if (const std::string wrong = read_faults(options, faults); !wrong.empty()) {
        return {WRONG_USAGE, wrong};
    }
    if (const std::string wrong = load_replay(options, simulator); !wrong.empty()) {
        return {FAILED, wrong};
    }
    if (const std::string wrong = claim_machine(control); !wrong.empty()) {
        return {FAILED, wrong};
    }
    if (const std::string wrong = open_trace(options, simulator, trace); !wrong.empty()) {
        return {FAILED, wrong};
    }
    if (const std::string wrong = simulator.open(); !wrong.empty()) {
        return {FAILED, wrong};
    }
    for (const FaultRule &rule : faults) {
        simulator.add_fault(rule);
    }
    std::cout << "zvsim: camera of model " << options.model << " is ready" << std::endl;
    run(simulator, control, signals);
    close(signals);
    return {};
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
    CLI::App *fault = app.add_subcommand("fault", "Give the running camera a fault rule, or clear them all");
    fault->add_option("rule", rule, "The rule, or clear")->type_name("RULE")->required();
    CLI::App *media = app.add_subcommand("media", "List what is on the running camera's card");
    app.require_subcommand(0, 1);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? OK : WRONG_USAGE;
    }
    const Outcome ended = fault->parsed() ? give_fault(rule) : media->parsed() ? list_media() : simulate(options);
    return ended.wrong.empty() ? ended.code : complain(ended);
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run_program(argc, argv);
    } catch (const std::exception &error) {
        return complain({FAILED, error.what()});
    }
}
