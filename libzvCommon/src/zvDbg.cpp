#include "zvDbg.h"

#include "timed_wait.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <execinfo.h>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

int32_t g_logLevel = ZV_LOG_ERROR;
uint32_t g_debug = 0x30000000;
uint32_t g_debug_level = 0x285420;

const zvErrnoStr_t zvErrnoStrMap[ZV_ERRNO_STR_MAP_COUNT] = {
    {"ZV_OK", ZV_OK},
    {"ZV_ERR", ZV_ERR},
    {"ZV_ERR_OUTOFMEM", ZV_ERR_OUTOFMEM},
    {"ZV_ERR_INVALID_PARAM", ZV_ERR_INVALID_PARAM},
    {"ZV_ERR_INCOMPLETE_CGI_PARAM", ZV_ERR_INCOMPLETE_CGI_PARAM},
    {"ZV_ERR_MQ_FAIL", ZV_ERR_MQ_FAIL},
    {"ZV_ERR_NO_SDCARD", ZV_ERR_NO_SDCARD},
    {"ZV_ERR_SDCARD_FULL", ZV_ERR_SDCARD_FULL},
    {"ZV_ERR_CREATING_MISC_DIR", ZV_ERR_CREATING_MISC_DIR},
    {"ZV_ERR_UPLOADED_FILE", ZV_ERR_UPLOADED_FILE},
    {"ZV_ERR_FILE_OPEN", ZV_ERR_FILE_OPEN},
    {"ZV_ERR_FILE_READ", ZV_ERR_FILE_READ},
    {"ZV_ERR_FILE_WRITE", ZV_ERR_FILE_WRITE},
    {"ZV_ERR_REMOTE_FILE_OPEN", ZV_ERR_REMOTE_FILE_OPEN},
    {"ZV_ERR_REMOTE_FILE_READ", ZV_ERR_REMOTE_FILE_READ},
    {"ZV_ERR_REMOTE_FILE_WRITE", ZV_ERR_REMOTE_FILE_WRITE},
    {"ZV_ERR_ACCESS_DENIED", ZV_ERR_ACCESS_DENIED},
    {"ZV_ERR_NAK", ZV_ERR_NAK},
    {"ZV_ERR_RESPONSE_ALREADY_SENT", ZV_ERR_RESPONSE_ALREADY_SENT},
    {"ZV_ERR_NAK_OFF", ZV_ERR_NAK_OFF},
    {"ZV_ERR_NOT_SUPPORTED", ZV_ERR_NOT_SUPPORTED},
    {"ZV_ERR_DOWNLOAD_FAILED", ZV_ERR_DOWNLOAD_FAILED},
};

namespace {

constexpr char TIMER_PATH[] = "/sys/generic-timer/counter";
constexpr int32_t TIMER_CLOSED = -22;

std::atomic<int32_t> timestamp_fd = TIMER_CLOSED; // threads that find it closed may both open it; the last one stays
std::atomic<bool> tell_counter_failures = true;   // on standard output

constexpr const char *pLogLevelStrings[] = {
    "[ OFF ]", "[FATAL]", "[ERROR]", "[WARN ]", "[DEBUG]", "[INFO ]", "[TRACE]",
};

// A line: the message ends before MESSAGE_END, where a cut message is followed by the source; a line fits in LINE_SIZE.
constexpr size_t TIME_SIZE = 32;
constexpr size_t LINE_SIZE = 441;
constexpr size_t LINE_MAX_LENGTH = 440;
constexpr size_t MESSAGE_END = 350;
constexpr size_t CUT_POSITION = 349;
constexpr size_t CUT_ROOM = 91;

constexpr int STACK_FRAMES = 100;
constexpr int ASSERT_FRAMES = 10;

constexpr char RECORD_PATH[] = "/tmp/zvlog.txt";
constexpr mode_t RECORD_MODE = 0666;

// The file that keeps failed assertions, to append to. In a folder that is open to everybody the name may be somebody's
// link or FIFO: null for what is no file of its own, and no wait.
FILE *open_record()
{
    const int fd = open(RECORD_PATH, O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, RECORD_MODE);
    struct stat found = {};
    FILE *record = fd >= 0 && fstat(fd, &found) == 0 && S_ISREG(found.st_mode) ? fdopen(fd, "a+") : nullptr;
    if (fd >= 0 && record == nullptr) {
        close(fd);
    }
    return record;
}

} // namespace

const char *zvErrno2Str(int32_t code)
{
    for (const zvErrnoStr_t &row : zvErrnoStrMap) {
        if (row.value == code) {
            return row.str;
        }
    }
    return "UNKNOWN";
}

int32_t timestampinit()
{
    if (timestamp_fd >= 0) {
        return 0;
    }
    const int fd = open(TIMER_PATH, O_RDONLY | O_CLOEXEC);
    timestamp_fd = fd;
    if (fd >= 0) {
        return 0;
    }
    if (tell_counter_failures) {
        printf("***********************************\nfailed to open sysfs timer at %s (%d)\n", TIMER_PATH, fd);
    }
    return -1;
}

void zvUtilTellCounterFailures(bool tell)
{
    tell_counter_failures = tell;
}

void getlogtime(char *buf)
{
    if (buf == nullptr) {
        return;
    }
    timestampinit();
    if (int32_t fd = timestamp_fd; fd >= 0) {
        uint64_t counter = 0;
        const ssize_t got = pread(fd, &counter, sizeof counter, 0);
        if (got == static_cast<ssize_t>(sizeof counter)) {
            snprintf(buf, TIME_SIZE, "[%.8u]", static_cast<uint32_t>(counter / 1000));
            return;
        }
        if (tell_counter_failures) {
            printf("******** failed to read sysfs counter (%d)\n", static_cast<int>(got));
        }
        if (timestamp_fd.compare_exchange_strong(fd, TIMER_CLOSED)) { // another thread has not closed it yet
            close(fd);
        }
    }
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    snprintf(buf, TIME_SIZE, "[%.5ld%.3ld] ", static_cast<long>(now.tv_sec), now.tv_nsec / 1000000);
}

void zvUtilKlogMsgLevel(int32_t level, int32_t line, const char *file, const char *format, ...)
{
    const int saved_errno = errno;
    char time_text[TIME_SIZE] = {};
    char text[LINE_SIZE] = {};
    getlogtime(time_text);
    const auto head = static_cast<size_t>(snprintf(text, sizeof text, "%s%s ", time_text, pLogLevelStrings[level]));

    errno = saved_errno; // a format may hold %m
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(text + head, MESSAGE_END - head, format, arguments);
    va_end(arguments);

    const bool cut = length < 0 || static_cast<size_t>(length) >= MESSAGE_END - head;
    const size_t end = cut ? CUT_POSITION : head + static_cast<size_t>(length);
    const size_t room = cut ? CUT_ROOM : LINE_MAX_LENGTH - end;
    const int suffix = snprintf(text + end, room, " @%s:%d", file, line);
    if (suffix < 0 || static_cast<size_t>(suffix) >= room) {
        text[end] = ' ';
        text[end + 1] = '\0';
    }
    syslog(LOG_ERR, "%s", text);
    errno = saved_errno;
}

void zvUtilSetLogLevel(int32_t level)
{
    if (static_cast<uint32_t>(level) < std::size(pLogLevelStrings)) {
        g_logLevel = level;
    }
}

int32_t zvUtilGetLogLevel()
{
    return g_logLevel;
}

void print_stack_trace()
{
    void *frames[STACK_FRAMES];
    const int count = backtrace(frames, STACK_FRAMES);
    char **names = backtrace_symbols(frames, count);
    if (names == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "backtrace_symbols err");
        return;
    }
    for (int i = 0; i < count; ++i) {
        printf("        %s\n", names[i]);
    }
    free(names);
}

void zvAssertFailed(const char *file, const char *path, const char *function, int32_t line, const char *expression)
{
    if (g_logLevel > ZV_LOG_DEBUG) {
        zvUtilKlogMsgLevel(ZV_LOG_INFO, line, file, "\033[31mASSERT:%s/%s:%d:%s\n\033[0m", path, function, line,
                           expression);
    }
    raise(SIGABRT);
    exit(-1);
}

void zvAssertTraceFailed(const char *file, const char *path, const char *function, int32_t line, const char *expression)
{
    if (FILE *record = open_record(); record != nullptr) {
        fprintf(record, "ASSERT:%s/%s:%d:%s\n", path, function, line, expression);
        fclose(record);
    }
    const bool logged = g_logLevel > ZV_LOG_DEBUG;
    if (logged) {
        zvUtilKlogMsgLevel(ZV_LOG_INFO, line, file, "\033[31mASSERT:%s/%s:%d:%s\033[0m", path, function, line,
                           expression);
    }
    void *frames[ASSERT_FRAMES];
    const int count = backtrace(frames, ASSERT_FRAMES);
    char **names = backtrace_symbols(frames, count);
    for (int i = 0; names != nullptr && i < count; ++i) {
        if (logged) {
            zvUtilKlogMsgLevel(ZV_LOG_INFO, line, file, "\033[31mTRACE %s %s\033[0m", names[i], expression);
        }
    }
    free(names);
    raise(SIGABRT);
    exit(-1);
}

bool zv::message_available(mqd_t queue, TimeLimit &limit)
{
    if (wait_for(QueueEvent::MESSAGE, queue, limit)) {
        return true;
    }
    zvUtilKlogMsgLevel(ZV_LOG_INFO, __LINE__, ZV_FILE_NAME, "Warning: %d seconds timeout expired", limit.seconds());
    return false;
}

int64_t zv::receive_in_time(mqd_t queue, char *buffer, size_t size, TimeLimit &limit)
{
    if (!message_available(queue, limit)) {
        errno = ETIMEDOUT;
        return -1;
    }
    return mq_receive(queue, buffer, size, nullptr);
}

int32_t msg_available(int32_t fd, int32_t seconds)
{
    zv::TimeLimit limit(seconds);
    return zv::message_available(fd, limit) ? 1 : 0;
}

int64_t zv_mq_timedreceive(mqd_t mqd, char *buf, size_t len, uint32_t *prio, const timespec *timeout)
{
    (void)prio;
    zv::TimeLimit limit(static_cast<int32_t>(timeout->tv_sec));
    return zv::receive_in_time(mqd, buf, len, limit);
}
