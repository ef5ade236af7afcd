// A service that holds a camera, over a simulated one that runs already. Prints nanoseconds.
//
//     zvbench_service_core snapshot THREADS    one snapshot() of as many threads at once, the mean
//     zvbench_service_core event PERCENTILE    from a write's answer to a subscriber's event of it; 50 is the median
//     zvbench_service_core idle SECONDS        the processor's time per second of a camera that is polled at 2 Hz
#include "process.h"
#include "times.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <thread>
#include <vector>
#include <zvctrl/zvc_commands.h>
#include <zvservice/camera.h>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds READING(300);
constexpr milliseconds ANSWER(1000);
constexpr size_t FIRST_EVENTS = 50; // not counted
constexpr size_t EVENTS = 1000;
constexpr char ZOOM[] = "\"75\":"; // the status that tells it

using bench::nanoseconds;

double time_of_snapshot(const zvservice::Camera &camera, long count)
{
    std::atomic<size_t> reads = 0;
    std::vector<std::thread> threads;
    const auto start = Clock::now();
    for (long i = 0; i < count; ++i) {
        threads.emplace_back([&] {
            size_t own = 0;
            for (; own % 64 != 0 || Clock::now() - start < READING; ++own) {
                if (camera.snapshot()->state == nullptr) {
                    return;
                }
            }
            reads += own;
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    return nanoseconds(Clock::now() - start) * static_cast<double>(count) / static_cast<double>(reads);
}

// When the subscriber hears of the zoom; other changes may come before. Nothing when it does not hear in time.
std::optional<Clock::time_point> hear(zvservice::Subscription &events)
{
    for (;;) {
        const std::optional<zvservice::Event> event = events.next(ANSWER);
        const auto now = Clock::now();
        if (!event) {
            return std::nullopt;
        }
        if (event->change != nullptr && event->change->status.find(ZOOM) != std::string::npos) {
            return now;
        }
    }
}

// Changes the zoom, and asks for a poll at once as a setting's write does. 0 when an event does not come.
double time_of_event(zvservice::Camera &camera, long percentile)
{
    zvservice::Subscription events = camera.subscribe();
    std::vector<double> times;
    for (size_t i = 0; i < FIRST_EVENTS + EVENTS; ++i) {
        Clock::time_point changed;
        std::thread writer([&camera, &changed, zoom = static_cast<int32_t>(i % 2 + 1)] {
            camera.call("zoom", [&changed, zoom](zvc_msg_q_context_t *context) {
                const int32_t result = zvc_app_set_digital_zoom(context, zoom);
                changed = Clock::now();
                return result;
            });
            camera.refresh();
        });
        const std::optional<Clock::time_point> heard = hear(events);
        writer.join();
        if (!heard) {
            return 0;
        }
        if (i >= FIRST_EVENTS) {
            times.push_back(nanoseconds(*heard - changed));
        }
    }
    return bench::percentile(times, static_cast<size_t>(percentile));
}

double seconds_of_processor()
{
    rusage used = {};
    getrusage(RUSAGE_SELF, &used);
    return static_cast<double>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
           static_cast<double>(used.ru_utime.tv_usec + used.ru_stime.tv_usec) * 1e-6;
}

double time_of_idling(long seconds)
{
    const double before = seconds_of_processor();
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    return (seconds_of_processor() - before) * 1e9 / static_cast<double>(seconds);
}

double measure(std::string_view what, long number)
{
    zvservice::CameraOptions options;
    options.poll_interval = milliseconds(500);
    zvservice::Camera camera(options);
    if (!camera.refresh().done()) {
        return 0;
    }
    if (what == "snapshot") {
        return time_of_snapshot(camera, number);
    }
    return what == "event" ? time_of_event(camera, number) : time_of_idling(number);
}

} // namespace

int main(int argc, char **argv)
{
    const long number = argc == 3 ? strtol(argv[2], nullptr, 10) : 0;
    if (number < 1) {
        fprintf(stderr, "usage: zvbench_service_core snapshot|event|idle NUMBER\n");
        return 2;
    }
    bench::run_anywhere();
    printf("%.1f\n", measure(argv[1], number));
    return 0;
}
