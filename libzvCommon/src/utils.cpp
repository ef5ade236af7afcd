#include "utils.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char DAEMON_FOLDER[] = "/";
constexpr char CORE_FOLDER[] = "/tmp/fuse_b/";

// Where a store keeps its id. A path that ends with a slash is found by stat only where it is a folder.
struct Store {
    const char *node;
    const char *folder;
    const char *file;
};
constexpr Store CARD{"/tmp/fuse_d/MISC", "/tmp/fuse_d/MISC/", "/tmp/fuse_d/MISC/card"};
constexpr Store SECOND_CARD{"/tmp/fuse_i/MISC", "/tmp/fuse_i/MISC/", "/tmp/fuse_i/MISC/card"};
constexpr mode_t STORE_FOLDER_MODE = 0777;
constexpr mode_t ID_FILE_MODE = 0666;
constexpr int CARD_ID_LENGTH = 30; // the longest that is read
constexpr char NO_CARD_ID[] = "0";
constexpr int RANDOM_ATTEMPTS = 10;

constexpr char MARKER_FILE[] = "/tmp/fuse_d/messages.txt";

void clear_card_id(char *id)
{
    memset(id, 0, ZV_CARD_ID_SIZE);
    memcpy(id, NO_CARD_ID, sizeof NO_CARD_ID);
}

// Neither follows a link nor waits for the other end of a FIFO. Negative on failure.
int open_id_file(const Store &store, int flags)
{
    return open(store.file, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, ID_FILE_MODE);
}

bool is_regular(int file)
{
    struct stat state = {};
    return fstat(file, &state) == 0 && S_ISREG(state.st_mode);
}

// Reads the first line of the file into `id`. False when it is not an id.
bool read_card_id(int file, char *id)
{
    const ssize_t length = is_regular(file) ? read(file, id, CARD_ID_LENGTH) : 0;
    id[length > 0 ? length : 0] = '\0';
    id[strcspn(id, "\n")] = '\0';
    return id[0] != '\0' && validateCardID(id, CARD_ID_LENGTH) == 1;
}

// A number other than 0, or 0 when there was none in ten draws.
int64_t draw_number()
{
    srand(static_cast<unsigned>(time(nullptr)));
    int64_t number = 0;
    for (int attempt = 0; attempt < RANDOM_ATTEMPTS && number == 0; ++attempt) {
        number = rand();
    }
    return number;
}

// Writes a new id to the file and closes it. False after logging, and `id` then is "0".
bool write_card_id(int file, char *id)
{
    const int64_t number = draw_number();
    if (number == 0) {
        ZV_LOG(ZV_LOG_ERROR, "Failed to get random number");
        close(file);
        return false;
    }
    snprintf(id, ZV_CARD_ID_SIZE, "%lld", static_cast<long long>(number * number - 1));
    const bool written = write(file, id, strlen(id)) == static_cast<ssize_t>(strlen(id));
    if (close(file) != 0 || !written) {
        ZV_LOG(ZV_LOG_ERROR, "Failed to get write card_id to file");
        clear_card_id(id);
        return false;
    }
    return true;
}

// Makes the store's folder unless it `existed`. False after logging.
bool open_folder(const Store &store, bool &existed)
{
    struct stat state = {};
    existed = stat(store.node, &state) == 0;
    if (existed && !S_ISDIR(state.st_mode)) {
        ZV_LOG(ZV_LOG_ERROR, "Path:%s exists and is a NOT folder", store.folder);
        return false;
    }
    if (!existed && mkdir(store.folder, STORE_FOLDER_MODE) != 0) {
        ZV_LOG(ZV_LOG_ERROR, "Failed to create folder:%s", store.folder);
        return false;
    }
    return true;
}

// Reads the id that the store has. When it has none, `id` is "0" and no file is left.
bool read_stored_id(const Store &store, char *id)
{
    const int file = open_id_file(store, O_RDONLY);
    if (file < 0) {
        return false;
    }
    const bool found = read_card_id(file, id);
    close(file);
    if (!found) {
        clear_card_id(id);
        remove(store.file);
    }
    return found;
}

// Gives the store a new id. False after logging, and `id` then is "0".
bool make_id(const Store &store, char *id)
{
    const int file = open_id_file(store, O_WRONLY | O_CREAT);
    if (file < 0 || !is_regular(file) || ftruncate(file, 0) != 0) {
        ZV_LOG(ZV_LOG_ERROR, "Failed to create file  %s", store.file);
        if (file >= 0) {
            close(file);
        }
        return false;
    }
    if (!write_card_id(file, id)) {
        remove(store.file); // a part of a number would pass for an id
        return false;
    }
    return true;
}

// The value of a hexadecimal digit; of another character whatever comes out.
unsigned digit_value(char digit)
{
    constexpr unsigned CASE_BIT = 0x20;
    const unsigned code = static_cast<unsigned char>(digit);
    return code < 'A' ? code - '0' : (code & ~CASE_BIT) - ('A' - 10);
}

} // namespace

int32_t daemon_init()
{
    return daemon_init_ext(0);
}

int32_t daemon_init_ext(int32_t coreDump)
{
    if (getppid() == 1) {
        return 0;
    }
    fflush(nullptr); // what is still in a buffer would go out twice
    const pid_t child = fork();
    if (child < 0) {
        return -1;
    }
    if (child > 0) {
        exit(0);
    }
    setsid();
    const char *folder = DAEMON_FOLDER;
    if (coreDump != 0) {
        const rlimit unlimited = {RLIM_INFINITY, RLIM_INFINITY};
        if (setrlimit(RLIMIT_CORE, &unlimited) != 0) {
            printf("%s: Error: unable to set core limit in order to generate core dump!", __func__);
        }
        folder = CORE_FOLDER;
    }
    const int32_t result = chdir(folder);
    if (coreDump != 0) {
        printf("%s: Note: Daemon can generate core dump.", __func__);
    }
    umask(0);
    return result;
}

int32_t getCardIDStr(char *id)
{
    return getCardIDStrFromCard(id, 0);
}

int32_t getCardIDStrFromCard(char *id, int32_t card)
{
    if (id == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "Cannot call with null pointer");
        return -1;
    }
    const Store &store = card == 1 ? SECOND_CARD : CARD;
    clear_card_id(id);
    bool existed = false;
    if (!open_folder(store, existed)) {
        return -1;
    }
    return (existed && read_stored_id(store, id)) || make_id(store, id) ? 0 : -1;
}

int32_t validateCardID(const char *id, uint32_t length)
{
    for (uint32_t i = 0; i < length && id[i] != '\0'; ++i) {
        if (id[i] < '0' || id[i] > '9') {
            return 0;
        }
    }
    return 1;
}

void unescapeUrl(char *url, uint32_t *length)
{
    if (url == nullptr || length == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "Cannot escape url, pointer is null");
        return;
    }
    size_t write = 0;
    for (size_t read = 0; url[read] != '\0'; ++write) {
        if (url[read] != '%') {
            url[write] = url[read++];
            continue;
        }
        const bool whole = read + 2 < *length && url[read + 1] != '\0' && url[read + 2] != '\0';
        if (!whole) {
            break;
        }
        url[write] = static_cast<char>((digit_value(url[read + 1]) % 16 << 4) + digit_value(url[read + 2]));
        read += 3;
    }
    url[write] = '\0';
    *length = static_cast<uint32_t>(write);
}

char *trim(const char *text)
{
    if (text == nullptr) {
        return nullptr;
    }
    text += strspn(text, " \t");
    return *text != '\0' ? const_cast<char *>(text) : nullptr; // as constant as the caller's own text
}

int32_t messages_txt_exists()
{
    return access(MARKER_FILE, F_OK) == 0 ? 1 : 0;
}
