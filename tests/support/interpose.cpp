#include "interpose.h"

#include "zvDbg.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <map>
#include <mutex>
#include <sys/select.h>
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>
#include <utility>

namespace test {

namespace {

std::mutex lines_mutex; // the log may be written from any thread
std::vector<std::string> lines;
std::vector<std::string> raw_lines;
Waits all_waits;
std::function<void()> waiting_peer;
std::multimap<int64_t, std::function<void()>> events; // by their time
int64_t clock_now = 0;
bool interrupted = false;

// Moves the clock to the next event before `end`, or to the end. False when that is reached.
bool pass_time(int64_t end)
{
    const auto next = events.begin();
    if (next == events.end() || next->first >= end) {
        clock_now = std::max(clock_now, end);
        return false;
    }
    clock_now = std::max(clock_now, next->first);
    const std::function<void()> event = std::move(next->second);
    events.erase(next);
    event();
    return true;
}

// What waits for a message or for room finds without waiting.
int look(int count, fd_set *readable, fd_set *writable)
{
    timespec at_once = {};
    return static_cast<int>(::syscall(SYS_pselect6, count, readable, writable, nullptr, &at_once, nullptr));
}

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

void after(int64_t microseconds, std::function<void()> event)
{
    events.emplace(clock_now + microseconds, std::move(event));
}

void signal_after(int64_t microseconds)
{
    after(microseconds, [] { interrupted = true; });
}

int64_t now()
{
    return clock_now;
}

void reset()
{
    events.clear();
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

int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (clock != CLOCK_MONOTONIC) {
        return static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
    }
    *time = {test::clock_now / 1000000, test::clock_now % 1000000 * 1000};
    return 0;
}

int select(int count, fd_set *readable, fd_set *writable, fd_set *, timeval *limit)
{
    if (test::waiting_peer) {
        test::waiting_peer();
    }
    const int64_t end = test::clock_now + limit->tv_sec * 1000000 + limit->tv_usec;
    for (;;) {
        fd_set nothing;
        FD_ZERO(&nothing);
        fd_set for_messages = readable != nullptr ? *readable : nothing;
        fd_set for_room = writable != nullptr ? *writable : nothing;
        const int ready = test::look(count, &for_messages, &for_room);
        if (ready != 0) {
            return ready;
        }
        if (!test::pass_time(end)) {
            test::all_waits.selects.push_back(limit->tv_sec);
            return 0;
        }
        if (std::exchange(test::interrupted, false)) {
            errno = EINTR;
            return -1;
        }
    }
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
