#include "csi.h"

#include "bytes.h"
#include "csi_keys.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// A file for each key, in one folder: "/tmp/zvcsi", or the one that the environment's ZVCSI_DIR names. A value is
// written to a file next to its own and renamed onto it, so that a reader finds the old value or the new one whole.

namespace {

constexpr size_t PATH_SIZE = 4096;

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
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return -1;
    }
    uint8_t value[zv::CSI_VALUE_MAX];
    const ssize_t got = read_whole(file, value, sizeof value);
    close(file);
    if (got < 0) {
        return -1;
    }
    *length = static_cast<uint32_t>(got);
    if (const uint32_t copied = *length < size ? *length : size; copied > 0) {
        memcpy(buffer, value, copied);
    }
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
