// Other processes: the processors that they run on, and what they print.
#pragma once

#include <string>
#include <utility>

namespace bench {

enum class Cores { SAME, TWO };

// The first two processors that this process may use; the same one twice where there is no second.
std::pair<int, int> processors();

// Where a benchmark runs that has a peer process, and where its peer runs: on one core, or on one each.
void run_as_client();
void run_as_peer(Cores cores);

// The number that a command prints first; 0 when it fails.
double number_printed_by(const std::string &command);

// Starts a program and waits for its end; it prints into nothing. `argument` may be null. False when it cannot
// be started, or failed.
bool run_program(const char *program, const char *argument);

} // namespace bench
