// A simulated camera as a process of its own, for tests of what has to survive its end. Its queues are the machine's:
// the test runs in a namespace of its own.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

class SimProcess {
  public:
    // Starts it with these arguments, and returns when it is ready.
    explicit SimProcess(const std::vector<std::string> &arguments = {}) { start(arguments); }
    ~SimProcess();
    SimProcess(const SimProcess &) = delete;
    SimProcess &operator=(const SimProcess &) = delete;

    void start(const std::vector<std::string> &arguments = {});

    // Ends it in good order, with its queues; or at once, which leaves them.
    void end();
    void kill();

    // Stops it in the middle of whatever it does, and lets it go on.
    void freeze();
    void thaw();

    // Gives it an order, as "zvsim fault" does.
    static void fault(const std::string &rule);

    // Runs the program and returns its exit code; `arguments` without the program.
    static int run(const std::string &program, const std::vector<std::string> &arguments);

  private:
    void signal(int number);

    pid_t m_process = 0;
};
