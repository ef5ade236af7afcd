// zvweb - serves a camera over HTTP: a live page, and an API for programs.
#include "options.h"
#include "server.h"

#include <cstdio>
#include <ending.h>
#include <exception>
#include <zvservice/result.h>

int main(int argc, char **argv)
try {
    zvweb::Options options;
    if (const std::optional<int> over = zvweb::read_options(argc, argv, options)) {
        return *over;
    }
    const sigset_t signals = zvprogram::block_ending_signals();
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
