#include "zvc_state.h"

#include "bytes.h"
#include "csi.h"
#include "csi_keys.h"
#include "log_at.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>

namespace {

using namespace zv;

constexpr char CONFIGURATION[] = "/tmp/fuse_b/conf.json";
constexpr char MODEL_NUMBER_COMMAND[] =
    R"(grep "CSI_MODEL_NUMBER" /tmp/fuse_b/conf.json | cut -d ":" -f 2 | cut -d "\"" -f 2 | cut -d "," -f 1)";

// A fact that was read. The first thread that has it stores it; it is complete before it counts as known.
template <class Value>
class Kept {
  public:
    // Null while it is not known.
    const Value *get() const { return m_state.load(std::memory_order_acquire) == State::KNOWN ? &m_value : nullptr; }

    void keep(const Value &value)
    {
        auto state = State::EMPTY;
        if (m_state.compare_exchange_strong(state, State::STORING, std::memory_order_relaxed)) {
            m_value = value;
            m_state.store(State::KNOWN, std::memory_order_release);
        }
    }

  private:
    enum class State : uint8_t { EMPTY, STORING, KNOWN };

    Value m_value = {};
    std::atomic<State> m_state = State::EMPTY;
};
using Text = std::array<char, ZVC_STATE_TEXT_SIZE>;
using KeptText = Kept<Text>;

struct {
    std::atomic<uint8_t> model_number = 0; // 0 while it is not known
    KeptText model_name;
    KeptText board_type;
    KeptText firmware_version;
    KeptText serial_number;
    KeptText ap_mac;
    Kept<uint32_t> common_camera_features;
    Kept<uint32_t> update_required;
} zvc_state_data;

int32_t check_buffer(const char *buffer, int32_t size, const SourceLocation &where)
{
    if (buffer == nullptr) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "null buf\n");
        return ZV_ERR_INVALID_PARAM;
    }
    if (size < 1) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "invalid size, %d\n", size);
        return ZV_ERR_INVALID_PARAM;
    }
    return ZV_OK;
}

void copy_text(char *dest, size_t size, const char *text)
{
    strncpy(dest, text, size - 1);
    dest[size - 1] = '\0';
}

void keep_text(KeptText &kept, const char *text)
{
    Text value = {};
    copy_text(value.data(), value.size(), text);
    kept.keep(value);
}

// Reads a text whose last byte in the service is its terminator.
int32_t get_csi_str(uint8_t key, char *buffer, int32_t size, const SourceLocation &where)
{
    if (const int32_t result = check_buffer(buffer, size, where); result != ZV_OK) {
        return result;
    }
    const auto room = static_cast<uint32_t>(size);
    uint32_t length = 0;
    if (const int32_t result =
            csi_get(key, std::min(room, CSI_VALUE_MAX), &length, reinterpret_cast<uint8_t *>(buffer));
        result != 0) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "csi_get key/error, %u,%d\n", key, result);
        return ZV_ERR_INVALID_PARAM;
    }
    const uint32_t delivered = std::min({length, CSI_VALUE_MAX - 1, room});
    buffer[delivered > 0 ? delivered - 1 : 0] = '\0';
    return ZV_OK;
}

int32_t get_kept_csi_str(uint8_t key, KeptText &kept, char *buffer, int32_t size,
                         const SourceLocation &where = SourceLocation::current())
{
    if (const Text *text = kept.get()) {
        const int32_t result = check_buffer(buffer, size, where);
        if (result == ZV_OK) {
            copy_text(buffer, static_cast<size_t>(size), text->data());
        }
        return result;
    }
    const int32_t result = get_csi_str(key, buffer, size, where);
    if (result == ZV_OK) {
        keep_text(kept, buffer);
    }
    return result;
}

// The first byte of a value. Returns ZV_ERR_INVALID_PARAM when the service refuses, ZV_ERR when the value is empty.
int32_t get_csi_byte(uint8_t key, uint8_t &byte, const SourceLocation &where = SourceLocation::current())
{
    uint8_t value[CSI_VALUE_MAX] = {};
    uint32_t length = 0;
    if (const int32_t result = csi_get(key, sizeof value, &length, value); result != 0) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "csi_get csi err, %d\n", result);
        return ZV_ERR_INVALID_PARAM;
    }
    if (length == 0) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "csi_get invalid len, %d\n", 0);
        return ZV_ERR;
    }
    byte = value[0];
    return ZV_OK;
}

// "0x" and up to two hexadecimal digits; 0 for any other text.
uint8_t parse_model_number(const char *text)
{
    uint8_t number = 0;
    if (strncmp(text, "0x", 2) == 0) {
        const char *digits = text + 2;
        std::from_chars(digits, digits + strnlen(digits, 2), number, 16);
    }
    return number;
}

// Whether there is something else than a file: the command would wait for the other end of a FIFO.
bool is_no_file(const char *path)
{
    struct stat state = {};
    return stat(path, &state) == 0 && !S_ISREG(state.st_mode);
}

void keep_model_number(uint8_t number)
{
    if (number != 0) {
        zvc_state_data.model_number.store(number, std::memory_order_relaxed);
    }
}

// Reads the model number from the camera's configuration file.
uint8_t load_model_number(const SourceLocation &where)
{
    ZV_LOG_AT(where, ZV_LOG_WARN, "csi model_number lookup failed\n");
    uint8_t number = 0;
    if (!is_no_file(CONFIGURATION)) {
        FILE *pipe = popen(MODEL_NUMBER_COMMAND, "r");
        if (pipe == nullptr) {
            ZV_LOG_AT(where, ZV_LOG_ERROR, "failed to read model_number from config, cannot determine model_number\n");
            return 0;
        }
        char line[64] = {};
        number = fgets(line, sizeof line, pipe) != nullptr ? parse_model_number(line) : uint8_t{0};
        pclose(pipe);
    }
    ZV_LOG_AT(where, ZV_LOG_WARN, "loaded model_number from config: %d\n", number);
    keep_model_number(number);
    return number;
}

} // namespace

uint8_t zvc_state_get_model_number()
{
    uint8_t number = zvc_state_data.model_number.load(std::memory_order_relaxed);
    if (number == 0) {
        ZV_LOG(ZV_LOG_INFO, "csi_get CSI_MODEL_NUMBER\n");
        get_csi_byte(CSI_MODEL_NUMBER, number);
        keep_model_number(number);
    }
    if (number == 0) {
        return load_model_number(SourceLocation::current());
    }
    ZV_LOG(ZV_LOG_INFO, "model_number, %d\n", number);
    return number;
}

int32_t zvc_state_get_model_name(char *buffer, int32_t size)
{
    if (const int32_t result = check_buffer(buffer, size, SourceLocation::current()); result != ZV_OK) {
        return result;
    }
    if (const Text *text = zvc_state_data.model_name.get()) {
        copy_text(buffer, static_cast<size_t>(size), text->data());
        return ZV_OK;
    }
    ZV_LOG(ZV_LOG_INFO, "csi_get CSI_MODEL_NAME\n");
    const auto room = static_cast<uint32_t>(size);
    uint32_t length = 0;
    if (const int32_t result = csi_get(CSI_MODEL_NAME, room, &length, reinterpret_cast<uint8_t *>(buffer));
        result != 0) {
        ZV_LOG(ZV_LOG_ERROR, "csi_get csi err, %d\n", result);
        return ZV_ERR_INVALID_PARAM;
    }
    if (length == 0) {
        ZV_LOG(ZV_LOG_ERROR, "csi_get invalid len, %d\n", 0);
        return ZV_ERR;
    }
    buffer[std::min(length, room - 1)] = '\0';
    keep_text(zvc_state_data.model_name, buffer);
    return ZV_OK;
}

int32_t zvc_state_get_firmware_version(char *buffer, int32_t size)
{
    return get_kept_csi_str(CSI_FIRMWARE_VERSION, zvc_state_data.firmware_version, buffer, size);
}

int32_t zvc_state_get_serial_number(char *buffer, int32_t size)
{
    return get_kept_csi_str(CSI_SERIAL_NUMBER, zvc_state_data.serial_number, buffer, size);
}

int32_t zvc_state_get_board_type(char *buffer, int32_t size)
{
    return get_kept_csi_str(CSI_BOARD_TYPE, zvc_state_data.board_type, buffer, size);
}

int32_t zvc_state_get_ap_mac(char *buffer, int32_t size)
{
    return get_kept_csi_str(CSI_AP_MAC, zvc_state_data.ap_mac, buffer, size);
}

int32_t zvc_state_get_ap_ssid(char *buffer, int32_t size)
{
    return get_csi_str(CSI_AP_SSID, buffer, size, SourceLocation::current());
}

int32_t zvc_state_get_ap_has_default_credentials(bool *result)
{
    if (result == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "null has_default_credentials\n");
        return ZV_ERR_INVALID_PARAM;
    }
    *result = false;
    return ZV_OK;
}

int32_t zvc_state_get_common_camera_features(uint32_t *features)
{
    if (features == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "null features\n");
        return ZV_ERR_INVALID_PARAM;
    }
    if (const uint32_t *kept = zvc_state_data.common_camera_features.get()) {
        *features = *kept;
        return ZV_OK;
    }
    uint8_t value[sizeof *features] = {};
    uint32_t length = 0;
    const int32_t result = csi_get(CSI_COMMON_CAMERA_FEATURES, sizeof value, &length, value);
    *features = le32(value);
    if (result == 0 && length >= sizeof value) {
        zvc_state_data.common_camera_features.keep(*features);
    }
    return result;
}

int32_t zvc_state_get_update_required(uint32_t *required)
{
    if (required == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "null update_required\n");
        return ZV_ERR_INVALID_PARAM;
    }
    if (const uint32_t *kept = zvc_state_data.update_required.get()) {
        *required = *kept;
    } else {
        ZV_LOG(ZV_LOG_INFO, "csi_get CSI_FW_FORCE_UPDATE\n");
        uint8_t value[sizeof *required] = {};
        uint32_t length = 0;
        if (csi_get(CSI_FW_FORCE_UPDATE, sizeof value, &length, value) != 0) {
            ZV_LOG(ZV_LOG_ERROR, "Error getting CSI_FW_FORCE_UPDATE");
        }
        if (length == 0) {
            ZV_LOG(ZV_LOG_ERROR, "csi_get invalid len, %d\n", 0);
            return ZV_ERR;
        }
        *required = le32(value);
        zvc_state_data.update_required.keep(*required);
    }
    ZV_LOG(ZV_LOG_INFO, "update_required, %d\n", static_cast<int>(*required));
    return ZV_OK;
}

int32_t zvc_state_get_logs_ready_status(uint32_t *ready)
{
    if (ready == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "null logs_ready\n");
        return ZV_ERR_INVALID_PARAM;
    }
    ZV_LOG(ZV_LOG_INFO, "csi_get CSI_LOG_STATE\n");
    uint8_t state = 0;
    if (const int32_t result = get_csi_byte(CSI_LOG_STATE, state); result != ZV_OK) {
        return result;
    }
    *ready = state;
    ZV_LOG(ZV_LOG_INFO, "logs_ready, %d\n", state);
    return ZV_OK;
}

int32_t zvc_state_get_required_networks(char *buffer, int32_t size)
{
    if (const int32_t result = check_buffer(buffer, size, SourceLocation::current()); result != ZV_OK) {
        return result;
    }
    copy_text(buffer, static_cast<size_t>(size), "[]");
    return ZV_OK;
}
