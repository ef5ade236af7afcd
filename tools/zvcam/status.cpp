// What the camera says of itself: status, poll, watch.

#include "command.h"
#include "failure.h"
#include "links.h"
#include "options.h"
#include "output.h"
#include "settings.h"
#include "signals.h"
#include "state.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <memory>
#include <utility>

namespace zvcam {

using zvservice::State;

namespace {

constexpr int64_t POLL_MILLISECONDS = 500; // what the camera asks of its clients
constexpr int64_t LONGEST_INTERVAL = 3600000;

void show_status(const Arguments &arguments)
{
    const auto state = poll();
    if (arguments.json()) {
        printf("{%s}\n", state->status_document().c_str());
    } else {
        print_status(*state);
    }
}

void show_poll(const Arguments &arguments)
{
    const auto state = poll();
    if (arguments.json()) {
        printf("{%s,%s}\n", state->status_document().c_str(), state->settings_document().c_str());
    } else {
        printf("Status\n");
        print_status(*state);
        printf("Settings\n");
        print_settings(*state);
    }
}

void pause(int64_t milliseconds)
{
    timespec length = {}; // time_t and long may have 32 bits
    length.tv_sec = static_cast<time_t>(milliseconds / 1000);
    length.tv_nsec = static_cast<long>(milliseconds % 1000 * 1000000);
    nanosleep(&length, nullptr);
}

// The state now, or null while the camera's side does not answer, which is said once, and so is its return.
std::unique_ptr<const State> look_again(Daemon &daemon, bool &answers)
{
    all_status_settings_t record;
    const zvservice::Result result = daemon.poll(record, LOOK_PATIENCE);
    const bool lost = is_unanswered(result);
    if (lost == answers) {
        answers = !lost;
        fprintf(stderr,
                lost ? "zvcam: no answer; this is the last known state\n" : "zvcam: the camera answers again\n");
    }
    if (lost) {
        return nullptr;
    }
    check(result);
    return std::make_unique<const State>(record, catalogue().model());
}

void watch(const Arguments &arguments)
{
    const bool json = arguments.json();
    const int64_t count = arguments.number("--count", INT64_MAX, 1, INT64_MAX);
    const int64_t interval = arguments.number("--interval", POLL_MILLISECONDS, 1, LONGEST_INTERVAL);
    Daemon daemon;
    expect_interruption();
    auto last = poll(daemon);
    show_changes(nullptr, *last, json);
    bool answers = true;
    for (int64_t look = 1; flush_output() && look < count; ++look) {
        pause(answers ? interval : std::min(interval, POLL_MILLISECONDS));
        auto now = look_again(daemon, answers);
        if (now != nullptr && !zvservice::difference(last.get(), *now).empty()) {
            show_changes(last.get(), *now, json);
        }
        if (now != nullptr) {
            last = std::move(now);
        }
    }
}

constexpr Command COMMANDS[] = {
    {"status", "", "the camera's status, by number and name", show_status, {}, R"({"status":{ID:VALUE,...}})"},
    {"poll", "", "status and settings of one moment, in one document", show_poll, {}, STATE_AS_JSON},
    {"watch",
     "",
     "status and settings once, then what changes, until interrupted",
     watch,
     {{"--count", "N", "end after N looks"}, {"--interval", "MILLISECONDS", "between two looks; 500"}},
     STATE_AS_JSON},
};

} // namespace

constinit const Commands STATUS_COMMANDS = COMMANDS;

} // namespace zvcam
