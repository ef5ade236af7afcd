// The camera's counter of time, which the log stamps its lines with: no other machine has the file, and each line would
// first say so on standard output. A test program that has an open of its own takes the place of this one.
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr char COUNTER_PATH[] = "/sys/generic-timer/counter";

// A file in memory that holds a counter of 0.
int open_counter()
{
    const int file = memfd_create("counter", MFD_CLOEXEC);
    if (file >= 0 && ftruncate(file, sizeof(uint64_t)) != 0) {
        close(file);
        return -1;
    }
    return file;
}

} // namespace

extern "C" [[gnu::weak]] int open(const char *path, int flags, ...)
{
    if (strcmp(path, COUNTER_PATH) == 0) {
        return open_counter();
    }
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}
