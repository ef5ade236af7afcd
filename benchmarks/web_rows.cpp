#include "web_rows.h"

#include "load_rows.h"
#include "process.h"
#include "simulated_camera.h"

#include <cstdio>
#include <string>
#include <vector>

namespace {

using namespace bench;

std::string command_of(const std::string &what, int number)
{
    return ZVBENCH_WEB " " + what + " " + std::to_string(number);
}

Runs &runs()
{
    static Runs all([](const std::string &command) {
        const SimulatedCamera camera(Cores::SAME);
        return camera.is_ready() ? numbers_printed_by(command) : std::vector<double>();
    });
    return all;
}

// As the program prints its figures: those of zvweb, then those of the peer.
void add_load(const std::string &what, const char *peer, const std::vector<int> &numbers)
{
    const std::string works[] = {"web_" + what, "web_" + what + "_99_percent", "web_" + what + "_processor"};
    for (const int number : numbers) {
        size_t place = 0;
        for (const char *worker : {"library", peer}) {
            for (const std::string &work : works) {
                runs().add(work + '/' + worker + '/' + std::to_string(number), command_of(what, number), place++);
            }
        }
    }
}

const bool registered = [] {
    add_load("state", "libmicrohttpd", {1, 16});
    add_load("change", "bare_sends", {1, 100, 1000});
    add_load("offers", "bare_sends", {1, 1000});
    return true;
}();

} // namespace

void bench::print_web()
{
    if (runs().empty()) {
        return;
    }
    printf("\n");
    print_stripped("zvweb, stripped", ZVBENCH_STRIPPED_ZVWEB);
    const std::string command = command_of("program", 1000);
    const double memory = runs().figure(command, 0);
    if (memory == 0) {
        fprintf(stderr, "%s: it fails\n", command.c_str());
        return;
    }
    print_size("its private memory", memory);
    printf("%-32s %6.1f ms\n", "from its start until it serves", runs().figure(command, 1) * 1e-6);
    print_size("memory for an event client", runs().figure(command, 2));
    print_size("memory for a kept connection", runs().figure(command, 3));
}
