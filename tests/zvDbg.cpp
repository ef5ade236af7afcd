#include "zvDbg.h"

#include "interpose.h"
#include "queues.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#define ZV_SOURCE_PATH "tests/zvDbg"

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

namespace {

constexpr char COUNTER_PATH[] = "/sys/generic-timer/counter";
constexpr int COUNTER_FD = 1000000; // no descriptor of this process

// The counter that the program's own open, pread and close, at its end, show the library.
struct Counter {
    bool present = false;
    ssize_t read_result = 8;
    uint64_t value = 0;
    int opens = 0;
    int closes = 0;
} counter;

bool no_symbols = false; // lets the program's own backtrace_symbols fail

class Log : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        counter = {};
    }
    // Leaves the counter closed: a failed read closes it.
    void TearDown() override
    {
        counter.read_result = -1;
        stamp();
        g_logLevel = ZV_LOG_ERROR;
    }
    static std::string stamp()
    {
        char text[32] = {};
        getlogtime(text);
        return text;
    }
    // The line of a message, without the 18 characters before it.
    static std::string line_of(const std::string &message, const std::string &file)
    {
        counter.present = true;
        counter.value = 1999;
        zvUtilKlogMsgLevel(ZV_LOG_WARN, 1234, file.c_str(), "%s", message.c_str());
        const std::string line = raw_log_lines().back();
        EXPECT_THAT(line, StartsWith("[00000001][WARN ] "));
        return line.substr(18);
    }
};

TEST_F(Log, StampsALineWithTheCounterOrTheClock)
{
    testing::internal::CaptureStdout();
    ZV_LOG(ZV_LOG_ERROR, "first %d\n", 7);
    const int line = __LINE__ - 1;
    EXPECT_THAT(raw_log_lines().back(),
                MatchesRegex("\\[[0-9]{8,}\\] \\[ERROR\\] first 7\n @zvDbg.cpp:" + std::to_string(line)));
    EXPECT_EQ(-1, timestampinit());
    EXPECT_EQ(2, counter.opens) << "it is tried again on every call";
    const std::string failure =
        "***********************************\nfailed to open sysfs timer at /sys/generic-timer/counter (-1)\n";
    EXPECT_EQ(failure + failure, testing::internal::GetCapturedStdout());

    counter.present = true;
    counter.value = 12345678901;
    EXPECT_EQ("[12345678]", stamp());
    counter.value = 999;
    EXPECT_EQ("[00000000]", stamp());
    counter.value = 5000000000123456; // the low 32 bits of 5000000000123
    EXPECT_EQ("[658067579]", stamp());
    EXPECT_EQ(0, timestampinit());
    EXPECT_EQ(3, counter.opens);

    testing::internal::CaptureStdout();
    counter.read_result = 4;
    EXPECT_THAT(stamp(), MatchesRegex("\\[[0-9]{8,}\\] "));
    EXPECT_EQ("******** failed to read sysfs counter (4)\n", testing::internal::GetCapturedStdout());
    EXPECT_EQ(1, counter.closes);
    counter.read_result = 8;
    counter.value = 42000;
    EXPECT_EQ("[00000042]", stamp());
    EXPECT_EQ(4, counter.opens);
    getlogtime(nullptr);

    testing::internal::CaptureStdout();
    zvUtilTellCounterFailures(false);
    counter.read_result = 4;
    stamp();
    counter.present = false;
    EXPECT_EQ(-1, timestampinit());
    zvUtilTellCounterFailures(true);
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
}

TEST_F(Log, LongMessagesAreCutAndKeepTheirSource)
{
    const std::string source = " @file.cpp:1234";
    for (const size_t length : {0u, 1u, 330u, 331u}) {
        EXPECT_EQ(std::string(length, 'm') + source, line_of(std::string(length, 'm'), "file.cpp"));
    }
    for (const size_t length : {332u, 333u, 5000u}) {
        EXPECT_EQ(std::string(331, 'm') + source, line_of(std::string(length, 'm'), "file.cpp"));
    }
}

TEST_F(Log, AnOverlongSourceIsReplacedByABlank)
{
    const auto file = [](size_t suffix) { return std::string(suffix - strlen(" @:1234"), 'f'); };
    const std::string cut(331, 'm');
    EXPECT_EQ(cut + " @" + file(90) + ":1234", line_of(std::string(400, 'm'), file(90)));
    EXPECT_EQ(cut + " ", line_of(std::string(400, 'm'), file(91)));
    EXPECT_EQ(350u, raw_log_lines().back().size());
    // After a message that was not cut there is room up to 440 characters.
    EXPECT_EQ("m @" + file(420) + ":1234", line_of("m", file(420)));
    EXPECT_EQ(439u, raw_log_lines().back().size());
    EXPECT_EQ("m ", line_of("m", file(421)));
}

TEST_F(Log, LevelsAreTestedAtTheCallSite)
{
    int evaluated = 0;
    const char *texts[] = {"[ OFF ]", "[FATAL]", "[ERROR]", "[WARN ]", "[DEBUG]", "[INFO ]", "[TRACE]"};
    counter.present = true;
    for (int32_t limit = 0; limit <= 6; ++limit) {
        zvUtilSetLogLevel(limit);
        EXPECT_EQ(limit, zvUtilGetLogLevel());
        for (int32_t level = 1; level <= 6; ++level) {
            raw_log_lines().clear();
            evaluated = 0;
            ZV_LOG(level, "%d", ++evaluated);
            EXPECT_EQ(level <= limit, evaluated == 1);
            ASSERT_EQ(level <= limit, raw_log_lines().size() == 1);
            if (level <= limit) {
                EXPECT_THAT(raw_log_lines()[0], HasSubstr(texts[level]));
            }
        }
    }
    for (const int32_t refused : {7, -1, INT32_MIN}) {
        zvUtilSetLogLevel(refused);
        EXPECT_EQ(6, g_logLevel);
    }
    zvUtilSetLogLevel(0);
    zvUtilKlogMsgLevel(0, 1, "f", "whatever the level");
    EXPECT_THAT(raw_log_lines().back(), HasSubstr("[ OFF ] whatever"));
}

TEST_F(Log, LeavesErrnoToItsCaller)
{
    errno = EPIPE;
    ZV_LOG(ZV_LOG_ERROR, "the failed open of the counter changes it in between");
    EXPECT_EQ(EPIPE, errno);
    EXPECT_EQ(1, counter.opens);
}

TEST(ResultCodes, HaveTheirNames)
{
    const std::tuple<size_t, const char *, int32_t> rows[] = {
        {0, "ZV_OK", 0},
        {12, "ZV_ERR_FILE_WRITE", -12},
        {13, "ZV_ERR_REMOTE_FILE_OPEN", -14},
        {16, "ZV_ERR_ACCESS_DENIED", -17},
        {17, "ZV_ERR_NAK", -101},
        {20, "ZV_ERR_NOT_SUPPORTED", -104},
        {21, "ZV_ERR_DOWNLOAD_FAILED", -100},
    };
    for (const auto &[row, name, code] : rows) {
        EXPECT_STREQ(name, zvErrnoStrMap[row].str);
        EXPECT_EQ(code, zvErrnoStrMap[row].value);
        EXPECT_STREQ(name, zvErrno2Str(code));
    }
    for (const int32_t code : {-13, -81, -99, 1}) {
        EXPECT_STREQ("UNKNOWN", zvErrno2Str(code));
    }
}

TEST(Stack, IsPrintedWithEightBlanks)
{
    testing::internal::CaptureStdout();
    print_stack_trace();
    EXPECT_THAT(testing::internal::GetCapturedStdout(), MatchesRegex("(        [^ \n].*\n)+"));
    reset();
    no_symbols = true;
    print_stack_trace();
    no_symbols = false;
    EXPECT_THAT(log_messages(), ElementsAre("backtrace_symbols err"));
}

TEST(TimedWait, WaitsForADescriptorInSeconds)
{
    reset();
    g_logLevel = ZV_LOG_OFF; // the warning comes out all the same
    Queue queue("/t_wait" + std::to_string(getpid()), 2, 64);
    const timespec limit = {7, 999999999};
    char buffer[64] = {};
    uint32_t priority = 99;
    EXPECT_EQ(-1, zv_mq_timedreceive(queue.descriptor(), buffer, sizeof buffer, &priority, &limit));
    EXPECT_EQ(ETIMEDOUT, errno);
    EXPECT_EQ(0, msg_available(queue.descriptor(), 0));
    EXPECT_THAT(waits().selects, ElementsAre(7, 0));
    EXPECT_THAT(log_lines(), ElementsAre(StartsWith("INFO Warning: 7 seconds timeout expired @zvDbg.cpp:"),
                                         StartsWith("INFO Warning: 0 seconds timeout expired @zvDbg.cpp:")));

    on_wait([&] { queue.send({5, 6}); });
    EXPECT_EQ(2, zv_mq_timedreceive(queue.descriptor(), buffer, sizeof buffer, &priority, &limit));
    EXPECT_EQ(99u, priority);
    EXPECT_EQ(1, msg_available(queue.descriptor(), 0));
    EXPECT_EQ(-1, zv_mq_timedreceive(queue.descriptor(), buffer, 10, nullptr, &limit));
    EXPECT_EQ(EMSGSIZE, errno);

    reset();
    for (const int32_t closed : {-1, -22, FD_SETSIZE, INT32_MAX}) {
        EXPECT_EQ(0, msg_available(closed, 3));
    }
    EXPECT_TRUE(waits().selects.empty());
    EXPECT_EQ(4u, log_lines().size());
}

TEST(TimedWait, GoesOnAfterASignalForWhatIsLeft)
{
    reset();
    Queue queue("/t_signal" + std::to_string(getpid()), 2, 64);
    const int64_t begin = now();
    for (const int64_t time : {1'000'000, 4'500'000}) {
        signal_after(time);
    }
    EXPECT_EQ(0, msg_available(queue.descriptor(), 7));
    EXPECT_EQ(7'000'000, now() - begin);
    EXPECT_EQ(1u, log_lines().size());

    signal_after(2'000'000);
    after(3'000'000, [&] { queue.send({1}); });
    EXPECT_EQ(1, msg_available(queue.descriptor(), 10));
    EXPECT_EQ(10'000'000, now() - begin);
}

TEST(TimedWait, TakesDescriptorsThatFitIntoNoSet)
{
    reset();
    Queue queue("/t_large" + std::to_string(getpid()), 2, 64);
    rlimit limit = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &limit));
    limit.rlim_cur = limit.rlim_max;
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &limit));
    const int large = fcntl(queue.descriptor(), F_DUPFD, FD_SETSIZE);
    ASSERT_GE(large, FD_SETSIZE);
    EXPECT_EQ(0, msg_available(large, 0));
    queue.send({1});
    EXPECT_EQ(1, msg_available(large, 3));
    EXPECT_TRUE(waits().selects.empty());
    close(large);
}

// Fails an assertion with SIGABRT ignored, and shows the log on standard error at the exit that then follows.
template <class Assertion>
void show_log_of(int32_t level, Assertion assertion)
{
    reset();
    g_logLevel = level;
    signal(SIGABRT, SIG_IGN);
    atexit([] {
        for (const std::string &line : log_lines()) {
            fprintf(stderr, "<%s>", line.c_str());
        }
    });
    assertion();
}

TEST(AssertionDeathTest, LogsAtInfoAndEndsTheProcess)
{
    const int one = 1;
    const auto fails = [=] { ZV_ASSERT(one == 2); };
    ZV_ASSERT(one == 1);
    EXPECT_EXIT(fails(), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(show_log_of(ZV_LOG_DEBUG, fails), testing::ExitedWithCode(255), testing::Not(HasSubstr("ASSERT")));
    EXPECT_EXIT(show_log_of(ZV_LOG_INFO, fails), testing::ExitedWithCode(255),
                "<INFO \033\\[31mASSERT:tests/zvDbg/operator\\(\\):[0-9]+:one == 2\n\033\\[0m @zvDbg.cpp:[0-9]+>");
}

TEST(AssertionDeathTest, TraceLeavesARecordAndTheStack)
{
    unlink("/tmp/zvlog.txt");
    const int one = 1;
    const auto fails = [=] { ZV_ASSERT_TRACE(one == 2); };
    ZV_ASSERT_TRACE(one == 1);
    EXPECT_EXIT(fails(), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(show_log_of(ZV_LOG_INFO, fails), testing::ExitedWithCode(255),
                "<INFO \033\\[31mASSERT:tests/zvDbg/operator\\(\\):[0-9]+:one == 2\033\\[0m @zvDbg.cpp:[0-9]+>"
                "(<INFO \033\\[31mTRACE .* one == 2\033\\[0m @zvDbg.cpp:[0-9]+>)+");
    std::ostringstream record;
    record << std::ifstream("/tmp/zvlog.txt").rdbuf();
    EXPECT_THAT(record.str(), MatchesRegex("(ASSERT:tests/zvDbg/operator\\(\\):[0-9]+:one == 2\n){2}"));
    unlink("/tmp/zvlog.txt");

    // What somebody else put there is neither written to nor waited for.
    ASSERT_EQ(0, symlink("/tmp/zvlog.victim", "/tmp/zvlog.txt"));
    EXPECT_EXIT(fails(), testing::KilledBySignal(SIGABRT), "");
    EXPECT_NE(0, access("/tmp/zvlog.victim", F_OK));
    unlink("/tmp/zvlog.txt");
    ASSERT_EQ(0, mkfifo("/tmp/zvlog.txt", 0600));
    EXPECT_EXIT(fails(), testing::KilledBySignal(SIGABRT), "");
    unlink("/tmp/zvlog.txt");
}

} // namespace

extern "C" {

int open(const char *path, int flags, ...)
{
    if (strcmp(path, COUNTER_PATH) == 0) {
        ++counter.opens;
        errno = ENOENT;
        return counter.present ? COUNTER_FD : -1;
    }
    va_list arguments;
    va_start(arguments, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0;
    va_end(arguments);
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

ssize_t pread(int fd, void *buffer, size_t size, off_t offset)
{
    if (fd != COUNTER_FD) {
        return syscall(SYS_pread64, fd, buffer, size, offset);
    }
    EXPECT_EQ(8u, size);
    EXPECT_EQ(0, offset);
    memcpy(buffer, &counter.value, size);
    return counter.read_result;
}

int close(int fd)
{
    if (fd != COUNTER_FD) {
        return static_cast<int>(syscall(SYS_close, fd));
    }
    ++counter.closes;
    return 0;
}

char **backtrace_symbols(void *const *frames, int count) noexcept
{
    using Symbols = char **(*)(void *const *, int);
    return no_symbols ? nullptr : reinterpret_cast<Symbols>(dlsym(RTLD_NEXT, "backtrace_symbols"))(frames, count);
}

} // extern "C"
