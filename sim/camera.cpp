#include "camera.h"

#include "csi_keys.h"
#include "easy_mode.h"
#include "identity.h"
#include "own_fields.h"

#include <zvctrl/camera_records.h>

#include <string>

namespace zv::sim {

namespace {

constexpr uint64_t SECOND = 1000000; // in microseconds

constexpr uint32_t PERCENT_SECONDS = 60; // about, at rest
constexpr uint32_t PERCENT_SECONDS_BUSY = 20;
constexpr uint32_t PERCENT_JITTER = 10;
constexpr uint8_t PERCENT_LOW = 5; // the charger comes
constexpr uint8_t PERCENT_FULL = 100;
constexpr uint8_t PERCENT_FOR_OTA = 33;
constexpr uint8_t CHARGING = 1;
constexpr uint8_t BARS = 3;

constexpr uint32_t FLASHING_SECONDS = 5;
constexpr uint32_t WIFI_SECONDS = 15; // about, between changes of its strength
constexpr uint32_t WIFI_BARS = 3;

constexpr Field ACTIVE_PRESETS[] = {
    // by PresetGroup
    status(STATUS_APP_ACTIVE_VIDEO_PRESETS, 4),
    status(STATUS_APP_ACTIVE_PHOTO_PRESETS, 4),
    status(STATUS_APP_ACTIVE_TIMELAPSE_PRESETS, 4),
};

} // namespace

Camera::Camera(uint8_t model, uint32_t seed)
    : m_state(model, seed), m_card(m_state), m_capture(m_state, m_card), m_percent_seconds(PERCENT_SECONDS)
{
    set_mode(*find_flat_mode(FLAT_MODE_VIDEO));
    const std::string ssid = ap_ssid(model);
    uint16_t offset = STATUS_WIRELESS_AP_SSID;
    for (const char character : ssid) {
        m_state.set(status(offset++), static_cast<uint8_t>(character));
    }
}

void Camera::set_mode(const FlatModeRow &mode)
{
    m_mode = &mode;
    m_preset = nullptr;
    m_state.set(status(STATUS_APP_CURRENT_MODE), mode.flat_mode);
    m_state.set(settings(SETTINGS_SETUP_CURRENT_FLAT_MODE), mode.flat_mode);
    m_state.set(status(STATUS_APP_ACTIVE_PRESETS_GROUP, 4), mode.presets);
}

bool Camera::load_preset(uint32_t preset)
{
    const EasyPreset *row = find_preset(preset);
    if (row == nullptr) {
        return false;
    }
    m_state.set(ACTIVE_PRESETS[row->group], preset);
    set_mode(*find_flat_mode(row->flat_mode));
    m_preset = row;
    return true;
}

void Camera::reset(std::span<const Field> fields)
{
    const State fresh(m_state.model(), 0);
    for (const Field &field : fields) {
        m_state.set(field, fresh.get(field));
    }
}

void Camera::refresh()
{
    m_state.set(status(STATUS_FWUPDATE_OTA_STATUS), ota_state());
}

void Camera::start_flashing()
{
    m_flashing_seconds = FLASHING_SECONDS;
    m_state.set(status(STATUS_SYSTEM_SYSTEM_BUSY), 1);
    set_ota_state(OTA_FLASHING);
}

void Camera::advance(uint64_t microseconds)
{
    for (m_microseconds += microseconds; m_microseconds >= SECOND; m_microseconds -= SECOND) {
        second();
    }
}

void Camera::second()
{
    m_capture.second();
    use_battery();
    if (m_state.get(BROADCAST_ACTIVE) != 0) {
        constexpr Field progress = status(STATUS_BROADCAST_BROADCAST_PROGRESS_COUNTER, 4);
        m_state.set(progress, m_state.get(progress) + 1);
    }
    if (m_state.random(WIFI_SECONDS) == 0) {
        m_state.set(status(STATUS_WIRELESS_WIFI_BARS), 1 + m_state.random(WIFI_BARS));
    }
    if (m_flashing_seconds > 0 && --m_flashing_seconds == 0) {
        m_state.set(status(STATUS_SYSTEM_SYSTEM_BUSY), 0);
        set_ota_state(OTA_IDLE);
    }
}

void Camera::use_battery()
{
    if (--m_percent_seconds > 0) {
        return;
    }
    constexpr Field percentage = status(STATUS_SYSTEM_INTERNAL_BATTERY_PERCENTAGE);
    constexpr Field charge_state = status(STATUS_SYSTEM_INTERNAL_BATTERY_CHARGE_STATE);
    const bool charging = m_state.byte(charge_state) == CHARGING;
    const uint64_t before = m_state.get(percentage);
    const uint64_t percent = charging ? before + 1 : before - 1;
    m_state.set(percentage, percent);
    m_state.set(status(STATUS_SYSTEM_INTERNAL_BATTERY_BARS), (percent * BARS + PERCENT_FULL - 1) / PERCENT_FULL);
    m_state.set(status(STATUS_SYSTEM_BATT_OKAY_FOR_OTA), percent >= PERCENT_FOR_OTA);
    if (percent <= PERCENT_LOW) {
        m_state.set(charge_state, CHARGING);
    } else if (percent >= PERCENT_FULL) {
        m_state.set(charge_state, 0);
    }
    m_percent_seconds = (m_capture.active() ? PERCENT_SECONDS_BUSY : PERCENT_SECONDS) + m_state.random(PERCENT_JITTER);
}

} // namespace zv::sim
