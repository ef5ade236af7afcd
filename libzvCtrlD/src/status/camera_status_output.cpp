#include "camera_status_fields.h"

namespace {

using zv::StatusField;
using zv::StatusOutput;

constexpr int32_t RECORD_SIZE = sizeof(appc_system_all_status);

void output(const appc_system_all_status *status, const status_field_t *field, std::stringstream &stream,
            StatusOutput how, const zv::Place &place)
{
    char buffer[zv::JSON_MEMBER_SIZE + RECORD_SIZE];
    zv::JsonWriter json(buffer);
    json.key(field->id);
    zv::write_status_value(json, how, status != nullptr ? status->bytes : nullptr, place);
    stream.write(json.begin(), json.size());
}

// As the status `id` is written, under the id of `field`.
void output_as(uint32_t id, const appc_system_all_status *status, const status_field_t *field,
               std::stringstream &stream)
{
    const StatusField &row = zv::status_fields[id];
    output(status, field, stream, row.output, {row.offset, row.size});
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
    output(status, field, stream, StatusOutput::INT, {field->offset, field->size});
}

void status_field_output_string(const appc_system_all_status *status, const status_field_t *field,
                                std::stringstream &stream)
{
    output(status, field, stream, StatusOutput::BARE_TEXT, {field->offset, RECORD_SIZE});
}

void status_field_output_battery_level(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    if (field->id == 2 || field->id == 4) {
        output_as(field->id, status, field, stream);
        return;
    }
    ZV_LOG(ZV_LOG_WARN, "invalid field id, %d\n", static_cast<int>(field->id));
    output(status, field, stream, StatusOutput::ZERO, {});
}

void status_field_output_analytics_size(const appc_system_all_status *status, const status_field_t *field,
                                        std::stringstream &stream)
{
    output(status, field, stream, StatusOutput::ZERO, {});
}

void status_field_output_linux_core_active(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output(status, field, stream, StatusOutput::INT, {STATUS_SYSTEM_LINUX_CORE_ACTIVE, 1});
}

void status_field_output_wlan_ssid(const appc_system_all_status *status, const status_field_t *field,
                                   std::stringstream &stream)
{
    output_as(29, status, field, stream);
}

void status_field_output_ap_ssid(const appc_system_all_status *status, const status_field_t *field,
                                 std::stringstream &stream)
{
    output_as(30, status, field, stream);
}

void status_field_output_rssi_barsV2(const appc_system_all_status *status, const status_field_t *field,
                                     std::stringstream &stream)
{
    output_as(56, status, field, stream);
}

void status_field_output_next_poll(const appc_system_all_status *status, const status_field_t *field,
                                   std::stringstream &stream)
{
    output_as(60, status, field, stream);
}

void status_field_output_analytics_ready(const appc_system_all_status *status, const status_field_t *field,
                                         std::stringstream &stream)
{
    output_as(61, status, field, stream);
}

void status_field_output_exposure_select_type(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(65, status, field, stream);
}

void status_field_output_exposure_select_x(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output_as(66, status, field, stream);
}

void status_field_output_exposure_select_y(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output_as(67, status, field, stream);
}

void status_field_output_internal_battery_percentage(const appc_system_all_status *status, const status_field_t *field,
                                                     std::stringstream &stream)
{
    output_as(70, status, field, stream);
}

void status_field_output_digital_zoom(const appc_system_all_status *status, const status_field_t *field,
                                      std::stringstream &stream)
{
    output_as(75, status, field, stream);
}

void status_field_output_current_mode(const appc_system_all_status *status, const status_field_t *field,
                                      std::stringstream &stream)
{
    output_as(89, status, field, stream);
}

void status_field_output_vellix_default(const appc_system_all_status *status, const status_field_t *field,
                                        std::stringstream &stream)
{
    output_as(90, status, field, stream);
}

void status_field_output_logs_ready(const appc_system_all_status *status, const status_field_t *field,
                                    std::stringstream &stream)
{
    output_as(91, status, field, stream);
}

void status_field_output_active_video_presets(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(93, status, field, stream);
}

void status_field_output_active_photo_presets(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(94, status, field, stream);
}

void status_field_output_active_timelapse_presets(const appc_system_all_status *status, const status_field_t *field,
                                                  std::stringstream &stream)
{
    output_as(95, status, field, stream);
}

void status_field_output_active_presets_group(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(96, status, field, stream);
}

void status_field_output_active_preset(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    output_as(97, status, field, stream);
}

void status_field_output_preset_modified(const appc_system_all_status *status, const status_field_t *field,
                                         std::stringstream &stream)
{
    output_as(98, status, field, stream);
}

void status_field_output_capture_delay(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    output_as(101, status, field, stream);
}

void status_field_output_camera_lens_type(const appc_system_all_status *status, const status_field_t *field,
                                          std::stringstream &stream)
{
    output_as(105, status, field, stream);
}

void status_field_output_retrocap_active(const appc_system_all_status *status, const status_field_t *field,
                                         std::stringstream &stream)
{
    output_as(106, status, field, stream);
}

void status_field_output_scheduled_preset(const appc_system_all_status *status, const status_field_t *field,
                                          std::stringstream &stream)
{
    output_as(107, status, field, stream);
}

void status_field_output_scheduled_enabled(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output_as(108, status, field, stream);
}

void status_field_output_sd_rating_check_error(const appc_system_all_status *status, const status_field_t *field,
                                               std::stringstream &stream)
{
    output_as(111, status, field, stream);
}

void status_field_output_sd_write_speed_error(const appc_system_all_status *status, const status_field_t *field,
                                              std::stringstream &stream)
{
    output_as(112, status, field, stream);
}

void status_field_output_swift_offload(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    output_as(113, status, field, stream);
}

void status_field_output_camera_control_status(const appc_system_all_status *status, const status_field_t *field,
                                               std::stringstream &stream)
{
    output_as(114, status, field, stream);
}

void status_field_output_usb_connected(const appc_system_all_status *status, const status_field_t *field,
                                       std::stringstream &stream)
{
    output_as(115, status, field, stream);
}

void status_field_output_total_sd_space_kb(const appc_system_all_status *status, const status_field_t *field,
                                           std::stringstream &stream)
{
    output_as(117, status, field, stream);
}

void status_field_output_photo_interval_capture_count(const appc_system_all_status *status, const status_field_t *field,
                                                      std::stringstream &stream)
{
    output_as(118, status, field, stream);
}
