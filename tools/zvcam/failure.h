// How a command ends that cannot do what it was asked to: a message that a person can act on, and an exit code that a
// script can.
#pragma once

#include <cstdint>
#include <string>

namespace zvcam {

enum ExitCode {
    DONE = 0,
    FAILED = 1,
    WRONG_USAGE = 2,
    NO_DAEMON = 3,
    NO_ANSWER = 4,
    REFUSED = 5,
    FORBIDDEN = 6,
    SYSTEM_LIMIT = 7,
};

// The exit codes in words, for --help.
extern const char EXIT_CODES[];

struct Failure {
    ExitCode code;
    std::string message; // empty when standard output has said it all
};

[[noreturn]] void fail(ExitCode code, const char *format, ...) __attribute__((format(printf, 2, 3)));

// Ends a command whose output says that the answer is no.
[[noreturn]] void answer_no();

// Ends the command when `result`, of a call of the library, is not 0. `doing` says what was tried, such as "start the
// capture"; `camera_code` is the context's rtos_error_code.
void check(int32_t result, const char *doing, uint8_t camera_code = 0);

} // namespace zvcam
