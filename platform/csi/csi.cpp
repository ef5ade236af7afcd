#include "csi.h"

#include "bytes.h"
#include "csi_keys.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// A file for each key, in one folder: "/tmp/zvcsi", or the one that the environment's ZVCSI_DIR names. A value is
// written to a file next to its own and renamed onto it, so that a reader finds the old value or the new one whole.
//
// A poll asks for the same few values again and again, so each process keeps the short ones, and looks at the file
// alone while it is the same one. A file's change time moves with every write, rename or link, and nobody can set it;
// but it moves in ticks of a clock, so that two writes within a tick look alike. A value is therefore kept only from a
// file that has rested for some ticks when it is read: whatever happens to it later has a later change time.

namespace {

constexpr size_t PATH_SIZE = 4096;
constexpr int64_t NANOSECONDS_PER_SECOND = 1000000000;
constexpr int64_t RESTED_NANOSECONDS = NANOSECONDS_PER_SECOND / 10; // ten ticks of the slowest kernel
constexpr size_t KEPT_MAX = 64;                                     // longer values are read each time

int64_t nanoseconds(const timespec &time)
{
    return time.tv_sec * NANOSECONDS_PER_SECOND + time.tv_nsec;
}

// What tells a file, as it was at some time, from every other one and from itself after a change.
struct FileVersion {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    int64_t changed = 0; // nanoseconds since 1970

    constexpr FileVersion() = default;
    explicit FileVersion(const struct stat &file)
        : device(file.st_dev), inode(file.st_ino), size(file.st_size), changed(nanoseconds(file.st_ctim))
    {
    }
    bool operator==(const FileVersion &) const = default;
};

struct KeptValue {
    FileVersion version;
    uint8_t length;
    uint8_t bytes[KEPT_MAX];
};

// A key's last value. Who finds the place busy reads the file and waits for nobody, so that a process may be forked,
// or a thread interrupted, at any point.
struct Place {
    std::atomic_flag busy;
    KeptValue value;
};

constinit Place places[UINT8_MAX + 1] = {};

bool find_kept(uint8_t key, KeptValue &value)
{
    Place &place = places[key];
    if (place.busy.test_and_set(std::memory_order_acquire)) {
        return false;
    }
    value = place.value;
    place.busy.clear(std::memory_order_release);
    return value.version != FileVersion();
}

void keep(uint8_t key, const KeptValue &value)
{
    Place &place = places[key];
    if (!place.busy.test_and_set(std::memory_order_acquire)) {
        place.value = value;
        place.busy.clear(std::memory_order_release);
    }
}

const char *folder()
{
    const char *chosen = getenv("ZVCSI_DIR");
    return chosen != nullptr && chosen[0] != '\0' ? chosen : "/tmp/zvcsi";
}

bool path_of(uint8_t key, const char *suffix, char (&path)[PATH_SIZE])
{
    const int length = snprintf(path, sizeof path, "%s/%u%s", folder(), static_cast<unsigned>(key), suffix);
    return length > 0 && static_cast<size_t>(length) < sizeof path;
}

// Whether the path still leads to this version of a file.
bool is_still(const char *path, const FileVersion &version)
{
    struct stat now = {};
    return stat(path, &now) == 0 && FileVersion(now) == version;
}

// Stores the open file's version, and returns whether every later change will show in it.
bool rested_version(int file, FileVersion &version)
{
    timespec now = {};
    struct stat status = {};
    if (clock_gettime(CLOCK_REALTIME, &now) != 0 || fstat(file, &status) != 0) {
        return false;
    }
    version = FileVersion(status);
    const bool whole_seconds = version.changed % NANOSECONDS_PER_SECOND == 0; // all that some file systems know
    return S_ISREG(status.st_mode) && !whole_seconds && nanoseconds(now) - version.changed >= RESTED_NANOSECONDS;
}

// Reads up to `size` bytes; returns how many came, or -1.
ssize_t read_whole(int file, uint8_t *buffer, size_t size)
{
    size_t done = 0;
    while (done < size) {
        const ssize_t got = read(file, buffer + done, size - done);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return -1;
        }
        if (got == 0) {
            break;
        }
        done += static_cast<size_t>(got);
    }
    return static_cast<ssize_t>(done);
}

bool write_whole(int file, const uint8_t *value, size_t length)
{
    size_t done = 0;
    while (done < length) {
        const ssize_t put = write(file, value + done, length - done);
        if (put < 0 && errno == EINTR) {
            continue;
        }
        if (put <= 0) {
            return false;
        }
        done += static_cast<size_t>(put);
    }
    return true;
}

void hand_out(const uint8_t *value, uint32_t whole, uint32_t size, uint32_t *length, uint8_t *buffer)
{
    *length = whole;
    if (const uint32_t copied = whole < size ? whole : size; copied > 0) {
        memcpy(buffer, value, copied);
    }
}

bool make_folder()
{
    return mkdir(folder(), 0777) == 0 || errno == EEXIST;
}

} // namespace

int32_t csi_get(uint8_t key, uint32_t size, uint32_t *length, uint8_t *buffer)
{
    char path[PATH_SIZE];
    if (length == nullptr || (buffer == nullptr && size > 0) || !path_of(key, "", path)) {
        return -1;
    }
    KeptValue kept = {};
    if (find_kept(key, kept) && is_still(path, kept.version)) {
        hand_out(kept.bytes, kept.length, size, length, buffer);
        return 0;
    }
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return -1;
    }
    const bool rested = rested_version(file, kept.version);
    uint8_t value[zv::CSI_VALUE_MAX];
    const ssize_t got = read_whole(file, value, sizeof value);
    close(file);
    if (got < 0) {
        return -1;
    }
    if (rested && got == kept.version.size && static_cast<size_t>(got) <= sizeof kept.bytes) {
        kept.length = static_cast<uint8_t>(got);
        memcpy(kept.bytes, value, kept.length);
        keep(key, kept);
    }
    hand_out(value, static_cast<uint32_t>(got), size, length, buffer);
    return 0;
}

int32_t csi_set(uint8_t key, const uint8_t *value, uint32_t length)
{
    char path[PATH_SIZE];
    char draft[PATH_SIZE];
    if ((value == nullptr && length > 0) || length > zv::CSI_VALUE_MAX || !path_of(key, "", path) ||
        !path_of(key, ".XXXXXX", draft) || !make_folder()) {
        return -1;
    }
    const int file = mkostemp(draft, O_CLOEXEC);
    if (file < 0) {
        return -1;
    }
    const bool written = write_whole(file, value, length) && fchmod(file, 0644) == 0;
    if (close(file) != 0 || !written || rename(draft, path) != 0) {
        unlink(draft);
        return -1;
    }
    return 0;
}

ZVCSIListener &ZVCSIListener::GetInstance()
{
    static ZVCSIListener instance;
    return instance;
}

int ZVCSIListener::GetCSIValue(uint32_t key, uint32_t &value) // NOLINT(readability-convert-member-functions-to-static)
{
    uint8_t bytes[4] = {};
    uint32_t length = 0;
    if (key > UINT8_MAX || csi_get(static_cast<uint8_t>(key), sizeof bytes, &length, bytes) != 0 || length == 0) {
        return -1;
    }
    value = zv::le32(bytes);
    return 0;
}
