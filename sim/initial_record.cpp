#include "initial_record.h"

#include "easy_mode.h"
#include "flat_modes.h"

#include <zvctrl/camera_records.h>

namespace zv::sim {

namespace {

constexpr uint32_t first_preset(PresetGroup group)
{
    return find_easy_preset(group, 0)->preset;
}

constexpr InitialValue INITIAL_RECORD[] = {
    // Status
    {status(STATUS_APP_ACTIVE_VIDEO_PRESETS, 4), first_preset(PRESETS_VIDEO)},
    {status(STATUS_APP_ACTIVE_PHOTO_PRESETS, 4), first_preset(PRESETS_PHOTO)},
    {status(STATUS_APP_ACTIVE_TIMELAPSE_PRESETS, 4), first_preset(PRESETS_TIME_LAPSE)},
    {status(STATUS_VIDEO_VELLIX_DEFAULT), 1},
    {status(STATUS_PHOTO_VELLIX_DEFAULT), 1},
    {status(STATUS_MULTI_SHOT_VELLIX_DEFAULT), 1},
    {status(STATUS_VIDEO_EIS), 1},
    {status(STATUS_STREAM_SUPPORTED), 1},
    {status(STATUS_EXPOSURE_COORDINATES_DIRECT), 1},
    {status(STATUS_SYSTEM_INTERNAL_BATTERY_PRESENT), 1},
    {status(STATUS_SYSTEM_INTERNAL_BATTERY_PERCENTAGE), 87},
    {status(STATUS_SYSTEM_INTERNAL_BATTERY_BARS), 3},
    {status(STATUS_SYSTEM_SYSTEM_READY), 1},
    {status(STATUS_SYSTEM_GPS_STATUS), 1},
    {status(STATUS_SYSTEM_MOBILE_FRIENDLY_VIDEO), 1},
    {status(STATUS_SYSTEM_BATT_OKAY_FOR_OTA), 1},
    {status(STATUS_SYSTEM_LINUX_CORE_ACTIVE), 1},
    {status(STATUS_WIRELESS_ENABLE), 1},
    {status(STATUS_WIRELESS_APP_COUNT), 1},
    {status(STATUS_WIRELESS_STATE), 3},
    {status(STATUS_WIRELESS_TYPE), 2},
    {status(STATUS_WIRELESS_WIFI_BARS), 3},
    {status(STATUS_WIRELESS_AP_STATE), 1},
    {status(STATUS_WIRELESS_BAND_5GHZ_AVAIL), 1},
    {status(STATUS_LIVEVIEW_EXPOSURE_SELECT_TYPE), 2}, // published as 0: no exposure point forbids a shutter time

    // Settings of the camera as a whole
    {settings(SETTINGS_SETUP_DEFAULT_CAMERA_MODE, 4), 255}, // last used
    {settings(SETTINGS_SETUP_BEEP_VOLUME), 100},            // high
    {settings(SETTINGS_SETUP_AUTO_POWER_DOWN), 6},          // 15 minutes
    {settings(SETTINGS_SETUP_LED), 2},                      // all on
    {settings(SETTINGS_SETUP_QUICK_CAPTURE), 1},            // on
    {settings(SETTINGS_SETUP_ORIENTATION), 0},              // all
    {settings(SETTINGS_SETUP_LCD_BRIGHTNESS), 70},          // 70 %
    {settings(SETTINGS_SETUP_LCD_SLEEP), 4},                // 5 minutes
    {settings(SETTINGS_SETUP_VIDEO_FORMAT), 0},             // 60 Hz
    {settings(SETTINGS_SETUP_ACC_MIC_MODE), 1},             // standard microphone
    {settings(SETTINGS_SETUP_AUTO_SCREEN_LOCK), 3},         // off
    {settings(SETTINGS_SETUP_FRONT_LCD_DISPLAY_MODE), 2},   // actual view
    {settings(SETTINGS_SETUP_FRONT_LCD_SCREEN_SAVER), 1},   // match rear screen
    {settings(SETTINGS_SETUP_CAMERA_UX_MODE), 1},           // pro

    // Video
    {settings(SETTINGS_VIDEO_RESOLUTION), 1},                     // 4K
    {settings(SETTINGS_VIDEO_FPS), 5},                            // 60
    {settings(SETTINGS_VIDEO_FOV), 4},                            // linear
    {settings(SETTINGS_VIDEO_LOOPING), 1},                        // 5 minutes
    {settings(SETTINGS_VIDEO_VELLIX_SHARPNESS), 1},               // medium
    {settings(SETTINGS_VIDEO_VELLIX_COLOR), 2},                   // natural
    {settings(SETTINGS_VIDEO_VELLIX_ISO), 1},                     // 1600
    {settings(SETTINGS_VIDEO_VELLIX_EV), 4},                      // 0.0
    {settings(SETTINGS_VIDEO_EIS_SETTING), 1},                    // on
    {settings(SETTINGS_VIDEO_VELLIX_ISO_MIN), 8},                 // 100
    {settings(SETTINGS_VIDEO_ASPECT_RATIO), 1},                   // 16:9
    {settings(SETTINGS_VIDEO_RUSHLAPSE_SPEED), 10},               // auto
    {settings(SETTINGS_VIDEO_ONSCREEN_SHORTCUTS, 4), 0x010C0221}, // settings, lens, glidara, zoom
    {settings(SETTINGS_VIDEO_RETROCAP_LENGTH), 4},                // off

    // Photo
    {settings(SETTINGS_PHOTO_RESOLUTION), 31},                    // wide
    {settings(SETTINGS_PHOTO_VELLIX_SHARPNESS), 1},               // medium
    {settings(SETTINGS_PHOTO_VELLIX_COLOR), 2},                   // natural
    {settings(SETTINGS_PHOTO_VELLIX_ISO), 5},                     // 3200
    {settings(SETTINGS_PHOTO_VELLIX_EV), 4},                      // 0.0
    {settings(SETTINGS_PHOTO_VELLIX_ISO_MIN), 3},                 // 100
    {settings(SETTINGS_PHOTO_ONSCREEN_SHORTCUTS, 4), 0x01141121}, // settings, output, timer, zoom

    // Multi-shot
    {settings(SETTINGS_MULTI_SHOT_RESOLUTION), 31},                    // wide
    {settings(SETTINGS_MULTI_SHOT_BURST_RATE), 9},                     // auto
    {settings(SETTINGS_MULTI_SHOT_TIMELAPSE_RATE), 0},                 // 0.5 seconds
    {settings(SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE), 9},                // auto
    {settings(SETTINGS_MULTI_SHOT_VELLIX_SHARPNESS), 1},               // medium
    {settings(SETTINGS_MULTI_SHOT_VELLIX_COLOR), 2},                   // natural
    {settings(SETTINGS_MULTI_SHOT_VELLIX_ISO), 0},                     // 800
    {settings(SETTINGS_MULTI_SHOT_VELLIX_EV), 4},                      // 0.0
    {settings(SETTINGS_MULTI_SHOT_VELLIX_ISO_MIN), 3},                 // 100
    {settings(SETTINGS_MULTI_SHOT_ONSCREEN_SHORTCUTS, 4), 0x01140221}, // settings, lens, timer, zoom
    {settings(SETTINGS_MULTI_SHOT_ASPECT_RATIO), 1},                   // 16:9
    {settings(SETTINGS_MULTI_SHOT_TRAIL_LENGTH), 3},                   // max

    // Broadcast, stream, audio
    {settings(SETTINGS_BROADCAST_RESOLUTION), 12},       // 720
    {settings(SETTINGS_BROADCAST_FPS), 8},               // 30
    {settings(SETTINGS_BROADCAST_FOV), 0},               // wide
    {settings(SETTINGS_BROADCAST_RECORD_RESOLUTION), 9}, // 1080
    {settings(SETTINGS_BROADCAST_RECORD_FPS), 8},        // 30
    {settings(SETTINGS_BROADCAST_WINDOW_SIZE), 7},       // 720
    {settings(SETTINGS_STREAM_BIT_RATE, 4), 1200000},    // 1.2 Mbps
    {settings(SETTINGS_AUDIO_WIND_OPTION), 2},           // auto
    {settings(SETTINGS_AUDIO_VELLIX_OPTION), 3},         // off
};

} // namespace

std::span<const InitialValue> initial_record()
{
    return INITIAL_RECORD;
}

} // namespace zv::sim
