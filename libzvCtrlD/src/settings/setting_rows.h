// The settings of the camera, ascending. Data for the compiler: camera_settings_tables.cpp, camera_settings_options.cpp
// and camera_settings_rules.cpp make of it what the library looks things up in. Internal to the library.
#pragma once

#include "enumerator_name.h"
#include "setting_row.h"

#include <algorithm>
#include <iterator>

namespace zv {

// clang-format off

inline constexpr Setting SETTINGS[] = {
    // id, generations, scope, path,
    // options, default id, place and plain write, read, write, unlisted values
    {SETTING_VIDEO_RESOLUTION, BOTH, OF_PRESET, "modes/video/settings/resolution",
     VIDEO_RESOLUTION, 1, plain(REMOTE_VIDEO_RES_FPS_FOV_SET, SETTINGS_VIDEO_RESOLUTION), replaced(13, 17),
     by_operation(SET_VIDEO_RES)},
    {SETTING_VIDEO_FPS, BOTH, OF_PRESET, "modes/video/settings/fps",
     VIDEO_FPS, 5, plain(REMOTE_VIDEO_RES_FPS_FOV_SET, SETTINGS_VIDEO_FPS), READ_PLAIN, by_operation(SET_VIDEO_FPS)},
    {SETTING_VIDEO_TIMELAPSE_RATE, BOTH, OF_PRESET, "modes/video/settings/timelapse_rate",
     VIDEO_TIMELAPSE_RATE, 0, plain(REMOTE_VIDEO_TIMELAPSE_RATE_SET, SETTINGS_VIDEO_TIMELAPSE_RATE)},
    {SETTING_VIDEO_LOOPING, BOTH, OF_PRESET, "modes/video/settings/looping",
     VIDEO_LOOPING, 0, plain(REMOTE_VIDEO_LOOPING_SET, SETTINGS_VIDEO_LOOPING)},
    {SETTING_VIDEO_VELLIX_ISO, BOTH, OF_PRESET, "modes/video/settings/vellix_iso",
     VIDEO_VELLIX_ISO, 9, plain(REMOTE_VIDEO_ISO_MAX_SET, SETTINGS_VIDEO_VELLIX_ISO), READ_PLAIN,
     video_iso(SET_VIDEO_ISO)},
    {SETTING_PHOTO_EXPOSURE_TIME, BOTH, OF_PRESET, "modes/photo/settings/exposure_time",
     PHOTO_EXPOSURE_TIME, 0, plain(REMOTE_PHOTO_EXPOSURE_TIME_SET, SETTINGS_PHOTO_EXPOSURE_TIME), READ_PLAIN,
     PHOTO_EXPOSURE_WRITE},
    {SETTING_PHOTO_VELLIX_ISO, BOTH, OF_PRESET, "modes/photo/settings/vellix_iso",
     VELLIX_ISO, 5, plain(REMOTE_PHOTO_ISO_MAX_SET, SETTINGS_PHOTO_VELLIX_ISO), READ_PLAIN,
     by_operation(SET_PHOTO_ISO)},
    {SETTING_MULTI_SHOT_TIMELAPSE_RATE, BOTH, OF_PRESET, "modes/multi_shot/settings/timelapse_rate",
     MULTI_SHOT_TIMELAPSE_RATE, 110, plain(REMOTE_MULTISHOT_TIMELAPSE_RATE_SET, SETTINGS_MULTI_SHOT_TIMELAPSE_RATE, 4),
     READ_PLAIN, by_operation(SET_TIMELAPSE_RATE)},
    {SETTING_MULTI_SHOT_EXPOSURE_TIME, BOTH, OF_PRESET, "modes/multi_shot/settings/exposure_time",
     MULTI_SHOT_EXPOSURE_TIME, 0, plain(REMOTE_MULTISHOT_EXPOSURE_TIME_SET, SETTINGS_MULTI_SHOT_EXPOSURE_TIME),
     READ_PLAIN, MULTI_SHOT_EXPOSURE_WRITE},
    {SETTING_MULTI_SHOT_NIGHTLAPSE_RATE, BOTH, OF_PRESET, "modes/multi_shot/settings/nightlapse_rate",
     NIGHTLAPSE_RATE, 3601, plain(REMOTE_MULTISHOT_NIGHTLAPSE_RATE_SET, SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE, 4),
     READ_PLAIN, by_operation(SET_NIGHTLAPSE_RATE)},
    {SETTING_MULTI_SHOT_VELLIX_ISO, BOTH, OF_PRESET, "modes/multi_shot/settings/vellix_iso",
     VELLIX_ISO, 4, plain(REMOTE_MULTISHOT_ISO_MAX_SET, SETTINGS_MULTI_SHOT_VELLIX_ISO), READ_PLAIN,
     by_operation(SET_MULTISHOT_ISO)},
    {SETTING_BROADCAST_RESOLUTION, BOTH, OF_PRESET, "modes/broadcast/settings/resolution",
     BROADCAST_RESOLUTION, 12, plain(REMOTE_BROADCAST_RES_FPS_FOV_SET, SETTINGS_BROADCAST_RESOLUTION)},
    {SETTING_BROADCAST_FPS, BOTH, OF_PRESET, "modes/broadcast/settings/fps",
     BROADCAST_FPS, 8, plain(REMOTE_BROADCAST_RES_FPS_FOV_SET, SETTINGS_BROADCAST_FPS)},
    {SETTING_BROADCAST_FOV, BOTH, OF_PRESET, "modes/broadcast/settings/fov",
     BROADCAST_FOV, 0, plain(REMOTE_BROADCAST_RES_FPS_FOV_SET, SETTINGS_BROADCAST_FOV), READ_PLAIN,
     BROADCAST_FOV_WRITE},
    {SETTING_BROADCAST_RECORD_RESOLUTION, BOTH, OF_PRESET, "modes/broadcast/settings/record_resolution",
     BROADCAST_RECORD_RESOLUTION, 9,
     plain(REMOTE_BROADCAST_RECORD_RES_FPS_FOV_SET, SETTINGS_BROADCAST_RECORD_RESOLUTION)},
    {SETTING_BROADCAST_RECORD_FPS, BOTH, OF_PRESET, "modes/broadcast/settings/record_fps",
     BROADCAST_FPS, 8, plain(REMOTE_BROADCAST_RECORD_RES_FPS_FOV_SET, SETTINGS_BROADCAST_RECORD_FPS)},
    {SETTING_BROADCAST_WINDOW_SIZE, BOTH, OF_CAMERA, "modes/broadcast/settings/window_size",
     BROADCAST_WINDOW_SIZE, 7, plain(REMOTE_BROADCAST_WINDOW_SIZE_SET, SETTINGS_BROADCAST_WINDOW_SIZE)},
    {SETTING_QUICK_CAPTURE, BOTH, OF_CAMERA, "modes/setup/settings/quick_capture",
     ON_OFF, 0, plain(REMOTE_SETUP_QUICK_CAPTURE_SET, SETTINGS_SETUP_QUICK_CAPTURE)},
    {SETTING_AUTO_POWER_DOWN, BOTH, OF_CAMERA, "modes/setup/settings/auto_power_down",
     AUTO_POWER_DOWN, 1, plain(REMOTE_SETUP_AUTO_POWER_DOWN_SET, SETTINGS_SETUP_AUTO_POWER_DOWN)},
    {SETTING_STREAM_BIT_RATE, BOTH, OF_CAMERA, "modes/stream/settings/bit_rate",
     STREAM_BIT_RATE, 1200000, plain(REMOTE_STREAM_BIT_RATE_SET, SETTINGS_STREAM_BIT_RATE, 4, 4)},
    {SETTING_STREAM_WINDOW_SIZE, BOTH, OF_CAMERA, "modes/stream/settings/window_size",
     STREAM_WINDOW_SIZE, 0, plain(REMOTE_STREAM_WINDOW_SIZE_SET, SETTINGS_STREAM_WINDOW_SIZE)},
    {SETTING_PHOTO_VELLIX_ISO_MIN, BOTH, OF_PRESET, "modes/photo/settings/vellix_iso_min",
     VELLIX_ISO, 3, plain(REMOTE_PHOTO_ISO_MIN_SET, SETTINGS_PHOTO_VELLIX_ISO_MIN), READ_PLAIN,
     by_operation(SET_PHOTO_ISO_MIN)},
    {SETTING_MULTI_SHOT_VELLIX_ISO_MIN, BOTH, OF_PRESET, "modes/multi_shot/settings/vellix_iso_min",
     VELLIX_ISO, 3, plain(REMOTE_MULTISHOT_ISO_MIN_SET, SETTINGS_MULTI_SHOT_VELLIX_ISO_MIN), READ_PLAIN,
     by_operation(SET_MULTISHOT_ISO_MIN)},
    {SETTING_GPS, DEFAULT, OF_CAMERA, "modes/setup/settings/gps",
     NO_OPTIONS, 0, plain(REMOTE_SETUP_GPS_SET, SETTINGS_SETUP_GPS)},
    {SETTING_LANGUAGE, BOTH, OF_CAMERA, "modes/setup/settings/language",
     LANGUAGE, 0, plain(REMOTE_SETUP_LANGUAGE_SET, SETTINGS_SETUP_LANGUAGE)},
    {SETTING_VOICE_CONTROL_LANGUAGE, BOTH, OF_CAMERA, "modes/setup/settings/voice_control_language",
     VOICE_CONTROL_LANGUAGE, 0, plain(REMOTE_SETUP_VOICE_CONTROL_LANGUAGE_SET, SETTINGS_SETUP_VOICE_CONTROL_LANGUAGE)},
    {SETTING_LOCAL_VOICE_CONTROL, BOTH, OF_CAMERA, "modes/setup/settings/local_voice_control",
     ON_OFF, 0, plain(REMOTE_SETUP_LOCAL_VOICE_CONTROL_SET, SETTINGS_SETUP_LOCAL_VOICE_CONTROL)},
    {SETTING_BEEP_VOLUME, BOTH, OF_CAMERA, "modes/setup/settings/beep_volume",
     BEEP_VOLUME, 100, plain(REMOTE_SETUP_BEEP_VOLUME_SET, SETTINGS_SETUP_BEEP_VOLUME)},
    {SETTING_LCD_BRIGHTNESS, BOTH, OF_CAMERA, "modes/setup/settings/lcd_brightness",
     LCD_BRIGHTNESS, 50, plain(REMOTE_SETUP_LCD_BRIGHTNESS_SET, SETTINGS_SETUP_LCD_BRIGHTNESS), READ_PLAIN, WRITE_PLAIN,
     PERCENTAGE_AS_ITSELF},
    {SETTING_LED, BOTH, OF_CAMERA, "modes/setup/settings/led",
     LED, 3, plain(REMOTE_SETUP_LED_SET, SETTINGS_SETUP_LED), READ_PLAIN, WRITE_PLAIN, AS_ITSELF},
    {SETTING_VIDEO_VELLIX_ISO_MIN, BOTH, OF_PRESET, "modes/video/settings/vellix_iso_min",
     VIDEO_VELLIX_ISO_MIN, 9, plain(REMOTE_VIDEO_ISO_MIN_SET, SETTINGS_VIDEO_VELLIX_ISO_MIN), READ_PLAIN,
     video_iso(SET_VIDEO_ISO_MIN)},
    {SETTING_AUTO_SCREEN_LOCK, BOTH, OF_CAMERA, "modes/setup/settings/auto_screen_lock",
     AUTO_SCREEN_LOCK, 3, plain(REMOTE_SETUP_AUTO_SCREEN_LOCK_SET, SETTINGS_SETUP_AUTO_SCREEN_LOCK)},
    {SETTING_CAPTURE_DELAY, BOTH, OF_PRESET, "capture_delay",
     CAPTURE_DELAY, 0, BARE_NAME,
     of_block(SETTINGS_VIDEO_CAPTURE_DELAY, SETTINGS_PHOTO_CAPTURE_DELAY, SETTINGS_MULTI_SHOT_CAPTURE_DELAY),
     by_operation(SET_CAPTURE_DELAY)},
    {SETTING_VIDEO_ASPECT_RATIO, BOTH, OF_PRESET, "modes/video/settings/aspect_ratio",
     ASPECT_RATIO, 0, plain(REMOTE_VIDEO_ASPECT_RATIO_SET, SETTINGS_VIDEO_ASPECT_RATIO)},
    {SETTING_VIDEO_RUSHLAPSE_SPEED, BOTH, OF_PRESET, "modes/video/settings/rushlapse_speed",
     RUSHLAPSE_SPEED, 10, plain(REMOTE_VIDEO_RUSHLAPSE_SPEED_SET, SETTINGS_VIDEO_RUSHLAPSE_SPEED)},
    {SETTING_ORIENTATION, BOTH, OF_CAMERA, "modes/setup/settings/orientation",
     ORIENTATION, 100, plain(REMOTE_SETUP_ORIENTATION_SET, SETTINGS_SETUP_ORIENTATION),
     orientation_at(SETTINGS_SETUP_ORIENTATION), ORIENTATION_WRITE},
    {SETTING_VELLIX, BOTH, OF_PRESET, "vellix",
     ON_OFF, 0, BARE_NAME, of_block_or_plain(SETTINGS_VIDEO_VELLIX, SETTINGS_PHOTO_VELLIX, SETTINGS_MULTI_SHOT_VELLIX),
     by_block(REMOTE_VIDEO_VELLIX_SET, REMOTE_PHOTO_VELLIX_SET, REMOTE_MULTISHOT_VELLIX_SET)},
    {SETTING_VELLIX_WHITE_BALANCE, BOTH, OF_PRESET, "vellix_white_balance",
     WHITE_BALANCE, 0, BARE_NAME,
     of_block_or_plain(SETTINGS_VIDEO_VELLIX_WHITE_BALANCE, SETTINGS_PHOTO_VELLIX_WHITE_BALANCE,
                       SETTINGS_MULTI_SHOT_VELLIX_WHITE_BALANCE),
     by_block(REMOTE_VIDEO_WHITE_BALANCE_SET, REMOTE_PHOTO_WHITE_BALANCE_SET, REMOTE_MULTISHOT_WHITE_BALANCE_SET)},
    {SETTING_VELLIX_COLOR, BOTH, OF_PRESET, "vellix_color",
     COLOR, 2, BARE_NAME,
     of_block_or_plain(SETTINGS_VIDEO_VELLIX_COLOR, SETTINGS_PHOTO_VELLIX_COLOR, SETTINGS_MULTI_SHOT_VELLIX_COLOR),
     by_block(REMOTE_VIDEO_COLOR_SET, REMOTE_PHOTO_COLOR_SET, REMOTE_MULTISHOT_COLOR_SET)},
    {SETTING_VELLIX_SHARPNESS, BOTH, OF_PRESET, "vellix_sharpness",
     SHARPNESS, 1, BARE_NAME,
     of_block_or_plain(SETTINGS_VIDEO_VELLIX_SHARPNESS, SETTINGS_PHOTO_VELLIX_SHARPNESS,
                       SETTINGS_MULTI_SHOT_VELLIX_SHARPNESS),
     by_block(REMOTE_VIDEO_SHARPNESS_SET, REMOTE_PHOTO_SHARPNESS_SET, REMOTE_MULTISHOT_SHARPNESS_SET)},
    {SETTING_VELLIX_EV, BOTH, OF_PRESET, "vellix_ev",
     EV, 4, BARE_NAME,
     of_block_or_plain(SETTINGS_VIDEO_VELLIX_EV, SETTINGS_PHOTO_VELLIX_EV, SETTINGS_MULTI_SHOT_VELLIX_EV),
     by_block(REMOTE_VIDEO_EV_SET, REMOTE_PHOTO_EV_SET, REMOTE_MULTISHOT_EV_SET)},
    {SETTING_VIDEO_FOV, BOTH, OF_PRESET, "modes/video/settings/fov",
     VIDEO_FOV, 0, plain(REMOTE_VIDEO_RES_FPS_FOV_SET, SETTINGS_VIDEO_FOV), READ_PLAIN, VIDEO_FOV_WRITE},
    {SETTING_PHOTO_RESOLUTION, BOTH, OF_PRESET, "modes/photo/settings/resolution",
     PHOTO_RESOLUTION, 101, plain(REMOTE_PHOTO_RES_SET, SETTINGS_PHOTO_RESOLUTION)},
    {SETTING_MULTI_SHOT_RESOLUTION, BOTH, OF_PRESET, "modes/multi_shot/settings/resolution",
     MULTI_SHOT_RESOLUTION, 101, plain(REMOTE_MULTISHOT_RES_SET, SETTINGS_MULTI_SHOT_RESOLUTION)},
    {SETTING_VIDEO_BITRATE, DEFAULT, OF_PRESET, "modes/video/settings/bitrate",
     NO_OPTIONS, 0, plain(REMOTE_VIDEO_BIT_RATE_SET, SETTINGS_VIDEO_BITRATE)},
    {SETTING_PHOTO_OUTPUT, BOTH, OF_PRESET, "modes/photo/settings/output",
     PHOTO_OUTPUT, 0, plain(REMOTE_PHOTO_OUTPUT_SET, SETTINGS_PHOTO_OUTPUT)},
    {SETTING_MULTI_SHOT_OUTPUT, BOTH, OF_PRESET, "modes/multi_shot/settings/output",
     MULTI_SHOT_OUTPUT, 0, plain(REMOTE_MULTISHOT_OUTPUT_SET, SETTINGS_MULTI_SHOT_OUTPUT)},
    {SETTING_FORMAT, BOTH, OF_PRESET, "format",
     FORMAT, 13, BARE_NAME, byte_at(SETTINGS_SETUP_CURRENT_FLAT_MODE), low_byte_to(REMOTE_PRESET_FORMAT_SET)},
    {SETTING_ONSCREEN_SHORTCUTS_1, BOTH, OF_PRESET, "onscreen_shortcuts_1",
     ONSCREEN_SHORTCUTS, 0, BARE_NAME, shortcut(0), to_shortcut(0)},
    {SETTING_ONSCREEN_SHORTCUTS_2, BOTH, OF_PRESET, "onscreen_shortcuts_2",
     ONSCREEN_SHORTCUTS, 0, BARE_NAME, shortcut(1), to_shortcut(1)},
    {SETTING_ONSCREEN_SHORTCUTS_3, BOTH, OF_PRESET, "onscreen_shortcuts_3",
     ONSCREEN_SHORTCUTS, 0, BARE_NAME, shortcut(2), to_shortcut(2)},
    {SETTING_ONSCREEN_SHORTCUTS_4, BOTH, OF_PRESET, "onscreen_shortcuts_4",
     ONSCREEN_SHORTCUTS, 0, BARE_NAME, shortcut(3), to_shortcut(3)},
    {SETTING_VIDEO_FORMAT, BOTH, OF_CAMERA, "modes/setup/settings/video_format",
     VIDEO_FORMAT, 2, plain(REMOTE_SETUP_VIDEO_FORMAT_SET, SETTINGS_SETUP_VIDEO_FORMAT)},
    {SETTING_VIDEO_EIS, BOTH, OF_PRESET, "modes/video/settings/eis",
     EIS, 0, plain(REMOTE_VIDEO_EIS_SET, SETTINGS_VIDEO_EIS_SETTING), status_at(STATUS_VIDEO_EIS)},
    {SETTING_AUDIO_VELLIX_OPTION, BOTH, OF_PRESET, "modes/audio/settings/vellix_option",
     AUDIO_VELLIX_OPTION, 3, plain(REMOTE_AUDIO_VELLIX_OPTION_SET, SETTINGS_AUDIO_VELLIX_OPTION)},
    {SETTING_CURRENT_FLAT_MODE, BOTH, OF_PRESET, "current_flat_mode",
     CURRENT_FLAT_MODE, 12, BARE_NAME, byte_at(SETTINGS_SETUP_CURRENT_FLAT_MODE),
     low_byte_to(REMOTE_PRESET_FLAT_MODE_SET)},
    {SETTING_VIDEO_EXPOSURE_TIME, BOTH, OF_PRESET, "modes/video/settings/exposure_time",
     VIDEO_EXPOSURE_TIME, 0, plain(REMOTE_VIDEO_EXPOSURE_TIME_SET, SETTINGS_VIDEO_EXPOSURE_TIME)},
    {SETTING_PHOTO_VELLIX_EXPOSURE_TIME, BOTH, OF_PRESET, "modes/photo/settings/vellix_exposure_time",
     VELLIX_EXPOSURE_TIME, 0, plain(REMOTE_PHOTO_VELLIX_EXPOSURE_TIME_SET, SETTINGS_PHOTO_VELLIX_EXPOSURE_TIME)},
    {SETTING_MULTI_SHOT_BURST_RATE, BOTH, OF_PRESET, "modes/multi_shot/settings/burst_rate",
     BURST_RATE, 9, plain(REMOTE_MULTISHOT_BURST_RATE_SET, SETTINGS_MULTI_SHOT_BURST_RATE)},
    {SETTING_MAX_GLIDARA, BOTH, OF_PRESET, "max_glidara",
     EIS, 0, BARE_NAME, signed_at(SETTINGS_VIDEO_EIS_SETTING), low_byte_to(REMOTE_VIDEO_EIS_SET)},
    {SETTING_WIND_OPTION, BOTH, OF_PRESET, "wind_option",
     WIND_OPTION, 0, BARE_NAME, signed_at(SETTINGS_AUDIO_WIND_OPTION, 3, 2), audio(SET_AUDIO_OPTION)},
    {SETTING_MODE_BUTTON, BOTH, OF_PRESET, "mode_button",
     MODE_BUTTON, 100, BARE_NAME, signed_at(SETTINGS_VIDEO_MODE_BUTTON), low_byte_to(REMOTE_VIDEO_MODE_BUTTON_SET)},
    {SETTING_FRONT_LCD_DISPLAY_MODE, BOTH, OF_CAMERA, "modes/setup/settings/front_lcd_display_mode",
     FRONT_LCD_DISPLAY_MODE, 2, plain(REMOTE_SETUP_FRONT_LCD_DISPLAY_MODE_SET, SETTINGS_SETUP_FRONT_LCD_DISPLAY_MODE),
     READ_PLAIN, FRONT_DISPLAY_WRITE},
    {SETTING_RUSHLAPSE_SPEED_RAMP, DEFAULT, OF_PRESET, "rushlapse_speed_ramp",
     NO_OPTIONS, 0, BARE_NAME, signed_at(SETTINGS_VIDEO_RUSHLAPSE_SPEED_RAMP),
     low_byte_to(REMOTE_VIDEO_RUSHLAPSE_SPEED_RAMP_SET)},
    {SETTING_VIDEO_SHORT_CLIP_LENGTH, BOTH, OF_PRESET, "modes/video/settings/short_clip_length",
     SHORT_CLIP_LENGTH, 100, plain(REMOTE_VIDEO_SHORT_CLIP_LENGTH_SET, SETTINGS_VIDEO_SHORT_CLIP_LENGTH)},
    {SETTING_MULTI_SHOT_SHORT_CLIP_LENGTH, BOTH, OF_PRESET, "modes/multi_shot/settings/short_clip_length",
     SHORT_CLIP_LENGTH, 100, plain(REMOTE_MULTISHOT_SHORT_CLIP_LENGTH_SET, SETTINGS_MULTI_SHOT_SHORT_CLIP_LENGTH)},
    {SETTING_FRONT_LCD_SCREEN_SAVER, BOTH, OF_CAMERA, "modes/setup/settings/front_lcd_screen_saver",
     FRONT_LCD_SCREEN_SAVER, 1, plain(REMOTE_SETUP_FRONT_LCD_SCREEN_SAVER_SET, SETTINGS_SETUP_FRONT_LCD_SCREEN_SAVER)},
    {SETTING_LCD_SLEEP, BOTH, OF_CAMERA, "modes/setup/settings/lcd_sleep",
     LCD_SLEEP, 4, plain(REMOTE_SETUP_LCD_SLEEP_SET, SETTINGS_SETUP_LCD_SLEEP)},
    {SETTING_MULTI_SHOT_BITRATE, BOTH, OF_PRESET, "modes/multi_shot/settings/bitrate",
     BIT_RATE, 0, plain(REMOTE_MULTISHOT_BIT_RATE_SET, SETTINGS_MULTI_SHOT_BITRATE), READ_PLAIN,
     low_byte_to(REMOTE_VIDEO_BIT_RATE_SET)},
    {SETTING_DEFAULT_CAMERA_MODE, BOTH, OF_CAMERA, "default_camera_mode",
     DEFAULT_CAMERA_MODE, 200, BARE_NAME, number_at(SETTINGS_SETUP_DEFAULT_CAMERA_MODE),
     low_byte_to(REMOTE_SETUP_DEFAULT_CAMERA_MODE_SET)},
    {SETTING_WIDE_OPTIC_ENABLE, DEFAULT, OF_CAMERA, "wide_optic_enable",
     NO_OPTIONS, 0, BARE_NAME, status_at(STATUS_SYSTEM_CAMERA_LENS_TYPE), low_byte_to(REMOTE_SYSTEM_LENS_TYPE_SET)},
    {SETTING_LENS_DASHBOARD_BUTTON, DEFAULT, OF_CAMERA, "modes/setup/settings/lens_dashboard_button",
     NO_OPTIONS, 0, plain(REMOTE_SETUP_LENS_DASHBOARD_BUTTON_SET, SETTINGS_SETUP_LENS_DASHBOARD_BUTTON),
     signed_at(SETTINGS_SETUP_LENS_DASHBOARD_BUTTON), low_byte_to(REMOTE_SETUP_LENS_DASHBOARD_BUTTON_SET)},
    {SETTING_SOUND_CAGE_AUDIO, BOTH, OF_PRESET, "sound_cage_audio",
     SOUND_CAGE_AUDIO, 100, BARE_NAME, signed_at(SETTINGS_AUDIO_SOUND_CAGE_AUDIO, 7, 1), audio(SET_MIC_OPTION)},
    {SETTING_HORIZON_LOCK, BOTH, OF_PRESET, "horizon_lock",
     OFF_ON, 0, BARE_NAME, signed_at(SETTINGS_VIDEO_HORIZON_LOCK), low_byte_to(REMOTE_VIDEO_HORIZON_LOCK_SET)},
    {SETTING_PHOTO_HORIZON_CONTROL, BOTH, OF_PRESET, "modes/photo/settings/horizon_control",
     OFF_ON, 0, plain(REMOTE_PHOTO_HORIZON_CONTROL_SET, SETTINGS_PHOTO_HORIZON_CONTROL)},
    {SETTING_VIDEO_RETROCAP_LENGTH, BOTH, OF_PRESET, "modes/video/settings/retrocap_length",
     RETROCAP_LENGTH, 4, plain(REMOTE_VIDEO_RETROCAP_LENGTH_SET, SETTINGS_VIDEO_RETROCAP_LENGTH)},
    {SETTING_SCHEDULED_CAPTURE, BOTH, OF_PRESET, "scheduled_capture",
     SCHEDULED_CAPTURE, 0, BARE_NAME, SCHEDULE_READ, SCHEDULE_WRITE, AS_ITSELF},
    {SETTING_ACC_MIC_MODE, BOTH, OF_CAMERA, "acc_mic_mode",
     ACC_MIC_MODE, 1, BARE_NAME, signed_at(SETTINGS_SETUP_ACC_MIC_MODE), low_byte_to(REMOTE_SETUP_ACC_MIC_MODE_SET)},
    {SETTING_PHOTO_SINGLE_INTERVAL, BOTH, OF_PRESET, "modes/photo/settings/single_interval",
     SINGLE_INTERVAL, 0, plain(REMOTE_PHOTO_SINGLE_INTERVAL_SET, SETTINGS_PHOTO_SINGLE_INTERVAL)},
    {SETTING_PHOTO_INTERVAL_DURATION, BOTH, OF_PRESET, "modes/photo/settings/interval_duration",
     INTERVAL_DURATION, 0, plain(REMOTE_PHOTO_INTERVAL_DURATION_SET, SETTINGS_PHOTO_INTERVAL_DURATION)},
    {SETTING_VELLIX_BITDEPTH, DEFAULT, OF_PRESET, "vellix_bitdepth",
     NO_OPTIONS, 0, BARE_NAME, signed_at(SETTINGS_VIDEO_VELLIX_BITDEPTH), low_byte_to(REMOTE_VIDEO_BIT_DEPTH_SET)},
    {SETTING_UX_MODE, BOTH, OF_CAMERA, "modes/setup/settings/camera_ux_mode",
     CAMERA_UX_MODE, 0, plain(REMOTE_SETUP_CAMERA_UX_MODE_SET, SETTINGS_SETUP_CAMERA_UX_MODE), READ_PLAIN,
     low_byte_to(REMOTE_SETUP_CAMERA_UX_MODE_SET)},
    {SETTING_EASY_MODE_SPEED, BOTH, OF_PRESET, "easy_mode_speed",
     EASY_MODE_SPEED, 103, BARE_NAME, EASY_SPEED_READ, EASY_SPEED_WRITE},
    {SETTING_EASY_MODE_NIGHT_PHOTO, DEFAULT, OF_CAMERA, "easy_mode_night_photo",
     NO_OPTIONS, 0, BARE_NAME, active_preset(PRESETS_PHOTO), load_preset(PRESETS_PHOTO)},
    {SETTING_WIRELESS_BAND, BOTH, OF_CAMERA, "wireless_band",
     WIRELESS_BAND, 0, BARE_NAME, status_at(STATUS_WIRELESS_WIRELESS_BAND), low_byte_to(REMOTE_WIRELESS_BAND_SET)},
    {SETTING_MULTI_SHOT_TRAIL_LENGTH, BOTH, OF_PRESET, "modes/multi_shot/settings/trail_length",
     TRAIL_LENGTH, 3, plain(REMOTE_MULTISHOT_TRAIL_LENGTH_SET, SETTINGS_MULTI_SHOT_TRAIL_LENGTH)},
    {SETTING_POWER_PROFILE, DEFAULT, OF_CAMERA, "power_profile",
     NO_OPTIONS, 0, BARE_NAME, status_at(STATUS_SYSTEM_POWER_PROFILE), low_byte_to(REMOTE_SYSTEM_POWER_PROFILE_SET)},
    {SETTING_EASY_MODE_PRESET_PILL, DEFAULT, OF_CAMERA, "easy_mode_preset_pill",
     NO_OPTIONS, 0},
    {SETTING_VIDEO_BIT_RATE, BOTH, OF_CAMERA, "video_bit_rate",
     BIT_RATE, 0, BARE_NAME, signed_at(SETTINGS_SETUP_VIDEO_BIT_RATE), by_operation(SET_VIDEO_BIT_RATE)},
    {SETTING_VIDEO_BIT_DEPTH, BOTH, OF_CAMERA, "video_bit_depth",
     VIDEO_BIT_DEPTH, 0, BARE_NAME, signed_at(SETTINGS_SETUP_VIDEO_BIT_DEPTH), by_operation(SET_VIDEO_BIT_DEPTH)},
    {SETTING_VIDEO_PROFILE, BOTH, OF_PRESET, "modes/video/settings/profile",
     VIDEO_PROFILE, 0, plain(REMOTE_VIDEO_PROFILE_SET, SETTINGS_VIDEO_PROFILE)},
    {SETTING_EASY_VIDEO_PRESET, BOTH, OF_PRESET, "easy_presets",
     EASY_VIDEO_PRESETS, 0, BARE_NAME, active_preset(PRESETS_VIDEO), load_preset(PRESETS_VIDEO)},
    {SETTING_EASY_TIME_LAPSE_PRESET, BOTH, OF_PRESET, "easy_presets",
     EASY_TIMELAPSE_PRESETS, 0, BARE_NAME, active_preset(PRESETS_TIME_LAPSE), load_preset(PRESETS_TIME_LAPSE)},
    {SETTING_ADDON_LENS_ACTIVE, BOTH, OF_CAMERA, "addon_lens_active",
     ADDON_LENS, 0, BARE_NAME, status_at(STATUS_SYSTEM_CAMERA_LENS_TYPE), low_byte_to(REMOTE_SYSTEM_LENS_TYPE_SET)},
    {SETTING_ADDON_LENS_STATUS, BOTH, OF_CAMERA, "addon_lens_status",
     OFF_ON, 0, BARE_NAME, signed_at(SETTINGS_SETUP_LENS_DASHBOARD_BUTTON), by_operation(SET_LENS_STATUS)},
    {SETTING_EASY_PHOTO_PRESET, BOTH, OF_PRESET, "easy_presets",
     EASY_PHOTO_PRESETS, 0, BARE_NAME, active_preset(PRESETS_PHOTO), load_preset(PRESETS_PHOTO)},
    {SETTING_NLV_ASPECT_RATIO, BOTH, OF_PRESET, "nlv_aspect_ratio",
     NLV_ASPECT_RATIO, 1, BARE_NAME, multi_shot_or(SETTINGS_MULTI_SHOT_ASPECT_RATIO, SETTINGS_VIDEO_ASPECT_RATIO),
     low_byte_to(REMOTE_VIDEO_ASPECT_RATIO_SET)},
    {SETTING_EASY_FRAMING, BOTH, OF_PRESET, "easy_framing",
     EASY_FRAMING, 0, BARE_NAME, multi_shot_or(SETTINGS_MULTI_SHOT_ASPECT_RATIO, SETTINGS_VIDEO_ASPECT_RATIO),
     low_byte_to(REMOTE_VIDEO_ASPECT_RATIO_SET)},
};

// clang-format on

constexpr bool has_setting(bool sable_knoll, const Setting &setting)
{
    return !sable_knoll || setting.generations == BOTH;
}

constexpr size_t setting_count(bool sable_knoll)
{
    return static_cast<size_t>(std::count_if(std::begin(SETTINGS), std::end(SETTINGS), [=](const Setting &setting) {
        return has_setting(sable_knoll, setting);
    }));
}

// A bare name has no plain write, any other path has one.
constexpr bool is_well_formed(const Setting &setting)
{
    const bool bare = std::find(std::begin(setting.path), std::end(setting.path), '/') == std::end(setting.path);
    return bare == (setting.place.command == RemoteCommand{}) && bare == (setting.place.write_size == 0) &&
           bare == (setting.place.offset == 0) &&
           setting.place.offset + setting.place.read_size <= int{sizeof(appc_setup_all_settings::bytes)};
}

// What is logged of an image control goes by its number.
constexpr bool is_image_control(const Setting &setting)
{
    return setting.id >= SETTING_VELLIX && setting.id <= SETTING_VELLIX_EV;
}

static_assert(std::all_of(std::begin(SETTINGS), std::end(SETTINGS), is_well_formed));
static_assert(std::all_of(std::begin(SETTINGS), std::end(SETTINGS), [](const Setting &setting) {
    return is_image_control(setting) == (setting.read.way == Read::OF_BLOCK_OR_PLAIN) &&
           is_image_control(setting) == (setting.write.way == Write::BY_BLOCK);
}));
static_assert(std::adjacent_find(std::begin(SETTINGS), std::end(SETTINGS),
                                 [](const Setting &row, const Setting &next) { return row.id >= next.id; }) ==
                  std::end(SETTINGS),
              "the rows ascend, each id once");
static_assert(std::all_of(std::begin(SETTINGS), std::end(SETTINGS),
                          [](const Setting &setting) {
                              return has_setting(true, setting) == !setting.options.empty();
                          }),
              "the settings of sable_knoll are those that have options");

} // namespace zv
