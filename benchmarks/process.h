// Other processes: the processors that they run on, and what they print.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace bench {

enum class Cores { SAME, TWO };

// The first two processors that this process may use; the same one twice where there is no second.
std::pair<int, int> processors();

// Where a benchmark runs that has a peer process, and where its peer runs: on one core, or on one each.
void run_as_client();
void run_as_peer(Cores cores);

// Wherever the system puts it, whatever its starter was bound to.
void run_anywhere();

// The user ids that programs can be given, each its own, and whether this process may give the first so many: root may,
// but for one that is root in a namespace alone.
inline constexpr unsigned FIRST_USER = 62500;
bool may_give_users(size_t count);

// The numbers in the first line that a command prints; the first of them alone, 0 where there is none.
std::vector<double> numbers_printed_by(const std::string &command);
double number_printed_by(const std::string &command);

// Starts a program and waits for its end; it prints into nothing. `argument` may be null. False when it cannot
// be started, or failed.
bool run_program(const char *program, const char *argument);

} // namespace bench
