// How a program takes its command line, and what is wrong with one.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

namespace CLI {
class App;
}

namespace zvprogram {

// What is wrong, in one line.
struct WrongUsage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A file's content. Throws WrongUsage where it cannot be read or is empty.
std::string read_file(const std::string &name);

// Reads the command line into what `app` knows, then looks at it by `check`, which throws WrongUsage. With a result the
// program ends with that exit code; the help, or what is wrong after the program's name, was printed.
std::optional<int> read_command_line(CLI::App &app, int argc, char **argv, const std::function<void()> &check);

} // namespace zvprogram
