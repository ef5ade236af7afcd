#include "links.h"

#include "failure.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <thread>

namespace zvcam {

namespace {

using zvservice::Outcome;
using zvservice::Result;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::chrono::seconds WAIT{12};
constexpr milliseconds BETWEEN_LOOKS{100};

std::optional<Clock::time_point> wait_end; // nothing for not at all

// Looks until something comes back, where the command waits. Without it until the end the last look ends the command.
void await(const std::function<Result(milliseconds patience)> &look)
{
    while (wait_end) {
        const auto left = std::chrono::ceil<milliseconds>(*wait_end - Clock::now());
        const Result result = look(std::clamp(left, BETWEEN_LOOKS, LOOK_PATIENCE));
        if (!is_unanswered(result)) {
            return; // whatever it is: the command itself will say so
        }
        if (left <= BETWEEN_LOOKS) {
            check(result);
        }
        std::this_thread::sleep_for(BETWEEN_LOOKS);
    }
}

} // namespace

void wait_for_camera()
{
    wait_end = Clock::now() + WAIT;
}

bool is_unanswered(const Result &result)
{
    return result.outcome() == Outcome::NOT_THERE || result.outcome() == Outcome::NO_ANSWER;
}

Daemon::Daemon()
{
    await([this](milliseconds patience) {
        all_status_settings_t record;
        return poll(record, patience);
    });
    check(open());
}

Camera::Camera()
{
    await([this](milliseconds patience) {
        int32_t mode = 0;
        int32_t flat_mode = 0;
        return call(
            "reach the camera",
            [&](zvc_msg_q_context_t *context) { return zvc_app_get_mode_flat_mode(context, &mode, &flat_mode); },
            patience);
    });
    check(open());
}

} // namespace zvcam
