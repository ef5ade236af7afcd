/*
 * zvDbg.h - logging, result codes, assertions and the timed queue wait
 *
 * The ground floor: every other header of the library includes this one.
 *
 * The library stays in the process once it is loaded: dlclose does not unload it.
 */
#ifndef ZVCTRL_ZVDBG_H
#define ZVCTRL_ZVDBG_H

#include <mqueue.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <time.h>

#define ZV_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Result codes -------------------------------------------------------------------------------------------------
 * Every function that can fail returns 0 or one of the negative codes.
 */
enum {
    ZV_OK = 0,
    ZV_ERR = -1,
    ZV_ERR_OUTOFMEM = -2,
    ZV_ERR_INVALID_PARAM = -3,
    ZV_ERR_INCOMPLETE_CGI_PARAM = -4,
    ZV_ERR_MQ_FAIL = -5,
    ZV_ERR_NO_SDCARD = -6,
    ZV_ERR_SDCARD_FULL = -7,
    ZV_ERR_CREATING_MISC_DIR = -8,
    ZV_ERR_UPLOADED_FILE = -9,
    ZV_ERR_FILE_OPEN = -10,
    ZV_ERR_FILE_READ = -11,
    ZV_ERR_FILE_WRITE = -12,
    ZV_ERR_REMOTE_FILE_OPEN = -14,
    ZV_ERR_REMOTE_FILE_READ = -15,
    ZV_ERR_REMOTE_FILE_WRITE = -16,
    ZV_ERR_ACCESS_DENIED = -17,
    ZV_ERR_NO_RESPONSE = -81, /* an awaited answer did not come; has no row in zvErrnoStrMap */
    ZV_ERR_DOWNLOAD_FAILED = -100,
    ZV_ERR_NAK = -101,
    ZV_ERR_RESPONSE_ALREADY_SENT = -102,
    ZV_ERR_NAK_OFF = -103,
    ZV_ERR_NOT_SUPPORTED = -104,
};

struct zvErrnoStr_t {
    const char *str; /* the constant's name */
    int32_t value;
};

/* The codes with a name, 22 rows. */
#define ZV_ERRNO_STR_MAP_COUNT 22
extern ZV_API const struct zvErrnoStr_t zvErrnoStrMap[ZV_ERRNO_STR_MAP_COUNT];

/* The name of a result code, or "UNKNOWN" for a code without a row. The text is static. Any thread may call. */
ZV_API const char *zvErrno2Str(int32_t code);

/* ---- Logging ------------------------------------------------------------------------------------------------------
 * A higher level is more talkative. All lines go to the system log with priority LOG_ERR; a line is
 *     time stamp, level text such as "[ERROR]", a blank, the message, " @", source file, ":", source line
 * and never longer than 440 characters: a long message is cut so that the source still fits after it.
 */
enum {
    ZV_LOG_OFF = 0,
    ZV_LOG_FATAL = 1, /* reserved */
    ZV_LOG_ERROR = 2, /* every failure and every abnormal event */
    ZV_LOG_WARN = 3,  /* recoverable oddities */
    ZV_LOG_DEBUG = 4, /* command tracing, drained messages */
    ZV_LOG_INFO = 5,  /* call tracing */
    ZV_LOG_TRACE = 6, /* value tracing in the status output */
};

/* The highest level that ZV_LOG lets through; 2 at start. Read without a lock. */
extern ZV_API int32_t g_logLevel;

/* Which directions the message trace prints, tested against s_dmsghex (zvHex.h); 0x30000000 at start. */
extern ZV_API uint32_t g_debug;

/* Debug features: bit 0x100 turns the message trace on, bit 0x200 makes hex dumps complete; 0x285420 at start. */
extern ZV_API uint32_t g_debug_level;

/* Source file of a log line: the name alone, without folders. */
#ifdef __FILE_NAME__
#define ZV_FILE_NAME __FILE_NAME__
#else
#define ZV_FILE_NAME (__builtin_strrchr("/" __FILE__, '/') + 1)
#endif

/*
 * ZV_LOG(level, format, ...) logs one line when g_logLevel is at least `level`. A silent call costs one load and one
 * compare, and its arguments are not evaluated.
 */
#define ZV_LOG(level, ...)                                                                                             \
    do {                                                                                                               \
        if (g_logLevel >= (level)) {                                                                                   \
            zvUtilKlogMsgLevel((level), __LINE__, ZV_FILE_NAME, __VA_ARGS__);                                          \
        }                                                                                                              \
    } while (0)

/*
 * Builds one line and hands it to the system log, whatever g_logLevel says: ZV_LOG makes that test. `level` is 0 to 6.
 * Allocates nothing, leaves errno as it was, and may be called from any thread.
 */
ZV_API void zvUtilKlogMsgLevel(int32_t level, int32_t line, const char *file, const char *format, ...)
    __attribute__((format(printf, 4, 5)));

/* Sets g_logLevel to 0 to 6; any other value is ignored. Other threads that log see it at their next lines. */
ZV_API void zvUtilSetLogLevel(int32_t level);
ZV_API int32_t zvUtilGetLogLevel(void);

/* Prints the caller's stack to standard output, at most 100 frames, one per line, after eight blanks. */
ZV_API void print_stack_trace(void);

/*
 * Writes the time stamp of a log line into `buf`, which holds at least 32 bytes; a null `buf` does nothing. With the
 * camera's counter it is "[%.8u]", otherwise the time since boot as "[%.5ld%.3ld] ", seconds and milliseconds.
 */
ZV_API void getlogtime(char *buf);

/*
 * Opens the camera's counter, "/sys/generic-timer/counter", unless it is open. Returns 0 when it is open, otherwise -1,
 * after a message on standard output; each call tries again.
 */
ZV_API int32_t timestampinit(void);

/*
 * Whether the messages of the two functions above about the counter go to standard output, as they do at start: each
 * log line of a machine without the counter comes with one. A program whose standard output is its answer turns them
 * off. For the whole process; any thread may call.
 */
ZV_API void zvUtilTellCounterFailures(bool tell);

/* ---- Assertions ---------------------------------------------------------------------------------------------------
 * For faults of this library only; they stay in release builds. A source that uses them defines ZV_SOURCE_PATH, its
 * path without the ending, such as "libzvCommon/src/zvTlv".
 */
#define ZV_ASSERT(expression)                                                                                          \
    ((expression) ? (void)0 : zvAssertFailed(ZV_FILE_NAME, ZV_SOURCE_PATH, __func__, __LINE__, #expression))

/* Also leaves a line in "/tmp/zvlog.txt" and the stack in the log. */
#define ZV_ASSERT_TRACE(expression)                                                                                    \
    ((expression) ? (void)0 : zvAssertTraceFailed(ZV_FILE_NAME, ZV_SOURCE_PATH, __func__, __LINE__, #expression))

ZV_API void zvAssertFailed(const char *file, const char *path, const char *function, int32_t line,
                           const char *expression) __attribute__((noreturn));
ZV_API void zvAssertTraceFailed(const char *file, const char *path, const char *function, int32_t line,
                                const char *expression) __attribute__((noreturn));

/* ---- Timed queue wait ------------------------------------------------------------------------------------------ */

/*
 * Waits until `fd` is readable, at most `seconds` on the monotonic clock. Returns 1 when it is, otherwise 0 after a
 * warning. A signal handler, with SA_RESTART or without, does not end the wait, which goes on for what is left. `fd`
 * may be any number; a closed one never has a message, and is not waited for.
 */
ZV_API int32_t msg_available(int32_t fd, int32_t seconds);

/*
 * mq_timedreceive with a relative time limit: of `timeout` only tv_sec is used, a number of seconds from now, waited as
 * msg_available does. `prio` is not used. Returns the message's length, or -1 with errno: ETIMEDOUT when no message
 * came in time, otherwise what mq_receive left.
 */
ZV_API int64_t zv_mq_timedreceive(mqd_t mqd, char *buf, size_t len, uint32_t *prio, const struct timespec *timeout);

#ifdef __cplusplus
}
#endif

#endif
