// The test programs' own select, sleep, usleep, syslog and monotonic clock: the linker prefers them to the platform's.
//
// A wait that would take seconds ends at once, and its length is kept. A test's peer runs inside the wait: it sees the
// request that the library has posted, and answers before select looks at the descriptor. The monotonic clock stands
// still but in select, which moves it to what happens next.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace test {

struct Waits {
    std::vector<int64_t> selects; // time limits of the waits that ended without a message, in seconds
    std::vector<uint64_t> sleeps; // lengths of sleep and usleep, in microseconds
};

// What the library waited for since reset().
Waits &waits();

// The lines of the system log since reset(): the time stamp and the level text are taken off, and the level comes
// first, as in "ERROR text @file:1".
std::vector<std::string> &log_lines();

// As syslog got them.
std::vector<std::string> &raw_log_lines();

// The messages alone: no time stamp, no source.
std::vector<std::string> log_messages();

// Called at every select, before it looks at the descriptor, and at every sleep. Empty: nothing is called.
void on_wait(std::function<void()> peer);

// What happens so long from now, in microseconds, in the select that waits then.
void after(int64_t microseconds, std::function<void()> event);
// The same with a signal whose handler returns: that select fails with EINTR.
void signal_after(int64_t microseconds);

// The monotonic clock, in microseconds.
int64_t now();

// Forgets lines, waits, the peer and what is still to happen, and sets the log level back to 2. Every fixture calls it
// in SetUp.
void reset();

} // namespace test
