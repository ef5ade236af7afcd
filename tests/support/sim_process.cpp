#include "sim_process.h"

#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ; // NOLINT(readability-redundant-declaration): no header has it without extensions

namespace {

// Starts a program, whose standard output goes to `output` unless that is negative.
pid_t spawn(const std::string &program, const std::vector<std::string> &arguments, int output)
{
    std::vector<char *> words = {const_cast<char *>(program.c_str())};
    for (const std::string &argument : arguments) {
        words.push_back(const_cast<char *>(argument.c_str()));
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (output >= 0) {
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    }
    pid_t process = 0;
    EXPECT_EQ(0, posix_spawn(&process, program.c_str(), &actions, nullptr, words.data(), environ)) << program;
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

int exit_code(pid_t process)
{
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

SimProcess::~SimProcess()
{
    thaw();
    end();
}

void SimProcess::start(const std::vector<std::string> &arguments)
{
    int ready[2];
    ASSERT_EQ(0, pipe2(ready, 0));
    m_process = spawn(ZVSIM, arguments, ready[1]);
    close(ready[1]);
    char line[64];
    EXPECT_GT(read(ready[0], line, sizeof line), 0) << "the simulated camera does not come up";
    close(ready[0]);
}

void SimProcess::end()
{
    signal(SIGTERM);
    if (m_process != 0) {
        exit_code(m_process);
        m_process = 0;
    }
}

void SimProcess::kill()
{
    signal(SIGKILL);
    exit_code(m_process);
    m_process = 0;
}

void SimProcess::freeze()
{
    signal(SIGSTOP);
}

void SimProcess::thaw()
{
    signal(SIGCONT);
}

void SimProcess::signal(int number)
{
    if (m_process != 0) {
        ::kill(m_process, number);
    }
}

void SimProcess::fault(const std::string &rule)
{
    EXPECT_EQ(0, run(ZVSIM, {"fault", rule})) << rule;
}

int SimProcess::run(const std::string &program, const std::vector<std::string> &arguments)
{
    return exit_code(spawn(program, arguments, -1));
}
