// zvweb - serves a camera over HTTP: a live page, and an API for programs.
#include "options.h"
#include "server.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <zvservice/result.h>

namespace {

// In all threads, which are yet to start: they are waited for by one.
sigset_t block_ending_signals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

} // namespace

int main(int argc, char **argv)
try {
    zvweb::Options options;
    if (const std::optional<int> over = zvweb::read_options(argc, argv, options)) {
        return *over;
    }
    signal(SIGPIPE, SIG_IGN); // a client went away
    const sigset_t signals = block_ending_signals();
    const zvweb::Server server(options);
    printf("zvweb: %s\n", server.url().c_str());
    fflush(stdout);
    int number = 0;
    sigwait(&signals, &number);
    return zvservice::EXIT_DONE;
} catch (const std::exception &wrong) {
    fprintf(stderr, "zvweb: %s\n", wrong.what());
    return zvservice::EXIT_FAILED;
}
