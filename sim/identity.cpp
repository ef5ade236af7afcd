#include "identity.h"

#include "bytes.h"

#include <zvctrl/csi.h>

namespace zv::sim {

namespace {

// Keys of the service.
enum : uint8_t {
    SERIAL_NUMBER = 0,
    BOARD_TYPE = 1,
    PRESET_MODIFIED = 7,
    AP_SSID = 14,
    MODEL_NAME = 19,
    MODEL_NUMBER = 20,
    FIRMWARE_VERSION = 21,
    LOG_STATE = 24,
    OTA_STATE = 42,
    COMMON_CAMERA_FEATURES = 89,
    AP_MAC = 90,
    FW_FORCE_UPDATE = 136,
    SWIFT_OFFLOAD = 138,
    USB_CONNECTED = 143,
    SD_RATING_CHECK_ERROR = 151,
    SD_WRITE_SPEED_ERROR = 152,
};

bool store(uint8_t key, const uint8_t *value, size_t length)
{
    return csi_set(key, value, static_cast<uint32_t>(length)) == 0;
}

// With the terminating zero byte: readers put a terminator over the last byte that they get.
bool store_text(uint8_t key, const std::string &text)
{
    return store(key, reinterpret_cast<const uint8_t *>(text.c_str()), text.size() + 1);
}

bool store_number(uint8_t key, uint32_t number)
{
    uint8_t bytes[sizeof number];
    put_le32(bytes, number);
    return store(key, bytes, sizeof bytes);
}

} // namespace

std::string store_identity(uint8_t model)
{
    const std::string number = std::to_string(model);
    const bool stored = store_text(SERIAL_NUMBER, "SIM" + number + "00000001") &&      //
                        store_text(BOARD_TYPE, "SIMULATED") &&                         //
                        store_text(AP_SSID, ap_ssid(model)) &&                         //
                        store_text(MODEL_NAME, "Simulated camera " + number) &&        //
                        store(MODEL_NUMBER, &model, sizeof model) &&                   //
                        store_text(FIRMWARE_VERSION, "SIM." + number + ".01.00.00") && //
                        store_text(AP_MAC, "02005e000001") &&                          //
                        store_number(LOG_STATE, 1) &&                                  //
                        store_number(COMMON_CAMERA_FEATURES, 0x0000000F) &&            //
                        store_number(FW_FORCE_UPDATE, 0) &&                            //
                        store_number(PRESET_MODIFIED, 0) &&                            //
                        store_number(SWIFT_OFFLOAD, 0) &&                              //
                        store_number(USB_CONNECTED, 0) &&                              //
                        store_number(SD_RATING_CHECK_ERROR, 0) &&                      //
                        store_number(SD_WRITE_SPEED_ERROR, 0);
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
    csi_get(OTA_STATE, sizeof state, &length, &state);
    return state;
}

void set_ota_state(uint8_t state)
{
    csi_set(OTA_STATE, &state, sizeof state);
}

} // namespace zv::sim
