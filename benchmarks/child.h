// The programs that are measured, or that others are measured with: each a process.
#pragma once

#include "process.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace bench {

// Runs as long as the object lives.
class Child {
  public:
    // Runs `work` in a child, where a peer of that kind runs, until it has printed its first line: that it is ready.
    // Throws std::runtime_error when it does not come to that.
    Child(Cores cores, const std::function<void()> &work);
    ~Child();
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    pid_t process() const { return m_process; }
    const std::string &greeting() const { return m_greeting; }           // the line
    std::chrono::nanoseconds start_time() const { return m_start_time; } // from the fork until it was there
    std::chrono::nanoseconds processor_time() const; // so far: the program's and the kernel's for it

    // In bytes, what the kernel tells under names that begin so: "Private_", "Rss".
    size_t memory(std::string_view name) const;

  private:
    pid_t m_process = -1;
    int m_output = -1;
    std::string m_greeting;
    std::chrono::nanoseconds m_start_time{};
};

} // namespace bench
