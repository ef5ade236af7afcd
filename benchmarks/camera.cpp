// What needs a whole camera, the simulated one: a service's poll, a camera that a service holds, and the command line
// tool.
#include "measure.h"
#include "process.h"
#include "simulated_camera.h"

#include <string>

namespace {

using namespace bench;

void run_service(benchmark::State &state, Cores cores, const std::string &service)
{
    const SimulatedCamera camera(cores);
    for (auto _ : state) {
        const double nanoseconds = camera.is_ready() ? number_printed_by(service) : 0;
        if (nanoseconds == 0) {
            state.SkipWithError("the simulated camera does not answer");
            break;
        }
        state.SetIterationTime(nanoseconds * 1e-9);
    }
}

void run_tool(benchmark::State &state, const char *program, const char *argument)
{
    const SimulatedCamera camera(Cores::TWO);
    for (auto _ : state) {
        if (!camera.is_ready() || !run_program(program, argument)) {
            state.SkipWithError("the program fails");
            break;
        }
    }
}

constexpr int RUNS = 10;

BENCHMARK_CAPTURE(run_tool, zvcam, ZVBENCH_ZVCAM, "status")
    ->Name("zvcam_status/library")
    ->UseRealTime()
    ->Iterations(RUNS);

// The program prints the figure.
auto *add_service(const std::string &name, Cores cores, const char *program, const std::string &what, int number)
{
    const std::string command = std::string(program) + ' ' + what + ' ' + std::to_string(number);
    return benchmark::RegisterBenchmark(name.c_str(), run_service, cores, command)->UseManualTime()->Iterations(1);
}

void add_poll(const std::string &name, Cores cores, const char *what, int clients = 1)
{
    add_service(name, cores, ZVBENCH_SERVICE, what, clients);
}

const bool registered = [] {
    for (const char *what : {"poll", "changes"}) {
        add_poll("service_" + std::string(what) + "/library/two_cores", Cores::TWO, what);
        add_poll("service_" + std::string(what) + "/library/same_core", Cores::SAME, what);
    }
    add_poll("service_documents/library", Cores::TWO, "documents");
    for (const int clients : {1, 2, 4, 8}) {
        add_poll("clients/" + std::to_string(clients), Cores::TWO, "poll", clients);
    }
    for (const int threads : {1, 2, 4, 8, 16}) {
        add_service("snapshot/" + std::to_string(threads), Cores::TWO, ZVBENCH_SERVICE_CORE, "snapshot", threads);
    }
    add_service("event_median/library", Cores::TWO, ZVBENCH_SERVICE_CORE, "event", 50);
    add_service("event_99_percent/library", Cores::TWO, ZVBENCH_SERVICE_CORE, "event", 99);
    add_service("idle_second_at_2_hz/library", Cores::TWO, ZVBENCH_SERVICE_CORE, "idle", 4)->Repetitions(3);
    if (run_program("busctl", "--version")) { // not everywhere
        benchmark::RegisterBenchmark("zvcam_status/busctl_version", run_tool, "busctl", "--version")
            ->UseRealTime()
            ->Iterations(RUNS);
    }
    return true;
}();

} // namespace
