// What a signal that ends the process leaves behind: no queues.
#pragma once

namespace zvcam {

// From now on the signals that commonly end a process remove its queues first.
void remove_queues_at_signals();

// SIGINT and SIGTERM are the ordinary end of what runs now: exit code 0.
void expect_interruption();

} // namespace zvcam
