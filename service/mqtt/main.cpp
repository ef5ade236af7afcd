// zvmqtt - joins a camera to an MQTT broker: its state, its changes, and orders to it.
#include "bridge.h"
#include "metrics_server.h"
#include "options.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ending.h>
#include <exception>
#include <mosquitto.h>
#include <optional>
#include <zvctrl/zvDbg.h>
#include <zvservice/result.h>

int main(int argc, char **argv)
try {
    zvUtilTellCounterFailures(false); // they would go to standard output
    zvmqtt::Options options;
    if (const std::optional<int> over = zvmqtt::read_options(argc, argv, options)) {
        return *over;
    }
    const sigset_t signals = zvprogram::block_ending_signals();
    mosquitto_lib_init();
    zvmqtt::Bridge bridge(options);
    std::optional<zvmqtt::MetricsServer> metrics;
    if (options.metrics) {
        metrics.emplace(*options.metrics, [&bridge] { return bridge.metrics(); });
        printf("zvmqtt: metrics at %s\n", metrics->url().c_str());
        fflush(stdout);
    }
    bridge.start();
    int number = 0;
    sigwait(&signals, &number);
    metrics.reset();
    if (!bridge.end()) {
        _Exit(zvservice::EXIT_DONE); // its thread waits for the network, perhaps for minutes
    }
    return zvservice::EXIT_DONE;
} catch (const std::exception &wrong) {
    fprintf(stderr, "zvmqtt: %s\n", wrong.what());
    return zvservice::EXIT_FAILED;
}
