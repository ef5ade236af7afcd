// How a command ends that cannot do what it was asked to: a message that a person can act on, and an exit code that a
// script can.
#pragma once

#include <string>
#include <zvservice/result.h>

namespace zvcam {

using enum zvservice::ExitCode;
using zvservice::ExitCode;

// The exit codes in words, for --help.
extern const char EXIT_CODES[];

struct Failure {
    ExitCode code;
    std::string message; // empty when standard output has said it all
};

[[noreturn]] void fail(ExitCode code, const char *format, ...) __attribute__((format(printf, 2, 3)));

// Ends a command whose output says that the answer is no.
[[noreturn]] void answer_no();

// Ends the command unless it is done. `hint` says what a person can do about it; null for nothing.
void check(const zvservice::Result &result, const char *hint = nullptr);

} // namespace zvcam
