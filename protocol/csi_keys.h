// Keys of the camera system information service, and what is stored under them.
#pragma once

#include <cstdint>

namespace zv {

enum CsiKey : uint8_t {
    CSI_SERIAL_NUMBER = 0,
    CSI_BOARD_TYPE = 1,
    CSI_PRESET_MODIFIED = 7,
    CSI_AP_SSID = 14,
    CSI_MODEL_NAME = 19,
    CSI_MODEL_NUMBER = 20,
    CSI_FIRMWARE_VERSION = 21,
    CSI_LOG_STATE = 24,
    CSI_OTA_STATE = 42,
    CSI_COMMON_CAMERA_FEATURES = 89,
    CSI_AP_MAC = 90,
    CSI_FW_FORCE_UPDATE = 136,
    CSI_SWIFT_OFFLOAD = 138,
    CSI_USB_CONNECTED = 143,
    CSI_SD_RATING_CHECK_ERROR = 151,
    CSI_SD_WRITE_SPEED_ERROR = 152,
};

// A value has at most this many bytes.
inline constexpr uint32_t CSI_VALUE_MAX = 1400;

// The firmware update's state.
enum OtaState : uint8_t { OTA_IDLE = 0, OTA_DOWNLOADING = 6, OTA_DOWNLOADED = 7, OTA_FLASHING = 8 };

} // namespace zv
