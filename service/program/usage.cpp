#include "usage.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <zvservice/result.h>

namespace zvprogram {

std::string read_file(const std::string &name)
{
    std::ifstream file(name, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file || text.empty()) {
        throw WrongUsage(name + ": " + (file ? "the file is empty" : strerror(errno)));
    }
    return text;
}

std::optional<int> read_command_line(CLI::App &app, int argc, char **argv, const std::function<void()> &check)
{
    try {
        app.parse(argc, argv);
        check();
    } catch (const CLI::Success &asked) {
        return app.exit(asked);
    } catch (const std::exception &wrong) { // of the parser, or of the check
        fprintf(stderr, "%s: %s\n", app.get_name().c_str(), wrong.what());
        return zvservice::EXIT_WRONG_USAGE;
    }
    return std::nullopt;
}

} // namespace zvprogram
