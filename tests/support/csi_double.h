// A system information service in memory, which the linker prefers to libcsi's.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace test {

struct CsiCall {
    uint8_t key;
    uint32_t size;
};

struct Csi {
    std::map<uint32_t, std::string> values;  // a text's value holds its terminating zero byte
    std::map<uint32_t, int32_t> get_results; // a result other than 0 for a key, whose value is written all the same
    int32_t set_result = 0;
    std::vector<CsiCall> gets;
    std::vector<std::pair<uint8_t, std::string>> sets;
};

// The service; assign {} to empty it.
Csi &csi();

} // namespace test
