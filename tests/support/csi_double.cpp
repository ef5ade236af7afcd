#include "csi_double.h"

#include "csi.h"

#include <algorithm>
#include <mutex>

namespace test {

Csi &csi()
{
    static Csi service;
    return service;
}

} // namespace test

using test::csi;

int32_t csi_get(uint8_t key, uint32_t size, uint32_t *length, uint8_t *buffer)
{
    static std::mutex one_at_a_time;
    const std::lock_guard guard(one_at_a_time);
    csi().gets.push_back({key, size});
    const auto value = csi().values.find(key);
    if (value != csi().values.end()) {
        *length = static_cast<uint32_t>(value->second.size());
        std::copy_n(value->second.begin(), std::min<size_t>(size, value->second.size()), buffer);
    }
    const auto failure = csi().get_results.find(key);
    return failure != csi().get_results.end() ? failure->second : value != csi().values.end() ? 0 : -1;
}

int32_t csi_set(uint8_t key, const uint8_t *value, uint32_t length)
{
    const std::string text(reinterpret_cast<const char *>(value), length);
    csi().sets.emplace_back(key, text);
    if (csi().set_result == 0) {
        csi().values[key] = text;
    }
    return csi().set_result;
}

ZVCSIListener &ZVCSIListener::GetInstance()
{
    static ZVCSIListener listener;
    return listener;
}

int ZVCSIListener::GetCSIValue(uint32_t key, uint32_t &value)
{
    uint8_t bytes[4] = {};
    uint32_t length = 0;
    if (csi_get(static_cast<uint8_t>(key), sizeof bytes, &length, bytes) != 0) {
        return -1;
    }
    value = static_cast<uint32_t>(bytes[0] | bytes[1] << 8 | bytes[2] << 16) | static_cast<uint32_t>(bytes[3]) << 24;
    return 0;
}
