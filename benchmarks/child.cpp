#include "child.h"

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

Child::Child(Cores cores, const std::function<void()> &work)
{
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    const auto start = std::chrono::steady_clock::now();
    m_process = fork();
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        run_as_peer(cores);
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        work();
        _exit(1);
    }
    close(ends[1]);
    m_output = ends[0];
    for (char letter; !m_greeting.ends_with('\n') && read(m_output, &letter, 1) == 1;) {
        m_greeting += letter;
    }
    m_start_time = std::chrono::steady_clock::now() - start;
    if (m_greeting.empty()) {
        waitpid(m_process, nullptr, 0);
        close(m_output);
        throw std::runtime_error("a program does not start");
    }
}

Child::~Child()
{
    kill(m_process, SIGTERM);
    waitpid(m_process, nullptr, 0);
    close(m_output);
}

std::chrono::nanoseconds Child::processor_time() const
{
    clockid_t clock = 0;
    timespec time = {};
    if (clock_getcpuclockid(m_process, &clock) != 0 || clock_gettime(clock, &time) != 0) {
        throw std::runtime_error("a program is gone");
    }
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

size_t Child::memory(std::string_view name) const
{
    std::ifstream lines("/proc/" + std::to_string(m_process) + "/smaps_rollup");
    size_t sum = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(name)) {
            sum += strtoul(line.c_str() + line.find(':') + 1, nullptr, 10);
        }
    }
    return sum * 1024;
}

} // namespace bench
