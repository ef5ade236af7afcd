#include "interpose.h"

#include "zvDbg.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <sys/select.h>
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>

namespace test {

namespace {

std::mutex lines_mutex; // the log may be written from any thread
std::vector<std::string> lines;
std::vector<std::string> raw_lines;
Waits all_waits;
std::function<void()> waiting_peer;

// "[00012345] [ERROR] text @file:1" -> "ERROR text @file:1"
std::string without_stamp(const std::string &line)
{
    const size_t level = line.find('[', 1);
    const size_t end = line.find("] ", level);
    if (level == std::string::npos || end == std::string::npos) {
        return line;
    }
    std::string name = line.substr(level + 1, end - level - 1);
    name.erase(name.find_last_not_of(' ') + 1);
    return name + " " + line.substr(end + 2);
}

} // namespace

Waits &waits()
{
    return all_waits;
}
std::vector<std::string> &log_lines()
{
    return lines;
}
std::vector<std::string> &raw_log_lines()
{
    return raw_lines;
}

std::vector<std::string> log_messages()
{
    std::vector<std::string> messages;
    for (const std::string &line : lines) {
        const size_t start = line.find(' ') + 1;
        messages.push_back(line.substr(start, line.rfind(" @") - start));
    }
    return messages;
}

void on_wait(std::function<void()> peer)
{
    waiting_peer = std::move(peer);
}

void reset()
{
    lines.clear();
    raw_lines.clear();
    all_waits = {};
    waiting_peer = nullptr;
    g_logLevel = ZV_LOG_ERROR;
}

} // namespace test

extern "C" {

void syslog(int, const char *format, ...)
{
    char line[1024];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    const std::lock_guard guard(test::lines_mutex);
    test::raw_lines.emplace_back(line);
    test::lines.push_back(test::without_stamp(line));
}

int select(int count, fd_set *readable, fd_set *writable, fd_set *failed, timeval *limit)
{
    if (test::waiting_peer) {
        test::waiting_peer();
    }
    timespec at_once = {};
    const auto ready = static_cast<int>(::syscall(SYS_pselect6, count, readable, writable, failed, &at_once, nullptr));
    if (ready == 0 && limit != nullptr) {
        test::all_waits.selects.push_back(limit->tv_sec);
    }
    return ready;
}

unsigned sleep(unsigned seconds)
{
    test::all_waits.sleeps.push_back(uint64_t{seconds} * 1000000);
    if (test::waiting_peer) {
        test::waiting_peer();
    }
    return 0;
}

int usleep(useconds_t microseconds)
{
    test::all_waits.sleeps.push_back(microseconds);
    if (test::waiting_peer) {
        test::waiting_peer();
    }
    return 0;
}

} // extern "C"
