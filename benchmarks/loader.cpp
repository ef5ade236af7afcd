// Loads a library, in a process that has everything else that the library needs and is otherwise still fresh.
//
//     zvbench_loader time LIBRARY      nanoseconds of one dlopen, the median of many
//     zvbench_loader memory LIBRARY    bytes of private memory that loading it and one poll's documents add
#include "camera_settings.h"
#include "csi.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr uint32_t MODEL = 58;
constexpr uint8_t FLAT_MODE_VIDEO = 12;
constexpr int LOADS = 101;

void *load(const char *path)
{
    void *library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        fprintf(stderr, "%s\n", dlerror());
    }
    return library;
}

// Each load in a process of its own: a library may stay loaded for good.
bool print_time(const char *path)
{
    std::vector<long long> times;
    for (int i = 0; i < LOADS; ++i) {
        int ends[2];
        if (pipe(ends) != 0) {
            return false;
        }
        const pid_t child = fork();
        if (child == 0) {
            const auto start = std::chrono::steady_clock::now();
            const void *library = load(path);
            const long long taken = std::chrono::nanoseconds(std::chrono::steady_clock::now() - start).count();
            const bool written = library != nullptr && write(ends[1], &taken, sizeof taken) == sizeof taken;
            _exit(written ? 0 : 1);
        }
        close(ends[1]);
        long long taken = 0;
        const bool loaded = read(ends[0], &taken, sizeof taken) == sizeof taken;
        close(ends[0]);
        waitpid(child, nullptr, 0);
        if (!loaded) {
            return false;
        }
        times.push_back(taken);
    }
    std::ranges::nth_element(times, times.begin() + LOADS / 2);
    printf("%lld\n", times[LOADS / 2]);
    return true;
}

long private_bytes()
{
    std::ifstream rollup("/proc/self/smaps_rollup");
    std::string line;
    long kilobytes = 0;
    while (std::getline(rollup, line)) {
        if (line.starts_with("Private_")) {
            kilobytes += strtol(line.c_str() + line.find(':') + 1, nullptr, 10);
        }
    }
    return kilobytes * 1024;
}

template <class Function>
Function *find(void *library, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(library, name));
}

bool print_memory(const char *path)
{
    all_status_settings_t record = {};
    record.bytes[STATUS_APP_CURRENT_MODE] = FLAT_MODE_VIDEO; // one that is supported, so that nothing is logged
    std::stringstream stream;
    stream << std::string(4096, ' '); // the caller's own memory is not the library's
    stream.seekp(0);
    private_bytes(); // nor is what the measurement takes
    const long before = private_bytes();
    void *library = load(path);
    if (library == nullptr) {
        return false;
    }
    const auto status =
        find<decltype(camera_status_serialize_status_to_json)>(library, "camera_status_serialize_status_to_json");
    const auto settings =
        find<decltype(camera_settings_serialize_to_json)>(library, "camera_settings_serialize_to_json");
    const auto *status_record = reinterpret_cast<const appc_system_all_status *>(record.bytes);
    const auto *settings_record = reinterpret_cast<const appc_setup_all_settings *>(record.bytes + ALL_SETTINGS_OFFSET);
    status(stream, status_record, MODEL);
    settings(stream, settings_record, status_record, nullptr, MODEL);
    printf("%ld\n", private_bytes() - before);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    uint32_t ignored = 0;
    ZVCSIListener::GetInstance().GetCSIValue(0, ignored); // keeps the service loaded
    if (argc == 3 && strcmp(argv[1], "time") == 0) {
        return print_time(argv[2]) ? 0 : 1;
    }
    if (argc == 3 && strcmp(argv[1], "memory") == 0) {
        return print_memory(argv[2]) ? 0 : 1;
    }
    fprintf(stderr, "usage: zvbench_loader time|memory LIBRARY\n");
    return 2;
}
