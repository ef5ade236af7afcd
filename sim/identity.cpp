#include "identity.h"

#include "bytes.h"
#include "csi_keys.h"

#include <cstddef>
#include <utility>

#include <zvctrl/csi.h>

namespace zv::sim {

namespace {

struct StoredNumber {
    CsiKey key;
    uint32_t number;
};
constexpr StoredNumber NUMBERS[] = {
    {CSI_LOG_STATE, 1},
    {CSI_COMMON_CAMERA_FEATURES, 0x0000000F},
    {CSI_FW_FORCE_UPDATE, 0},
    {CSI_PRESET_MODIFIED, 0},
    {CSI_SWIFT_OFFLOAD, 0},
    {CSI_USB_CONNECTED, 0},
    {CSI_SD_RATING_CHECK_ERROR, 0},
    {CSI_SD_WRITE_SPEED_ERROR, 0},
};

bool store(CsiKey key, const uint8_t *value, size_t length)
{
    return csi_set(key, value, static_cast<uint32_t>(length)) == 0;
}

// With the terminating zero byte: readers put a terminator over the last byte that they get.
bool store_text(CsiKey key, const std::string &text)
{
    return store(key, reinterpret_cast<const uint8_t *>(text.c_str()), text.size() + 1);
}

bool store_number(CsiKey key, uint32_t number)
{
    uint8_t bytes[sizeof number];
    put_le32(bytes, number);
    return store(key, bytes, sizeof bytes);
}

} // namespace

std::string store_identity(uint8_t model)
{
    const std::string number = std::to_string(model);
    const std::pair<CsiKey, std::string> texts[] = {
        {CSI_SERIAL_NUMBER, "SIM" + number + "00000001"},
        {CSI_BOARD_TYPE, "SIMULATED"},
        {CSI_AP_SSID, ap_ssid(model)},
        {CSI_MODEL_NAME, "Simulated camera " + number},
        {CSI_FIRMWARE_VERSION, "SIM." + number + ".01.00.00"},
        {CSI_AP_MAC, "02005e000001"},
    };
    bool stored = store(CSI_MODEL_NUMBER, &model, sizeof model);
    for (const auto &[key, text] : texts) {
        stored = stored && store_text(key, text);
    }
    for (const auto &[key, value] : NUMBERS) {
        stored = stored && store_number(key, value);
    }
    set_ota_state(OTA_IDLE);
    return stored ? std::string() : "the system information service does not take the camera's identity";
}

std::string ap_ssid(uint8_t model)
{
    return "SIM" + std::to_string(model) + "-0001";
}

uint8_t ota_state()
{
    uint8_t state = OTA_IDLE;
    uint32_t length = 0;
    csi_get(CSI_OTA_STATE, sizeof state, &length, &state);
    return state;
}

void set_ota_state(uint8_t state)
{
    csi_set(CSI_OTA_STATE, &state, sizeof state);
}

} // namespace zv::sim
