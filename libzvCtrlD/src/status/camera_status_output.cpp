#include "camera_status_fields.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string_view>

namespace {

using zv::StatusField;

constexpr int32_t RECORD_SIZE = sizeof(appc_system_all_status);

constexpr int32_t BUFFER_SIZE = zv::JSON_OPENING_SIZE + zv::JSON_MEMBER_SIZE + RECORD_SIZE;

// The id of the first status of that name; another name does not compile.
consteval uint32_t status_id(std::string_view name)
{
    return std::ranges::find(camera_status_names, name, [](const auto &row) { return std::string_view(row.name); })->id;
}

void output(const status_field_t *field, std::stringstream &stream, auto &&write_value)
{
    char buffer[BUFFER_SIZE];
    zv::JsonWriter json(buffer);
    json.key(field->id);
    write_value(json);
    const std::string_view member = json.members();
    stream.write(member.data(), static_cast<std::streamsize>(member.size()));
}

void output(uint64_t number, const status_field_t *field, std::stringstream &stream)
{
    output(field, stream, [=](zv::JsonWriter &json) { json.number(number); });
}

// As the status `id` is published, under the id of `field`.
void output_as(uint32_t id, const appc_system_all_status *status, const status_field_t *field,
               std::stringstream &stream)
{
    const StatusField &row = zv::status_fields[id];
    const uint8_t *record = status != nullptr ? status->bytes : nullptr;
    output(field, stream, [&](zv::JsonWriter &json) { zv::write_status_value(json, row.output, record, row.offset); });
}

} // namespace

void status_field_output_int(const appc_system_all_status *status, const status_field_t *field,
                             std::stringstream &stream)
{
    if (status == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "status is NULL, unable to output status values");
        return;
    }
    if (field == nullptr) {
        ZV_LOG(ZV_LOG_ERROR, "status_field is NULL, unable to output status values");
        return;
    }
    output(zv::read_unsigned(status->bytes, field->offset, field->size), field, stream);
}

void status_field_output_string(const appc_system_all_status *status, const status_field_t *field,
                                std::stringstream &stream)
{
    output(field, stream,
           [=](zv::JsonWriter &json) { json.literal(zv::status_text(status->bytes, field->offset, RECORD_SIZE)); });
}

void status_field_output_battery_level(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    if (field->id == status_id("system_internal_battery_level") ||
        field->id == status_id("system_external_battery_level")) {
        output_as(field->id, status, field, stream);
        return;
    }
    ZV_LOG(ZV_LOG_WARN, "invalid field id, %d\n", static_cast<int>(field->id));
    output(0, field, stream);
}

void status_field_output_analytics_size(const appc_system_all_status *, const status_field_t *field,
                                        std::stringstream &stream)
{
    output(0, field, stream);
}

void status_field_output_linux_core_active(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output(status->bytes[STATUS_SYSTEM_LINUX_CORE_ACTIVE], field, stream);
}

void status_field_output_wlan_ssid(const appc_system_all_status *status, const status_field_t *field,
                                   std::stringstream &stream)
{
    output_as(status_id("wireless_wlan_ssid"), status, field, stream);
}

void status_field_output_ap_ssid(const appc_system_all_status *status, const status_field_t *field,
                                 std::stringstream &stream)
{
    output_as(status_id("wireless_ap_ssid"), status, field, stream);
}

void status_field_output_rssi_barsV2(const appc_system_all_status *status, const status_field_t *field,
                                     std::stringstream &stream)
{
    output_as(status_id("wireless_wifi_bars"), status, field, stream);
}

void status_field_output_next_poll(const appc_system_all_status *status, const status_field_t *field,
                                   std::stringstream &stream)
{
    output_as(status_id("system_next_poll_msec"), status, field, stream);
}

void status_field_output_analytics_ready(const appc_system_all_status *status, const status_field_t *field,
                                         std::stringstream &stream)
{
    output_as(status_id("system_analytics_ready"), status, field, stream);
}

void status_field_output_exposure_select_type(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(status_id("liveview_exposure_select_type"), status, field, stream);
}

void status_field_output_exposure_select_x(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output_as(status_id("liveview_exposure_select_x"), status, field, stream);
}

void status_field_output_exposure_select_y(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output_as(status_id("liveview_exposure_select_y"), status, field, stream);
}

void status_field_output_internal_battery_percentage(const appc_system_all_status *status, const status_field_t *field,
                                                     std::stringstream &stream)
{
    output_as(status_id("system_internal_battery_percentage"), status, field, stream);
}

void status_field_output_digital_zoom(const appc_system_all_status *status, const status_field_t *field,
                                      std::stringstream &stream)
{
    output_as(status_id("app_digital_zoom"), status, field, stream);
}

void status_field_output_current_mode(const appc_system_all_status *status, const status_field_t *field,
                                      std::stringstream &stream)
{
    output_as(status_id("app_current_mode"), status, field, stream);
}

void status_field_output_vellix_default(const appc_system_all_status *status, const status_field_t *field,
                                        std::stringstream &stream)
{
    output_as(status_id("app_vellix_default"), status, field, stream);
}

void status_field_output_logs_ready(const appc_system_all_status *status, const status_field_t *field,
                                    std::stringstream &stream)
{
    output_as(status_id("system_logs_ready"), status, field, stream);
}

void status_field_output_active_video_presets(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(status_id("app_active_video_presets"), status, field, stream);
}

void status_field_output_active_photo_presets(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(status_id("app_active_photo_presets"), status, field, stream);
}

void status_field_output_active_timelapse_presets(const appc_system_all_status *status, const status_field_t *field,
                                                  std::stringstream &stream)
{
    output_as(status_id("app_active_timelapse_presets"), status, field, stream);
}

void status_field_output_active_presets_group(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(status_id("app_active_presets_group"), status, field, stream);
}

void status_field_output_active_preset(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    output_as(status_id("app_active_preset"), status, field, stream);
}

void status_field_output_preset_modified(const appc_system_all_status *status, const status_field_t *field,
                                         std::stringstream &stream)
{
    output_as(status_id("app_preset_modified"), status, field, stream);
}

void status_field_output_capture_delay(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    output_as(status_id("app_capture_delay_active"), status, field, stream);
}

void status_field_output_camera_lens_type(const appc_system_all_status *status, const status_field_t *field,
                                          std::stringstream &stream)
{
    output_as(status_id("system_camera_lens_type"), status, field, stream);
}

void status_field_output_retrocap_active(const appc_system_all_status *status, const status_field_t *field,
                                         std::stringstream &stream)
{
    output_as(status_id("video_video_retrocap_capture_active"), status, field, stream);
}

void status_field_output_scheduled_preset(const appc_system_all_status *status, const status_field_t *field,
                                          std::stringstream &stream)
{
    output_as(status_id("app_scheduled_preset"), status, field, stream);
}

void status_field_output_scheduled_enabled(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output_as(status_id("app_scheduled_enabled"), status, field, stream);
}

void status_field_output_sd_rating_check_error(const appc_system_all_status *status, const status_field_t *field,
                                               std::stringstream &stream)
{
    output_as(status_id("system_sd_rating_check_error"), status, field, stream);
}

void status_field_output_sd_write_speed_error(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(status_id("system_sd_write_speed_error"), status, field, stream);
}

void status_field_output_swift_offload(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    output_as(status_id("system_swift_offload"), status, field, stream);
}

void status_field_output_camera_control_status(const appc_system_all_status *status, const status_field_t *field,
                                               std::stringstream &stream)
{
    output_as(status_id("system_camera_control_status"), status, field, stream);
}

void status_field_output_usb_connected(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    output_as(status_id("app_usb_connected"), status, field, stream);
}

void status_field_output_total_sd_space_kb(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output_as(status_id("storage_total_sd_space_kb"), status, field, stream);
}

void status_field_output_photo_interval_capture_count(const appc_system_all_status *status, const status_field_t *field,
                                                      std::stringstream &stream)
{
    output_as(status_id("photo_interval_capture_count"), status, field, stream);
}
