// The signals that end a program.
#pragma once

#include <csignal>

namespace zvprogram {

// SIGTERM and SIGINT, blocked in this thread and in those that it starts from now on: one of them waits for them.
// SIGPIPE is ignored besides: a peer that goes away is told by an error.
sigset_t block_ending_signals();

} // namespace zvprogram
