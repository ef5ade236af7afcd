#include "camera_status_fields.h"

#include "csi_keys.h"

#include <algorithm>
#include <cstdint>

namespace zv {

using enum StatusOutput;

// clang-format off

constexpr StatusTable status_fields = {{
    // id, output, offset
    {  0, NONE,        0},
    {  1, BYTE,        STATUS_SYSTEM_INTERNAL_BATTERY_PRESENT},
    {  2, LEVEL,       STATUS_SYSTEM_INTERNAL_BATTERY_CHARGE_STATE},
    {  3, BYTE,        STATUS_SYSTEM_EXTERNAL_BATTERY_PRESENT},
    {  4, LEVEL,       STATUS_SYSTEM_EXTERNAL_BATTERY_CHARGE_STATE},
    {  5, NONE,        0},
    {  6, BYTE,        STATUS_SYSTEM_SYSTEM_HOT},
    {  7, NONE,        0},
    {  8, BYTE,        STATUS_SYSTEM_SYSTEM_BUSY},
    {  9, BYTE,        STATUS_SYSTEM_QUICK_CAPTURE_ACTIVE},
    { 10, BYTE,        STATUS_SYSTEM_ENCODING_ACTIVE},
    { 11, BYTE,        STATUS_SYSTEM_LCD_LOCK_ACTIVE},
    { 12, NONE,        0},
    { 13, NUMBER,      STATUS_VIDEO_VIDEO_PROGRESS_COUNTER},
    { 14, NUMBER,      STATUS_BROADCAST_BROADCAST_PROGRESS_COUNTER},
    { 15, NONE,        0},
    { 16, NONE,        0},
    { 17, BYTE,        STATUS_WIRELESS_ENABLE},
    { 18, NONE,        0},
    { 19, BYTE,        STATUS_WIRELESS_STATE},
    { 20, BYTE,        STATUS_WIRELESS_TYPE},
    { 21, NONE,        0},
    { 22, BYTE,        STATUS_WIRELESS_SCAN_STATE},
    { 23, NUMBER,      STATUS_WIRELESS_SCAN_TIME_MSEC},
    { 24, BYTE,        STATUS_WIRELESS_PROVISION_STATUS},
    { 25, NONE,        0},
    { 26, NONE,        0},
    { 27, BYTE,        STATUS_WIRELESS_REMOTE_CONTROL_CONNECTED},
    { 28, NONE,        0},
    { 29, TEXT,        STATUS_WIRELESS_WLAN_SSID},
    { 30, TEXT,        STATUS_WIRELESS_AP_SSID},
    { 31, BYTE,        STATUS_WIRELESS_APP_COUNT},
    { 32, BYTE,        STATUS_STREAM_ENABLE},
    { 33, BYTE,        STATUS_STORAGE_SD_STATUS},
    { 34, NUMBER,      STATUS_STORAGE_REMAINING_PHOTOS},
    { 35, NUMBER,      STATUS_STORAGE_REMAINING_VIDEO_TIME},
    { 36, NONE,        0},
    { 37, NONE,        0},
    { 38, NUMBER,      STATUS_STORAGE_NUM_TOTAL_PHOTOS},
    { 39, NUMBER,      STATUS_STORAGE_NUM_TOTAL_VIDEOS},
    { 40, NONE,        0},
    { 41, BYTE,        STATUS_FWUPDATE_OTA_STATUS},
    { 42, BYTE,        STATUS_FWUPDATE_DOWNLOAD_CANCEL_REQUEST_PENDING},
    { 43, NONE,        0},
    { 44, NONE,        0},
    { 45, BYTE,        STATUS_SYSTEM_CAMERA_LOCATE_ACTIVE},
    { 46, NONE,        0},
    { 47, NONE,        0},
    { 48, NONE,        0},
    { 49, NUMBER,      STATUS_MULTI_SHOT_MULTI_SHOT_COUNT_DOWN},
    { 50, NONE,        0},
    { 51, NONE,        0},
    { 52, NONE,        0},
    { 53, NONE,        0},
    { 54, LONG_NUMBER, STATUS_STORAGE_REMAINING_SPACE},
    { 55, BYTE,        STATUS_STREAM_SUPPORTED},
    { 56, SIGNED,      STATUS_WIRELESS_WIFI_BARS},
    { 57, NONE,        0},
    { 58, BYTE,        STATUS_STORAGE_NUM_KEYMARKS},
    { 59, NUMBER,      STATUS_STORAGE_LAST_KEYMARK_TIME_MSEC},
    { 60, NEXT_POLL,   0},
    { 61, ANALYTICS,   STATUS_SYSTEM_ENCODING_ACTIVE},
    { 62, NONE,        0},
    { 63, NONE,        0},
    { 64, NUMBER,      STATUS_STORAGE_REMAINING_TIMELAPSE_TIME},
    { 65, EXPOSURE,    STATUS_LIVEVIEW_EXPOSURE_SELECT_TYPE},
    { 66, COORDINATE,  STATUS_LIVEVIEW_EXPOSURE_SELECT_X},
    { 67, COORDINATE,  STATUS_LIVEVIEW_EXPOSURE_SELECT_Y},
    { 68, BYTE,        STATUS_SYSTEM_GPS_STATUS},
    { 69, BYTE,        STATUS_WIRELESS_AP_STATE},
    { 70, PERCENTAGE,  STATUS_SYSTEM_INTERNAL_BATTERY_PERCENTAGE},
    { 71, NONE,        0},
    { 72, NONE,        0},
    { 73, NONE,        0},
    { 74, BYTE,        STATUS_SYSTEM_ACC_MIC_STATUS},
    { 75, BYTE,        STATUS_APP_DIGITAL_ZOOM},
    { 76, BYTE,        STATUS_WIRELESS_WIRELESS_BAND},
    { 77, BYTE,        STATUS_SYSTEM_DIGITAL_ZOOM_ACTIVE},
    { 78, BYTE,        STATUS_SYSTEM_MOBILE_FRIENDLY_VIDEO},
    { 79, NONE,        0},
    { 80, NONE,        0},
    { 81, BYTE,        STATUS_WIRELESS_BAND_5GHZ_AVAIL},
    { 82, BYTE,        STATUS_SYSTEM_SYSTEM_READY},
    { 83, BYTE,        STATUS_SYSTEM_BATT_OKAY_FOR_OTA},
    { 84, NONE,        0},
    { 85, BYTE,        STATUS_SYSTEM_VIDEO_LOW_TEMP_ALERT},
    { 86, BYTE,        STATUS_SYSTEM_ACTUAL_ORIENTATION},
    { 87, NONE,        0},
    { 88, BYTE,        STATUS_VIDEO_ZOOM_WHILE_ENCODING},
    { 89, BYTE,        STATUS_APP_CURRENT_MODE},
    { 90, VELLIX,      STATUS_APP_CURRENT_MODE},
    { 91, LOGS,        STATUS_SYSTEM_LINUX_CORE_ACTIVE},
    { 92, NONE,        0},
    { 93, NUMBER,      STATUS_APP_ACTIVE_VIDEO_PRESETS},
    { 94, NUMBER,      STATUS_APP_ACTIVE_PHOTO_PRESETS},
    { 95, NUMBER,      STATUS_APP_ACTIVE_TIMELAPSE_PRESETS},
    { 96, GROUP,       STATUS_APP_ACTIVE_PRESETS_GROUP},
    { 97, PRESET,      STATUS_APP_ACTIVE_PRESETS_GROUP},
    { 98, CSI,         CSI_PRESET_MODIFIED},
    { 99, NONE,        0},
    {100, NONE,        0},
    {101, BYTE,        STATUS_APP_CAPTURE_DELAY_ACTIVE},
    {102, BYTE,        STATUS_SYSTEM_SOUND_CAGE_MIC_STATUS},
    {103, BYTE,        STATUS_SYSTEM_RUSHLAPSE_SPEED_RAMP_ACTIVE},
    {104, NONE,        0},
    {105, BYTE,        STATUS_SYSTEM_CAMERA_LENS_TYPE},
    {106, BYTE,        STATUS_VIDEO_VIDEO_RETROCAP_CAPTURE_ACTIVE},
    {107, NUMBER,      STATUS_APP_SCHEDULED_PRESET},
    {108, BYTE,        STATUS_APP_SCHEDULED_ENABLED},
    {109, BYTE,        STATUS_SYSTEM_CREATING_PRESET},
    {110, BYTE,        STATUS_SYSTEM_SOUND_CAGE_STATUS},
    {111, CSI,         CSI_SD_RATING_CHECK_ERROR},
    {112, CSI,         CSI_SD_WRITE_SPEED_ERROR},
    {113, CSI,         CSI_SWIFT_OFFLOAD},
    {114, EXTENDED,    STATUS_SYSTEM_CAMERA_CONTROL_STATUS},
    {115, CSI,         CSI_USB_CONNECTED},
    {116, BYTE,        STATUS_SYSTEM_ALLOW_CONTROL_OVER_USB},
    {117, LONG_NUMBER, STATUS_STORAGE_TOTAL_SD_SPACE_KB},
    {118, NUMBER,      STATUS_PHOTO_INTERVAL_CAPTURE_COUNT},
}};

constexpr PushTable push_notification_fields = {{
    // id, value, mode, related id
    {  0, PushValue::NONE,        0,  0},
    {  1, PushValue::BYTE,        2,  0},
    {  2, PushValue::BYTE,        2,  0},
    {  3, PushValue::BYTE,        2,  0},
    {  4, PushValue::BYTE,        2,  0},
    {  5, PushValue::NONE,        0,  0},
    {  6, PushValue::BYTE,        2,  0},
    {  7, PushValue::NONE,        0,  0},
    {  8, PushValue::BYTE,        1,  0},
    {  9, PushValue::BYTE,        1,  0},
    { 10, PushValue::BYTE,        1,  0},
    { 11, PushValue::BYTE,        2,  0},
    { 12, PushValue::NONE,        0,  0},
    { 13, PushValue::NUMBER,      1,  0},
    { 14, PushValue::NUMBER,      2,  0},
    { 15, PushValue::NUMBER,      2,  0},
    { 16, PushValue::BYTE,        2,  0},
    { 17, PushValue::BYTE,        2,  0},
    { 18, PushValue::NONE,        0,  0},
    { 19, PushValue::BYTE,        1,  0},
    { 20, PushValue::BYTE,        1,  0},
    { 21, PushValue::NUMBER,      1,  0},
    { 22, PushValue::BYTE,        1,  0},
    { 23, PushValue::BYTE,        1,  0},
    { 24, PushValue::BYTE,        1,  0},
    { 25, PushValue::NONE,        0,  0},
    { 26, PushValue::BYTE,        2,  0},
    { 27, PushValue::BYTE,        2,  0},
    { 28, PushValue::BYTE,        1,  0},
    { 29, PushValue::TEXT,        2,  0},
    { 30, PushValue::TEXT,        2,  0},
    { 31, PushValue::BYTE,        2,  0},
    { 32, PushValue::BYTE,        1,  0},
    { 33, PushValue::BYTE,        1,  0},
    { 34, PushValue::NUMBER,      2,  0},
    { 35, PushValue::NUMBER,      2,  0},
    { 36, PushValue::NUMBER,      2,  0},
    { 37, PushValue::NUMBER,      2,  0},
    { 38, PushValue::NUMBER,      2,  0},
    { 39, PushValue::NUMBER,      2,  0},
    { 40, PushValue::TEXT,        0,  0},
    { 41, PushValue::BYTE,        1,  0},
    { 42, PushValue::BYTE,        2,  0},
    { 43, PushValue::BYTE,        1,  0},
    { 44, PushValue::BYTE,        1,  0},
    { 45, PushValue::BYTE,        2,  0},
    { 46, PushValue::BYTE,        2,  0},
    { 47, PushValue::BYTE,        2,  0},
    { 48, PushValue::BYTE,        2,  0},
    { 49, PushValue::NUMBER,      2,  0},
    { 50, PushValue::NONE,        0,  0},
    { 51, PushValue::NONE,        0,  0},
    { 52, PushValue::NONE,        0,  0},
    { 53, PushValue::NONE,        0,  0},
    { 54, PushValue::LONG_NUMBER, 2,  0},
    { 55, PushValue::BYTE,        1,  0},
    { 56, PushValue::BYTE,        2,  0},
    { 57, PushValue::NUMBER,      3, 58},
    { 58, PushValue::BYTE,        2,  0},
    { 59, PushValue::NUMBER,      2,  0},
    { 60, PushValue::NUMBER,      2,  0},
    { 61, PushValue::BYTE,        2,  0},
    { 62, PushValue::NUMBER,      3, 61},
    { 63, PushValue::BYTE,        1,  0},
    { 64, PushValue::NUMBER,      2,  0},
    { 65, PushValue::BYTE,        2,  0},
    { 66, PushValue::BYTE,        2,  0},
    { 67, PushValue::BYTE,        2,  0},
    { 68, PushValue::BYTE,        2,  0},
    { 69, PushValue::BYTE,        2,  0},
    { 70, PushValue::BYTE,        2,  0},
    { 71, PushValue::BYTE,        1,  0},
    { 72, PushValue::BYTE,        1,  0},
    { 73, PushValue::BYTE,        1,  0},
    { 74, PushValue::BYTE,        1,  0},
    { 75, PushValue::BYTE,        1,  0},
    { 76, PushValue::BYTE,        2,  0},
    { 77, PushValue::BYTE,        1,  0},
    { 78, PushValue::BYTE,        1,  0},
    { 79, PushValue::BYTE,        1,  0},
    { 80, PushValue::BYTE,        1,  0},
    { 81, PushValue::BYTE,        2,  0},
    { 82, PushValue::BYTE,        1,  0},
    { 83, PushValue::BYTE,        2,  0},
    { 84, PushValue::BYTE,        1,  0},
    { 85, PushValue::BYTE,        1,  0},
    { 86, PushValue::BYTE,        1,  0},
    { 87, PushValue::BYTE,        1,  0},
    { 88, PushValue::BYTE,        2,  0},
    { 89, PushValue::BYTE,        1,  0},
    { 90, PushValue::BYTE,        2,  0},
    { 91, PushValue::BYTE,        2,  0},
    { 92, PushValue::NONE,        0,  0},
    { 93, PushValue::NUMBER,      1,  0},
    { 94, PushValue::NUMBER,      1,  0},
    { 95, PushValue::NUMBER,      1,  0},
    { 96, PushValue::NUMBER,      1,  0},
    { 97, PushValue::NUMBER,      1,  0},
    { 98, PushValue::NUMBER,      1,  0},
    { 99, PushValue::NUMBER,      2,  0},
    {100, PushValue::NUMBER,      2,  0},
    {101, PushValue::BYTE,        1,  0},
    {102, PushValue::BYTE,        1,  0},
    {103, PushValue::BYTE,        2,  0},
    {104, PushValue::BYTE,        1,  0},
    {105, PushValue::BYTE,        1,  0},
    {106, PushValue::BYTE,        1,  0},
    {107, PushValue::NUMBER,      1,  0},
    {108, PushValue::BYTE,        1,  0},
    {109, PushValue::BYTE,        1,  0},
    {110, PushValue::BYTE,        1,  0},
    {111, PushValue::BYTE,        1,  0},
    {112, PushValue::BYTE,        1,  0},
    {113, PushValue::BYTE,        1,  0},
    {114, PushValue::BYTE,        1,  0},
    {115, PushValue::BYTE,        1,  0},
    {116, PushValue::BYTE,        1,  0},
    {117, PushValue::LONG_NUMBER, 2,  0},
    {118, PushValue::NUMBER,      1,  0},
}};

// clang-format on

namespace {

constexpr bool index_is_id(const auto &table)
{
    return std::ranges::all_of(table, [&](const auto &row) { return &row == &table[row.id]; });
}
static_assert(index_is_id(status_fields) && index_is_id(push_notification_fields));

constexpr int bytes_of(StatusOutput output)
{
    switch (output) {
    case NUMBER:
    case GROUP:
    case PRESET:
        return 4;
    case LONG_NUMBER:
        return 8;
    case TEXT:
        return NETWORK_NAME_SIZE;
    case LEVEL:
        return 2;
    default:
        return 1;
    }
}

constexpr bool reads_inside_the_record(const StatusField &row)
{
    return row.output == CSI ||
           (row.offset >= 0 && row.offset + bytes_of(row.output) <= static_cast<int>(sizeof(appc_system_all_status)));
}
static_assert(std::ranges::all_of(status_fields, reads_inside_the_record));
static_assert(NETWORK_NAME_SIZE <= static_cast<int32_t>(JSON_TEXT_MAX));

constexpr bool is_published(const StatusField &row)
{
    return row.output != NONE;
}

constexpr bool is_pushed(const StatusField &row)
{
    return is_published(row) && push_notification_fields[row.id].mode != 0;
}

template <auto IS_WALKED>
constexpr auto ROWS = [] {
    std::array<StatusField, std::ranges::count_if(status_fields, IS_WALKED)> rows;
    std::ranges::copy_if(status_fields, rows.begin(), IS_WALKED);
    return rows;
}();

static_assert(std::ranges::all_of(ROWS<is_published>, is_pushed),
              "a document's values are all seen by change detection");

} // namespace

StatusRows published_statuses()
{
    return ROWS<is_published>;
}

StatusRows pushed_statuses()
{
    return ROWS<is_pushed>;
}

} // namespace zv
