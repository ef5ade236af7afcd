#include "zvcontrol_info.h"

#include "bytes.h"
#include "zvc_state.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

constexpr int32_t INFO_TEXT_SIZE = 64; // of a field of 65 bytes, whose last one stays zero
constexpr int32_t INFO_SSID_SIZE = 33;

// A getter may leave more in its buffer than its text, also when it fails; the field is for the text alone.
template <int32_t (*GET)(char *, int32_t), int32_t SIZE = INFO_TEXT_SIZE>
int32_t read_text(uint8_t *field)
{
    char text[SIZE] = {};
    const int32_t result = GET(text, SIZE);
    if (result == ZV_OK) {
        memcpy(field, text, strnlen(text, SIZE));
    }
    return result;
}

int32_t read_default_credentials(uint8_t *field)
{
    bool has_default = false;
    const int32_t result = zvc_state_get_ap_has_default_credentials(&has_default);
    *field = has_default ? 1 : 0;
    return result;
}

int32_t read_features(uint8_t *field)
{
    uint32_t features = 0;
    const int32_t result = zvc_state_get_common_camera_features(&features);
    if (result == ZV_OK) {
        zv::put_le32(field, features);
    }
    return result;
}

// The fields after the model number, in the order of reading.
struct InfoField {
    uint16_t offset;
    int32_t (*read)(uint8_t *field);
    const char *failure;
};
constexpr InfoField INFO_FIELDS[] = {
    {CAMERA_INFO_MODEL_NAME, read_text<zvc_state_get_model_name>, "zvc_state_get_model_name err, %d"},
    {CAMERA_INFO_FIRMWARE_VERSION, read_text<zvc_state_get_firmware_version>, "zvc_state_get_firmware_version err, %d"},
    {CAMERA_INFO_SERIAL_NUMBER, read_text<zvc_state_get_serial_number>, "zvc_state_get_serial_number err, %d"},
    {CAMERA_INFO_BOARD_TYPE, read_text<zvc_state_get_board_type>, "zvc_state_get_board_type err, %d"},
    {CAMERA_INFO_AP_MAC, read_text<zvc_state_get_ap_mac>, "zvc_state_get_ap_mac err, %d"},
    {CAMERA_INFO_AP_SSID, read_text<zvc_state_get_ap_ssid, INFO_SSID_SIZE>, "zvc_state_get_ap_ssid err, %d"},
    {CAMERA_INFO_AP_HAS_DEFAULT_CREDENTIALS, read_default_credentials,
     "zvc_state_get_ap_has_default_credentials err, %d"},
    {CAMERA_INFO_COMMON_CAMERA_FEATURES, read_features, "zvc_state_get_common_camera_features err, %d"},
    {CAMERA_INFO_REQUIRED_NETWORKS, read_text<zvc_state_get_required_networks>,
     "zvc_state_get_required_networks err, %d"},
};

constexpr char RC3_ON_CARD[] = "/tmp/fuse_d/rc3_ota.bin";

bool readable(const char *path)
{
    FILE *file = fopen(path, "r");
    if (file == nullptr) {
        return false;
    }
    fclose(file);
    return true;
}

// Writes a path, and zeroes after it. Returns ZV_OK, or ZV_ERR when it was cut.
int32_t write_path(char *path, int32_t size, const char *format, int model_number)
{
    memset(path, 0, static_cast<size_t>(size));
    return snprintf(path, static_cast<size_t>(size), format, model_number) < size ? ZV_OK : ZV_ERR;
}

} // namespace

int32_t zvcontrol_get_camera_info(uint8_t *info)
{
    if (info == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "Invalid parameter, NULL not allowed");
        return ZV_ERR;
    }
    memset(info, 0, CAMERA_INFO_SIZE);
    zv::put_le32(info + CAMERA_INFO_MODEL_NUMBER, zvc_state_get_model_number());
    for (const InfoField &field : INFO_FIELDS) {
        if (const int32_t result = field.read(info + field.offset); result != ZV_OK) {
            ZV_LOG(ZV_LOG_ERROR, field.failure, result);
            return result;
        }
    }
    info[CAMERA_INFO_VALID] = 1;
    return ZV_OK;
}

int32_t zvcontrol_get_settings_json_path(char *path, int32_t size)
{
    if (path == nullptr || size < 1) {
        return ZV_ERR;
    }
    return write_path(path, size, "/usr/local/zelvar/etc/%d/settings.json", zvc_state_get_model_number());
}

int32_t zvcontrol_get_rc3_path(char *path, int32_t size)
{
    if (path == nullptr || size < 1) {
        return ZV_ERR;
    }
    return write_path(path, size, readable(RC3_ON_CARD) ? RC3_ON_CARD : "/usr/local/zelvar/etc/%d/rc3_ota.bin",
                      zvc_state_get_model_number());
}

int32_t zvcontrol_get_logs_ready_status(uint32_t *ready)
{
    const int32_t result = zvc_state_get_logs_ready_status(ready);
    if (result != ZV_OK) {
        ZV_LOG(ZV_LOG_ERROR, "zvc_state_get_logs_ready_status err, %d", result);
    }
    return result;
}
