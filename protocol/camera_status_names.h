/*
 * camera_status_names.h - the names of the statuses
 *
 * A status is published under its number alone; its name is for people: log lines, tools, pages. Names stay as they
 * are, and two statuses share one.
 */
#ifndef ZVCTRL_CAMERA_STATUS_NAMES_H
#define ZVCTRL_CAMERA_STATUS_NAMES_H

#include <stddef.h>
#include <stdint.h>

typedef struct camera_status_name_t {
    uint8_t id;
    char name[43];
} camera_status_name_t;

/* clang-format off */
/* The 82 published statuses, ascending. */
#ifdef __cplusplus
inline constexpr
#else
static const
#endif
camera_status_name_t camera_status_names[] = {
    {  1, "system_internal_battery_present"},
    {  2, "system_internal_battery_level"},
    {  3, "system_external_battery_present"},
    {  4, "system_external_battery_level"},
    {  6, "system_system_hot"},
    {  8, "system_system_busy"},
    {  9, "system_quick_capture_active"},
    { 10, "system_encoding_active"},
    { 11, "system_lcd_lock_active"},
    { 13, "video_video_progress_counter"},
    { 14, "broadcast_broadcast_progress_counter"},
    { 17, "wireless_enable"},
    { 19, "wireless_state"},
    { 20, "wireless_type"},
    { 22, "wireless_state"},
    { 23, "wireless_scan_time_msec"},
    { 24, "wireless_provision_status"},
    { 27, "wireless_remote_control_connected"},
    { 29, "wireless_wlan_ssid"},
    { 30, "wireless_ap_ssid"},
    { 31, "wireless_app_count"},
    { 32, "stream_enable"},
    { 33, "storage_sd_status"},
    { 34, "storage_remaining_photos"},
    { 35, "storage_remaining_video_time"},
    { 38, "storage_num_total_photos"},
    { 39, "storage_num_total_videos"},
    { 41, "fwupdate_ota_status"},
    { 42, "fwupdate_download_cancel_request_pending"},
    { 45, "system_camera_locate_active"},
    { 49, "multi_shot_multi_shot_count_down"},
    { 54, "storage_remaining_space"},
    { 55, "stream_supported"},
    { 56, "wireless_wifi_bars"},
    { 58, "storage_num_keymarks"},
    { 59, "storage_last_keymark_time_msec"},
    { 60, "system_next_poll_msec"},
    { 61, "system_analytics_ready"},
    { 64, "storage_remaining_timelapse_time"},
    { 65, "liveview_exposure_select_type"},
    { 66, "liveview_exposure_select_x"},
    { 67, "liveview_exposure_select_y"},
    { 68, "system_gps_status"},
    { 69, "wireless_ap_state"},
    { 70, "system_internal_battery_percentage"},
    { 74, "system_acc_mic_status"},
    { 75, "app_digital_zoom"},
    { 76, "wireless_wireless_band"},
    { 77, "system_digital_zoom_active"},
    { 78, "system_mobile_friendly_video"},
    { 81, "wireless_band_5GHz_avail"},
    { 82, "system_system_ready"},
    { 83, "system_batt_okay_for_ota"},
    { 85, "system_video_low_temp_alert"},
    { 86, "system_actual_orientation"},
    { 88, "video_zoom_while_encoding"},
    { 89, "app_current_mode"},
    { 90, "app_vellix_default"},
    { 91, "system_logs_ready"},
    { 93, "app_active_video_presets"},
    { 94, "app_active_photo_presets"},
    { 95, "app_active_timelapse_presets"},
    { 96, "app_active_presets_group"},
    { 97, "app_active_preset"},
    { 98, "app_preset_modified"},
    {101, "app_capture_delay_active"},
    {102, "system_sound_cage_mic_status"},
    {103, "system_rushlapse_speed_ramp_active"},
    {105, "system_camera_lens_type"},
    {106, "video_video_retrocap_capture_active"},
    {107, "app_scheduled_preset"},
    {108, "app_scheduled_enabled"},
    {109, "system_creating_preset"},
    {110, "system_sound_cage_status"},
    {111, "system_sd_rating_check_error"},
    {112, "system_sd_write_speed_error"},
    {113, "system_swift_offload"},
    {114, "system_camera_control_status"},
    {115, "app_usb_connected"},
    {116, "system_allow_control_over_usb"},
    {117, "storage_total_sd_space_kb"},
    {118, "photo_interval_capture_count"},
};

/* The name of a status; null for a number without one. Any thread may call. */
#ifdef __cplusplus
constexpr
#else
static inline
#endif
const char *camera_status_name(uint32_t id)
{
    for (size_t i = 0; i < sizeof camera_status_names / sizeof camera_status_names[0]; ++i) {
        if (camera_status_names[i].id == id) {
            return camera_status_names[i].name;
        }
    }
    return NULL;
}
/* clang-format on */

#endif
