#include "process.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sched.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace bench {

namespace {

void run_on(int processor)
{
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(processor, &set);
    sched_setaffinity(0, sizeof set, &set);
}

} // namespace

std::pair<int, int> processors()
{
    static const std::pair<int, int> found = [] {
        cpu_set_t allowed;
        sched_getaffinity(0, sizeof allowed, &allowed);
        std::vector<int> numbers;
        for (int i = 0; i < CPU_SETSIZE; ++i) {
            if (CPU_ISSET(i, &allowed)) {
                numbers.push_back(i);
            }
        }
        return std::pair(numbers.front(), numbers.size() > 1 ? numbers[1] : numbers[0]);
    }();
    return found;
}

void run_as_client()
{
    run_on(processors().first);
}

void run_as_peer(Cores cores)
{
    run_on(cores == Cores::SAME ? processors().first : processors().second);
}

void run_anywhere()
{
    cpu_set_t all;
    memset(&all, 0xff, sizeof all);
    sched_setaffinity(0, sizeof all, &all);
}

bool may_give_users(size_t count)
{
    std::ifstream map("/proc/self/uid_map");
    size_t inside = 0;
    size_t outside = 0;
    size_t size = 0;
    bool known = false;
    while (map >> inside >> outside >> size) {
        known = known || (inside <= FIRST_USER && FIRST_USER + count <= inside + size);
    }
    return geteuid() == 0 && known;
}

std::vector<double> numbers_printed_by(const std::string &command)
{
    std::vector<double> numbers;
    FILE *output = popen(command.c_str(), "r");
    if (output == nullptr) {
        return numbers;
    }
    char line[256] = {};
    if (fgets(line, sizeof line, output) != nullptr) {
        char *next = line;
        for (char *end = nullptr;; next = end) {
            const double number = strtod(next, &end);
            if (end == next) {
                break;
            }
            numbers.push_back(number);
        }
    }
    pclose(output);
    return numbers;
}

double number_printed_by(const std::string &command)
{
    const std::vector<double> numbers = numbers_printed_by(command);
    return numbers.empty() ? 0 : numbers.front();
}

bool run_program(const char *program, const char *argument)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const char *arguments[] = {program, argument, nullptr};
    pid_t process = 0;
    int status = -1;
    const bool started =
        posix_spawnp(&process, program, &actions, nullptr, const_cast<char **>(arguments), environ) == 0 &&
        waitpid(process, &status, 0) == process;
    posix_spawn_file_actions_destroy(&actions);
    return started && status == 0;
}

} // namespace bench
