#include "command.h"

#include "failure.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace zvcam {

int64_t parse_number(const std::string &text, const char *what, int64_t low, int64_t high)
{
    char *end = nullptr;
    errno = 0;
    const int64_t number = strtoll(text.c_str(), &end, text.starts_with("0x") ? 16 : 10);
    if (text.empty() || *end != '\0' || errno != 0 || number < low || number > high) {
        fail(EXIT_WRONG_USAGE, "%s is a number from %lld to %lld, not \"%s\"", what, static_cast<long long>(low),
             static_cast<long long>(high), text.c_str());
    }
    return number;
}

int64_t Arguments::number(const char *option, int64_t otherwise, int64_t low, int64_t high) const
{
    const auto found = options.find(option);
    return found == options.end() ? otherwise : parse_number(found->second, option, low, high);
}

void confirm(const Arguments &arguments, const char *question)
{
    if (arguments.given("--yes")) {
        return;
    }
    if (isatty(STDIN_FILENO) == 0) {
        fail(EXIT_WRONG_USAGE, "%s Nobody is here to answer; say --yes.", question);
    }
    fprintf(stderr, "%s [y/N] ", question);
    const int answer = getchar();
    if (answer != 'y' && answer != 'Y') {
        fail(EXIT_FAILED, "left as it was");
    }
}

} // namespace zvcam
