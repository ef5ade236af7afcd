#include "failure.h"

#include "options.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <zvctrl/zvDbg.h>

namespace zvcam {

using zvservice::Outcome;
using zvservice::Result;

const char EXIT_CODES[] = "Exit codes:\n"
                          "  0  done\n"
                          "  1  failed in a way that is told on standard error, or the answer is no\n"
                          "  2  wrong usage\n"
                          "  3  no daemon or no relay: nothing there to talk to\n"
                          "  4  no answer\n"
                          "  5  refused by the camera\n"
                          "  6  forbidden by the camera's rules in its present state\n"
                          "  7  the system's limits do not allow the queues\n";

namespace {

constexpr char HINT_LOG[] = "-v shows the library's log";

// Whether there is no more to say of a call than its code, which the library's log explains.
bool is_unexplained(const Result &result)
{
    return result.outcome() == Outcome::FAILED && result.code() != 0 && result.code() != ZV_ERR_INVALID_PARAM &&
           result.code() != ZV_ERR_OUTOFMEM;
}

} // namespace

void fail(ExitCode code, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = vsnprintf(nullptr, 0, format, arguments); // some list a hundred options
    std::string text(static_cast<size_t>(std::max(length, 0)), '\0');
    vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    va_end(arguments);
    throw Failure{code, text};
}

void answer_no()
{
    throw Failure{EXIT_FAILED, {}};
}

void check(const Result &result, const char *hint)
{
    if (result.done()) {
        return;
    }
    std::string message = result.sentence();
    if (hint == nullptr && is_unexplained(result)) {
        hint = HINT_LOG;
    }
    if (hint != nullptr) {
        message.append(message.ends_with('?') ? " " : "; ").append(hint);
    }
    for (const zvservice::Removal &removal : result.reasons()) {
        message += "\n  " + catalogue().reason(removal);
    }
    throw Failure{result.exit_code(), message};
}

} // namespace zvcam
