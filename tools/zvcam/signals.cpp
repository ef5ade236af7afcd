#include "signals.h"

#include "failure.h"

#include <csignal>
#include <unistd.h>
#include <zvservice/links.h>

namespace zvcam {

namespace {

volatile sig_atomic_t interruption_expected = 0;

void on_signal(int signal)
{
    zvservice::remove_own_queues();
    if (interruption_expected != 0 && (signal == SIGINT || signal == SIGTERM)) {
        _exit(EXIT_DONE);
    }
    raise(signal); // by now its default action again
}

} // namespace

void remove_queues_at_signals()
{
    struct sigaction action = {};
    action.sa_handler = on_signal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGABRT}) {
        sigaction(signal, &action, nullptr);
    }
}

void expect_interruption()
{
    interruption_expected = 1;
}

} // namespace zvcam
