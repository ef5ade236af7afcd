// Which settings and options the sable_knoll generation does not offer in which situation: a rule per row. When all of
// a rule's conditions hold, all its consequences apply. Data for the compiler; rule_reader.h has the notation. Internal
// to the library.
#pragma once

#include "rule_reader.h"

namespace zv {

// clang-format off

inline constexpr RuleRow RULE_ROWS[] = {
    // Frame rates and speeds of each mains frequency
    {0,   "video_format=60_HZ "
          "then video_fps only 240,120,60,30,24; easy_mode_speed only 8X_ULTRA_SLO_MO_V2,4X_SUPER_SLO_MO_V2,"
          "2X_SLO_MO_V2,2X_SLO_MO_4K_V2,2X_SLO_MO_2_7K_V2,1X_SPEED_LOW_LIGHT_V2,1X_SPEED_LOW_LIGHT_4K_V2,"
          "1X_SPEED_LOW_LIGHT_2_7K_V2,UNIVERSAL_2X_SLO_MO_V2,UNIVERSAL_1X_SPEED_LOW_LIGHT_V2,MOBILE_2X_SLO_MO_V2,"
          "MOBILE_1X_SPEED_LOW_LIGHT_V2,LB_8X_ULTRA_SLO_MO_V2,LB_4X_SUPER_SLO_MO_V2,LB_2X_SLO_MO_V2,"
          "LB_1X_SPEED_LOW_LIGHT_V2,MOBILE_LB_2X_SLO_MO_V2,MOBILE_LB_1X_SPEED_LOW_LIGHT_V2,"
          "UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_V2"},
    {1,   "video_format=50_HZ "
          "then video_fps only 200,100,50,25,24; easy_mode_speed only 8X_ULTRA_SLO_MO_50HZ_V2,"
          "4X_SUPER_SLO_MO_50HZ_V2,2X_SLO_MO_50HZ_V2,2X_SLO_MO_4K_50HZ_V2,2X_SLO_MO_2_7K_50HZ_V2,"
          "1X_SPEED_LOW_LIGHT_50HZ_V2,1X_SPEED_LOW_LIGHT_4K_50HZ_V2,1X_SPEED_LOW_LIGHT_2_7K_50HZ_V2,"
          "UNIVERSAL_2X_SLO_MO_50HZ_V2,UNIVERSAL_1X_SPEED_LOW_LIGHT_50HZ_V2,MOBILE_2X_SLO_MO_50HZ_V2,"
          "MOBILE_1X_SPEED_LOW_LIGHT_50HZ_V2,LB_8X_ULTRA_SLO_MO_50HZ_V2,LB_4X_SUPER_SLO_MO_50HZ_V2,"
          "LB_2X_SLO_MO_50HZ_V2,LB_1X_SPEED_LOW_LIGHT_50HZ_V2,MOBILE_LB_2X_SLO_MO_50HZ_V2,"
          "MOBILE_LB_1X_SPEED_LOW_LIGHT_50HZ_V2,UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_50HZ_V2"},

    // Scheduled capture while a preset is being created; pre-record while a schedule is set
    {2,   "system_creating_preset=1 then scheduled_capture off"},
    {3,   "app_scheduled_enabled=1 then video_retrocap_length off"},

    // The settings of each user level
    {4,   "ux_mode=EASY "
          "then sound_cage_audio off; video_profile off; video_aspect_ratio off; nlv_aspect_ratio off; "
          "multi_shot_short_clip_length off; multi_shot_exposure_time off; multi_shot_vellix_iso off; "
          "multi_shot_vellix_iso_min off; video_retrocap_length off; video_resolution off; video_eis off; "
          "video_fps off; video_short_clip_length off; video_exposure_time off; video_vellix_iso off; "
          "video_vellix_iso_min off; photo_exposure_time off; photo_vellix_exposure_time off; photo_output off; "
          "photo_vellix_iso off; photo_vellix_iso_min off; audio_vellix_option off; video_rushlapse_speed off; "
          "mode_button off; wind_option off; vellix off; vellix_color off; vellix_ev off; vellix_sharpness off; "
          "vellix_white_balance off; scheduled_capture off; onscreen_shortcuts_* off; max_glidara off"},
    {5,   "ux_mode=PRO "
          "then easy_time_lapse_preset off; easy_framing off; easy_mode_speed off; easy_video_preset off; "
          "easy_photo_preset off"},

    // Easy video: speed, framing and field of view, with and without an add-on lens
    {6,   "ux_mode=EASY; flat_mode=VIDEO then easy_time_lapse_preset off; capture_delay off"},
    {7,   "addon_lens_status=OFF; ux_mode=EASY; flat_mode=VIDEO "
          "then horizon_lock off; video_fov without MAX_ORBISCAPE"},
    {8,   "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO "
          "then easy_mode_speed only 8X_ULTRA_SLO_MO_V2,4X_SUPER_SLO_MO_V2,2X_SLO_MO_V2,2X_SLO_MO_4K_V2,"
          "1X_SPEED_LOW_LIGHT_V2,8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_50HZ_V2,2X_SLO_MO_50HZ_V2,"
          "2X_SLO_MO_4K_50HZ_V2,1X_SPEED_LOW_LIGHT_50HZ_V2"},
    {9,   "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; video_fov=LINEAR_PLUS_HORIZON_LOCK "
          "then easy_mode_speed without 2X_SLO_MO_V2,2X_SLO_MO_50HZ_V2"},
    {10,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; video_fov!=ARCASCAPE,LINEAR_PLUS_HORIZON_LOCK "
          "then easy_mode_speed without 2X_SLO_MO_4K_V2,2X_SLO_MO_4K_50HZ_V2"},
    {11,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; easy_mode_speed=8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,"
          "4X_SUPER_SLO_MO_50HZ_V2 "
          "then video_fov without LINEAR_PLUS_HORIZON_LOCK"},
    {12,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; easy_mode_speed=4X_SUPER_SLO_MO_V2,4X_SUPER_SLO_MO_50HZ_V2 "
          "then video_fov without ARCASCAPE"},
    {13,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; easy_mode_speed=1X_SPEED_LOW_LIGHT_V2,1X_SPEED_LOW_LIGHT_50HZ_V2,2X_SLO_MO_V2,"
          "2X_SLO_MO_50HZ_V2,2X_SLO_MO_4K_V2,2X_SLO_MO_4K_50HZ_V2 "
          "then video_fov without LINEAR_PLUS_HORIZON_LEVELING"},
    {14,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; video_fov=ARCASCAPE "
          "then easy_mode_speed without 2X_SLO_MO_V2,2X_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,4X_SUPER_SLO_MO_50HZ_V2,"
          "8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2"},
    {15,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; video_fov=ORBISCAPE "
          "then easy_mode_speed without 8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2"},
    {16,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=VERTICAL; "
          "flat_mode=VIDEO "
          "then video_fov only WIDE; easy_mode_speed only MOBILE_1X_SPEED_LOW_LIGHT_V2,"
          "MOBILE_1X_SPEED_LOW_LIGHT_50HZ_V2,MOBILE_2X_SLO_MO_V2,MOBILE_2X_SLO_MO_50HZ_V2"},
    {17,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=HIGHEST_QUALITY; easy_framing=FULL_FRAME; "
          "flat_mode=VIDEO "
          "then video_fov only WIDE; easy_mode_speed only UNIVERSAL_1X_SPEED_LOW_LIGHT_V2,"
          "UNIVERSAL_1X_SPEED_LOW_LIGHT_50HZ_V2,UNIVERSAL_2X_SLO_MO_V2,UNIVERSAL_2X_SLO_MO_50HZ_V2"},
    {18,  "flat_mode=VIDEO; addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=STANDARD_QUALITY; "
          "easy_framing=WIDESCREEN "
          "then easy_mode_speed only 8X_ULTRA_SLO_MO_V2,4X_SUPER_SLO_MO_V2,2X_SLO_MO_4K_V2,1X_SPEED_LOW_LIGHT_4K_V2,"
          "8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_50HZ_V2,2X_SLO_MO_4K_50HZ_V2,1X_SPEED_LOW_LIGHT_4K_50HZ_V2"},
    {19,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=STANDARD_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; easy_mode_speed=8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,"
          "4X_SUPER_SLO_MO_50HZ_V2 "
          "then video_fov without LINEAR_PLUS_HORIZON_LOCK"},
    {20,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=STANDARD_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; easy_mode_speed=8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,"
          "4X_SUPER_SLO_MO_50HZ_V2 "
          "then video_fov without ARCASCAPE"},
    {21,  "flat_mode=VIDEO; addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=STANDARD_QUALITY; "
          "easy_framing=WIDESCREEN; easy_mode_speed=1X_SPEED_LOW_LIGHT_4K_V2,1X_SPEED_LOW_LIGHT_4K_50HZ_V2,"
          "2X_SLO_MO_4K_V2,2X_SLO_MO_4K_50HZ_V2 "
          "then video_fov without LINEAR_PLUS_HORIZON_LEVELING"},
    {22,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=STANDARD_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; video_fov=ARCASCAPE "
          "then easy_mode_speed without 8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,"
          "4X_SUPER_SLO_MO_50HZ_V2"},
    {23,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=STANDARD_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; video_fov=ORBISCAPE "
          "then easy_mode_speed without 8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2"},
    {24,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=STANDARD_QUALITY; easy_framing=VERTICAL; "
          "flat_mode=VIDEO "
          "then video_fov only WIDE; easy_mode_speed only MOBILE_1X_SPEED_LOW_LIGHT_V2,"
          "MOBILE_1X_SPEED_LOW_LIGHT_50HZ_V2,MOBILE_2X_SLO_MO_V2,MOBILE_2X_SLO_MO_50HZ_V2"},
    {25,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=STANDARD_QUALITY; easy_framing=FULL_FRAME; "
          "flat_mode=VIDEO "
          "then video_fov only WIDE; easy_mode_speed only UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_V2,"
          "UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_50HZ_V2,UNIVERSAL_2X_SLO_MO_V2,UNIVERSAL_2X_SLO_MO_50HZ_V2"},
    {26,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=BASIC_QUALITY; flat_mode=VIDEO "
          "then easy_framing without FULL_FRAME"},
    {27,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=BASIC_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO "
          "then video_fov without ARCASCAPE; easy_mode_speed only LB_8X_ULTRA_SLO_MO_V2,LB_4X_SUPER_SLO_MO_V2,"
          "LB_2X_SLO_MO_V2,LB_1X_SPEED_LOW_LIGHT_V2,LB_8X_ULTRA_SLO_MO_50HZ_V2,LB_4X_SUPER_SLO_MO_50HZ_V2,"
          "LB_2X_SLO_MO_50HZ_V2,LB_1X_SPEED_LOW_LIGHT_50HZ_V2"},
    {28,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=BASIC_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; easy_mode_speed=LB_4X_SUPER_SLO_MO_V2,LB_2X_SLO_MO_V2,LB_1X_SPEED_LOW_LIGHT_V2,"
          "LB_4X_SUPER_SLO_MO_50HZ_V2,LB_2X_SLO_MO_50HZ_V2,LB_1X_SPEED_LOW_LIGHT_50HZ_V2 "
          "then video_fov without LINEAR_PLUS_HORIZON_LEVELING"},
    {29,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=BASIC_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; easy_mode_speed=LB_8X_ULTRA_SLO_MO_V2,LB_8X_ULTRA_SLO_MO_50HZ_V2 "
          "then video_fov without ORBISCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {30,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=BASIC_QUALITY; easy_framing=WIDESCREEN; "
          "flat_mode=VIDEO; video_fov=ORBISCAPE "
          "then easy_mode_speed without LB_8X_ULTRA_SLO_MO_V2,LB_8X_ULTRA_SLO_MO_50HZ_V2"},
    {31,  "addon_lens_status=OFF; ux_mode=EASY; easy_video_preset=BASIC_QUALITY; easy_framing=VERTICAL; "
          "flat_mode=VIDEO "
          "then video_fov only WIDE; easy_mode_speed only MOBILE_LB_2X_SLO_MO_V2,MOBILE_LB_1X_SPEED_LOW_LIGHT_V2,"
          "MOBILE_LB_2X_SLO_MO_50HZ_V2,MOBILE_LB_1X_SPEED_LOW_LIGHT_50HZ_V2"},
    {32,  "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_1_0; ux_mode=EASY; flat_mode=VIDEO "
          "then easy_framing only WIDESCREEN; video_fov only WIDE,MAX_ORBISCAPE; "
          "easy_mode_speed only 1X_SPEED_LOW_LIGHT_2_7K_V2,1X_SPEED_LOW_LIGHT_2_7K_50HZ_V2,2X_SLO_MO_2_7K_V2,"
          "2X_SLO_MO_2_7K_50HZ_V2"},
    {33,  "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; ux_mode=EASY; flat_mode=VIDEO "
          "then easy_framing without FULL_FRAME; video_fov only WIDE,MAX_ORBISCAPE,MAX_ARCASCAPE"},
    {34,  "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; ux_mode=EASY; flat_mode=VIDEO; "
          "easy_framing=WIDESCREEN "
          "then easy_mode_speed only 1X_SPEED_LOW_LIGHT_4K_V2,1X_SPEED_LOW_LIGHT_4K_50HZ_V2,2X_SLO_MO_4K_V2,"
          "2X_SLO_MO_4K_50HZ_V2,LB_4X_SUPER_SLO_MO_V2,LB_4X_SUPER_SLO_MO_50HZ_V2"},
    {35,  "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; ux_mode=EASY; flat_mode=VIDEO; "
          "easy_framing=WIDESCREEN; easy_mode_speed=LB_4X_SUPER_SLO_MO_V2,LB_4X_SUPER_SLO_MO_50HZ_V2 "
          "then video_fov without MAX_ARCASCAPE"},
    {36,  "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; ux_mode=EASY; flat_mode=VIDEO; "
          "easy_framing=WIDESCREEN; video_fov=MAX_ARCASCAPE "
          "then easy_mode_speed without LB_4X_SUPER_SLO_MO_V2,LB_4X_SUPER_SLO_MO_50HZ_V2"},
    {37,  "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; ux_mode=EASY; flat_mode=VIDEO; "
          "easy_framing=VERTICAL "
          "then easy_mode_speed only MOBILE_1X_SPEED_LOW_LIGHT_V2,MOBILE_1X_SPEED_LOW_LIGHT_50HZ_V2,"
          "MOBILE_2X_SLO_MO_V2,MOBILE_2X_SLO_MO_50HZ_V2; video_fov only WIDE,MAX_ORBISCAPE"},

    // Add-on lens in video
    {38,  "addon_lens_status=ON; flat_mode=VIDEO; max_glidara=OFF then horizon_lock off"},
    {39,  "addon_lens_active=WIDE_OPTIC_1_0; addon_lens_status=ON; ux_mode=PRO; flat_mode=VIDEO "
          "then video_resolution only 2_7K,1080,2_7K_4BY3_V2; video_aspect_ratio only 16BY9,4BY3; "
          "video_fov without LINEAR,MAX_ARCASCAPE; max_glidara without AUTO_BOOST"},
    {40,  "addon_lens_active=WIDE_OPTIC_1_0; addon_lens_status=ON; flat_mode=VIDEO; video_resolution=2_7K "
          "then video_fps without 240,200,120,100"},
    {41,  "addon_lens_active=WIDE_OPTIC_1_0; addon_lens_status=ON; flat_mode=VIDEO; video_resolution=2_7K_4BY3_V2 "
          "then video_fps only 60,50,30,25,24"},
    {42,  "addon_lens_active=WIDE_OPTIC_1_0; addon_lens_status=ON; flat_mode=VIDEO; video_resolution=1080 "
          "then video_fps without 240,200,120,100"},
    {43,  "addon_lens_active=WIDE_OPTIC_2_0; addon_lens_status=ON; flat_mode=VIDEO; ux_mode=PRO "
          "then video_resolution only 4K,1080,4K_4BY3,1080_9BY16_V2,4K_9BY16_V2; video_aspect_ratio only 16BY9,9BY16,"
          "4BY3"},
    {44,  "addon_lens_active=WIDE_OPTIC_2_0; addon_lens_status=ON; flat_mode=VIDEO; ux_mode=PRO; "
          "video_aspect_ratio=9BY16 "
          "then max_glidara without AUTO_BOOST"},
    {45,  "addon_lens_active=WIDE_OPTIC_2_0; addon_lens_status=ON; ux_mode=PRO; flat_mode=VIDEO; "
          "video_resolution=4K_9BY16_V2 "
          "then video_fps without 240,200,120,100,24; video_fov without MAX_ARCASCAPE"},
    {46,  "addon_lens_active=WIDE_OPTIC_2_0; addon_lens_status=ON; flat_mode=VIDEO; video_resolution=4K "
          "then video_fps without 240,200,120,100"},
    {47,  "addon_lens_active=WIDE_OPTIC_2_0; addon_lens_status=ON; flat_mode=VIDEO; video_resolution=4K_4BY3 "
          "then video_fps without 240,200,120,100; video_fov without MAX_ARCASCAPE"},
    {48,  "addon_lens_active=WIDE_OPTIC_2_0; addon_lens_status=ON; flat_mode=VIDEO; video_resolution=1080 "
          "then video_fps without 240,200; video_fov without MAX_ARCASCAPE"},
    {49,  "addon_lens_active=WIDE_OPTIC_2_0; addon_lens_status=ON; flat_mode=VIDEO; video_resolution=1080_9BY16_V2 "
          "then video_fps without 240,200,120,100,24; video_fov without MAX_ARCASCAPE"},

    // Video profiles
    {50,  "video_bit_depth=8BIT then video_profile without 10_BIT_LOG"},
    {51,  "addon_lens_status=OFF; video_profile=10_BIT_LOG; flat_mode=VIDEO "
          "then vellix_color only LOG; video_aspect_ratio only 16BY9,8BY7; video_resolution only 5_3K,4K,"
          "5_3K_8BY7_V2,4K_8BY7_V2; video_vellix_iso only 100,200,400,800,1600; video_vellix_iso_min only 100,200,"
          "400,800,1600"},
    {52,  "addon_lens_status=OFF; ux_mode=PRO; video_profile=10_BIT_LOG; flat_mode=VIDEO; video_resolution=5_3K; "
          "video_fps=30,25,24 "
          "then video_fov without LINEAR_PLUS_HORIZON_LEVELING"},
    {53,  "addon_lens_status=OFF; ux_mode=PRO; video_profile=10_BIT_LOG; flat_mode=VIDEO; video_resolution=5_3K; "
          "video_fps=60,50 "
          "then video_fov without ARCASCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {54,  "addon_lens_status=OFF; ux_mode=PRO; video_profile=HDR; flat_mode=VIDEO "
          "then vellix_color only VIBRANT,NATURAL; video_aspect_ratio only 16BY9,8BY7; video_resolution only 5_3K,4K,"
          "4K_8BY7_V2; video_exposure_time off; vellix_ev off; video_vellix_iso off; video_vellix_iso_min off"},
    {55,  "addon_lens_status=OFF; ux_mode=PRO; video_profile=HDR; flat_mode=VIDEO; video_resolution=5_3K; video_fps=30,"
          "25,24 "
          "then video_fov without ARCASCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {56,  "addon_lens_status=OFF; ux_mode=PRO; video_profile=HDR; flat_mode=VIDEO; video_resolution=5_3K,4K_8BY7_V2 "
          "then video_fps without 60,50"},
    {57,  "addon_lens_status=OFF; ux_mode=PRO; video_profile=HDR; flat_mode=VIDEO; video_resolution=4K "
          "then video_fps without 120,100"},
    {58,  "addon_lens_status=OFF; ux_mode=PRO; video_profile=HDR; flat_mode=VIDEO; video_resolution=4K; video_fps=60,"
          "50 "
          "then video_fov only LINEAR,WIDE"},
    {59,  "addon_lens_status=OFF; ux_mode=PRO; video_profile=HDR; flat_mode=VIDEO; video_resolution=4K; video_fps=60,"
          "50 "
          "then video_fov without ORBISCAPE"},
    {60,  "video_profile=STANDARD then vellix_color without LOG"},

    // Stabilisation and pre-record; what belongs to video alone
    {61,  "video_fov=LINEAR_PLUS_HORIZON_LEVELING,LINEAR_PLUS_HORIZON_LOCK then video_eis only ON,AUTO_BOOST"},
    {62,  "video_retrocap_length!=OFF then capture_delay off; audio_vellix_option off"},
    {63,  "flat_mode=VIDEO "
          "then onscreen_shortcuts_* only OFF,SETTINGS,LENS,GLIDARA,HORIZON_LOCK,SCHEDULED_CAPTURE,DURATION,RETROCAP,"
          "TIMER,ZOOM,VIDEO_SHUTTER,EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR,RAW_AUDIO,WIND,SOUND_CAGE"},
    {64,  "addon_lens_status=OFF; flat_mode=VIDEO; video_eis=OFF "
          "then video_fov without LINEAR_PLUS_HORIZON_LEVELING,LINEAR_PLUS_HORIZON_LOCK"},
    {65,  "flat_mode=TIME_LAPSE_VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,"
          "RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then video_retrocap_length off; video_exposure_time off; video_profile off; easy_mode_speed off; "
          "audio_vellix_option off; sound_cage_audio off; video_vellix_iso without AUTO; "
          "video_vellix_iso_min without AUTO; vellix_color without LOG"},
    {66,  "flat_mode=VIDEO,LOOPING then current_flat_mode only VIDEO,LOOPING"},

    // Shutter speed and frame rate
    {67,  "flat_mode=VIDEO; video_exposure_time!=AUTO then vellix_ev off"},
    {68,  "video_fps=240 then video_exposure_time only AUTO,1_240,1_480,1_960,1_1920,1_3840"},
    {69,  "video_fps=200 then video_exposure_time only AUTO,1_200,1_400,1_800,1_1600,1_3200"},
    {70,  "video_fps=120 then video_exposure_time only AUTO,1_120,1_240,1_480,1_960,1_1920,1_3840"},
    {71,  "video_fps=100 then video_exposure_time only AUTO,1_100,1_200,1_400,1_800,1_1600,1_3200"},
    {72,  "video_fps=60 then video_exposure_time only AUTO,1_60,1_120,1_240,1_480,1_960,1_1920,1_3840"},
    {73,  "video_fps=50 then video_exposure_time only AUTO,1_50,1_100,1_200,1_400,1_800,1_1600,1_3200"},
    {74,  "video_fps=30 then video_exposure_time only AUTO,1_30,1_60,1_120,1_240,1_480,1_960,1_1920,1_3840"},
    {75,  "video_fps=25 then video_exposure_time only AUTO,1_25,1_50,1_100,1_200,1_400,1_800,1_1600,1_3200"},
    {76,  "video_fps=24 then video_exposure_time only AUTO,1_24,1_48,1_96,1_192,1_384,1_768,1_1536,1_3072"},

    // Aspect ratio, resolution, frame rate and field of view
    {77,  "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,RUSH_LAPSE_VIDEO; video_aspect_ratio=16BY9 "
          "then video_resolution only 5_3K,4K,2_7K,1080"},
    {78,  "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,RUSH_LAPSE_VIDEO; video_aspect_ratio=4BY3 "
          "then video_resolution only 2_7K_4BY3_V2,4K_4BY3"},
    {79,  "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,RUSH_LAPSE_VIDEO; video_aspect_ratio=8BY7 "
          "then video_resolution only 5_3K_8BY7_V2,4K_8BY7_V2; video_fov only LINEAR,WIDE; video_eis only ON,OFF; "
          "video_fps only 60,50,30,25,24"},
    {80,  "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,RUSH_LAPSE_VIDEO; video_aspect_ratio=9BY16 "
          "then video_resolution only 4K_9BY16_V2,1080_9BY16_V2; video_fov only WIDE,MAX_ORBISCAPE; "
          "video_eis only ON,OFF; video_fps only 60,50,30,25,24"},
    {81,  "video_resolution!=5_3K,4K then video_fov without ARCASCAPE"},
    {82,  "addon_lens_status=OFF; ux_mode=PRO; flat_mode=VIDEO "
          "then video_resolution only 5_3K,4K,2_7K,1080,2_7K_4BY3_V2,5_3K_8BY7_V2,4K_8BY7_V2,4K_9BY16_V2,"
          "1080_9BY16_V2"},
    {83,  "video_resolution=5_3K then video_fps without 240,200,120,100"},
    {84,  "video_resolution=5_3K; video_fps!=30,25,24; ux_mode=PRO then video_fov without ARCASCAPE"},
    {85,  "video_resolution=5_3K; video_fov=ARCASCAPE then video_fps only 30,25,24"},
    {86,  "addon_lens_status=OFF; ux_mode=PRO; video_resolution=5_3K; video_fps=60,50 "
          "then video_fov without LINEAR_PLUS_HORIZON_LOCK"},
    {87,  "addon_lens_status=OFF; video_profile=STANDARD; video_resolution=5_3K; video_fps=30,25,24 "
          "then video_fov without LINEAR_PLUS_HORIZON_LEVELING"},
    {88,  "video_resolution=5_3K_8BY7_V2 then video_fps only 30,25,24"},
    {89,  "video_resolution=4K then video_fps without 240,200"},
    {90,  "video_resolution=4K; video_fov=ARCASCAPE then video_fps without 120,100"},
    {91,  "addon_lens_status=OFF; ux_mode=PRO; flat_mode=VIDEO; video_resolution=4K; video_fps=120,100 "
          "then video_fov without ARCASCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {92,  "addon_lens_status=OFF; flat_mode=VIDEO; video_resolution=4K; video_fps=60,50,30,25,24 "
          "then video_fov without LINEAR_PLUS_HORIZON_LEVELING"},
    {93,  "video_resolution=4K_8BY7_V2 then video_fps only 60,50,30,25,24"},
    {94,  "video_resolution=4K_9BY16_V2 then video_fps only 60,50,30,25"},
    {95,  "addon_lens_status=OFF; video_resolution=2_7K "
          "then video_fps only 240,200; video_fov without ORBISCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {96,  "addon_lens_status=OFF; flat_mode=VIDEO; video_resolution=2_7K_4BY3_V2 "
          "then video_fps only 120,100,60,50; video_fov without ORBISCAPE,LINEAR_PLUS_HORIZON_LEVELING"},
    {97,  "addon_lens_status=OFF; video_resolution=1080; video_fps=240,200 "
          "then video_fov without ORBISCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {98,  "addon_lens_status=OFF; video_resolution=1080; video_fps=120,100 then video_fov without ARCASCAPE"},
    {99,  "addon_lens_status=OFF; video_resolution=1080; video_fps=120,100,60,50,30,25,24 "
          "then video_fov without LINEAR_PLUS_HORIZON_LEVELING"},
    {100, "video_resolution=1080_9BY16_V2 then video_fps only 60,50,30,25"},

    // Looping
    {101, "flat_mode=LOOPING "
          "then onscreen_shortcuts_* only OFF,SETTINGS,LENS,LOOPING_INTERVAL,GLIDARA,SCHEDULED_CAPTURE,TIMER,ZOOM; "
          "vellix off; vellix_color off; vellix_ev off; vellix_sharpness off; vellix_white_balance off; "
          "video_fov without ARCASCAPE; video_resolution only 1080,4K; video_aspect_ratio only 16BY9"},
    {102, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,"
          "RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then video_looping off"},
    {103, "flat_mode=LOOPING; video_resolution=4K "
          "then video_fps only 30,25; video_fov without LINEAR_PLUS_HORIZON_LEVELING"},
    {104, "flat_mode=LOOPING; video_resolution=1080 "
          "then video_fps only 120,100,60,50; video_fov without LINEAR_PLUS_HORIZON_LEVELING"},

    // What stills and lapses do without
    {105, "flat_mode=TIME_LAPSE_VIDEO,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,"
          "RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then max_glidara off; video_eis off; video_fps off"},
    {106, "flat_mode=TIME_LAPSE_VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,"
          "NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then wind_option off; horizon_lock off"},
    {107, "flat_mode=LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,NIGHT_LAPSE_VIDEO,"
          "VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then video_short_clip_length off; video_vellix_iso off; video_vellix_iso_min off"},
    {108, "flat_mode=SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO "
          "then video_fov off; video_resolution off; video_aspect_ratio off"},

    // Easy photo, and the add-on lens in photo
    {109, "ux_mode=EASY; flat_mode=SINGLE_PHOTO,NIGHT_PHOTO "
          "then easy_framing off; easy_time_lapse_preset off; easy_video_preset off"},
    {110, "addon_lens_status=OFF; ux_mode=EASY; flat_mode=SINGLE_PHOTO,NIGHT_PHOTO "
          "then photo_resolution only LINEAR,WIDE; photo_horizon_control off"},
    {111, "addon_lens_status=ON; ux_mode=EASY; flat_mode=SINGLE_PHOTO then photo_resolution without LINEAR"},
    {112, "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_1_0; flat_mode=SINGLE_PHOTO "
          "then photo_single_interval off; photo_interval_duration off; photo_resolution without LINEAR"},

    // Photo output and interval
    {113, "photo_output=RAW "
          "then photo_resolution only WIDE; photo_single_interval only OFF,3_SECONDS,5_SECONDS,10_SECONDS,30_SECONDS,"
          "60_SECONDS,120_SECONDS"},
    {114, "photo_output=HDR "
          "then photo_single_interval only OFF,5_SECONDS,10_SECONDS,30_SECONDS,60_SECONDS,120_SECONDS"},
    {115, "photo_output=LUMORA,HDR "
          "then photo_vellix_iso_min off; photo_vellix_iso off; photo_vellix_exposure_time off; vellix_ev off; "
          "vellix_color only VIBRANT"},
    {116, "flat_mode=VIDEO,LOOPING,TIME_LAPSE_VIDEO,NIGHT_PHOTO,RUSH_LAPSE_VIDEO,BURST_PHOTO,NIGHT_LAPSE_PHOTO,"
          "TIME_LAPSE_PHOTO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then photo_horizon_control off; photo_single_interval off; photo_interval_duration off; "
          "photo_vellix_exposure_time off"},
    {117, "flat_mode=SINGLE_PHOTO; photo_single_interval=OFF then photo_interval_duration off"},
    {118, "photo_single_interval=30_SECONDS "
          "then photo_interval_duration only OFF,1_MINUTE,5_MINUTES,15_MINUTES,30_MINUTES,1_HOUR,2_HOURS"},
    {119, "photo_single_interval=60_SECONDS,120_SECONDS "
          "then photo_interval_duration only OFF,5_MINUTES,15_MINUTES,30_MINUTES,1_HOUR,2_HOURS"},
    {120, "flat_mode=SINGLE_PHOTO "
          "then onscreen_shortcuts_* only OFF,SETTINGS,LENS,OUTPUT,PHOTO_INTERVAL,HORIZON_LOCK,SCHEDULED_CAPTURE,"
          "DURATION,TIMER,ZOOM,VIDEO_SHUTTER,EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR"},

    // What belongs to photo and burst alone
    {121, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,RUSH_LAPSE_VIDEO,"
          "NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then photo_resolution off"},
    {122, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,RUSH_LAPSE_VIDEO,"
          "NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then photo_output off; photo_vellix_iso_min off; photo_vellix_iso off; easy_photo_preset off"},
    {123, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,"
          "RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then multi_shot_burst_rate off"},

    // Burst and night photo
    {124, "flat_mode=BURST_PHOTO "
          "then onscreen_shortcuts_* only OFF,SETTINGS,LENS,BURST_RATE,OUTPUT,SCHEDULED_CAPTURE,TIMER,ZOOM,EV_COMP,"
          "WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR"},
    {125, "flat_mode=NIGHT_PHOTO "
          "then onscreen_shortcuts_* only OFF,SETTINGS,LENS,SHUTTER,OUTPUT,SCHEDULED_CAPTURE,TIMER,ZOOM,EV_COMP,"
          "WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR"},
    {126, "flat_mode=NIGHT_PHOTO then photo_output without LUMORA,HDR"},
    {127, "flat_mode=NIGHT_PHOTO; photo_exposure_time!=AUTO then vellix_ev off"},
    {128, "flat_mode=NIGHT_PHOTO; photo_exposure_time=AUTO "
          "then photo_vellix_iso without 1600,3200; photo_vellix_iso_min without 1600,3200"},
    {129, "flat_mode=NIGHT_PHOTO; photo_exposure_time=30_SECONDS "
          "then photo_vellix_iso without 3200; photo_vellix_iso_min without 3200"},

    // Photo modes
    {130, "flat_mode=VIDEO,LOOPING,TIME_LAPSE_VIDEO,RUSH_LAPSE_VIDEO,SINGLE_PHOTO,BURST_PHOTO,NIGHT_LAPSE_PHOTO,"
          "TIME_LAPSE_PHOTO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then photo_exposure_time off"},
    {131, "flat_mode=SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO "
          "then current_flat_mode only SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO"},

    // Rush Lapse video and the lapse scenes
    {132, "ux_mode=EASY; flat_mode=RUSH_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then video_fov only LINEAR,WIDE,LINEAR_PLUS_HORIZON_LOCK,MAX_ORBISCAPE; easy_video_preset off; "
          "capture_delay off"},
    {133, "addon_lens_status=OFF; ux_mode=EASY; flat_mode=RUSH_LAPSE_VIDEO then horizon_lock off"},
    {134, "ux_mode=EASY; flat_mode=VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then easy_framing without VERTICAL; video_fov only WIDE"},
    {135, "addon_lens_status=OFF; ux_mode=EASY; easy_framing=VERTICAL then video_fov only WIDE"},
    {136, "addon_lens_status=OFF; ux_mode=EASY; flat_mode=RUSH_LAPSE_VIDEO; easy_framing=FULL_FRAME "
          "then video_fov only WIDE"},
    {137, "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_1_0; ux_mode=EASY; flat_mode=RUSH_LAPSE_VIDEO "
          "then easy_framing only WIDESCREEN; video_fov only WIDE,MAX_ORBISCAPE; easy_time_lapse_preset off"},
    {138, "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; ux_mode=EASY; flat_mode=RUSH_LAPSE_VIDEO "
          "then easy_framing only WIDESCREEN; video_fov only WIDE,MAX_ORBISCAPE"},
    {139, "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; ux_mode=EASY; flat_mode=VIDEO_STAR_TRAIL,"
          "VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then easy_framing only WIDESCREEN; video_fov only WIDE"},
    {140, "addon_lens_status=ON; flat_mode=RUSH_LAPSE_VIDEO then wind_option off; onscreen_shortcuts_* without WIND"},
    {141, "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_1_0; flat_mode=RUSH_LAPSE_VIDEO "
          "then video_resolution only 1080,2_7K_4BY3_V2,2_7K; video_fov only WIDE,MAX_ORBISCAPE; "
          "video_aspect_ratio only 4BY3,16BY9"},
    {142, "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; flat_mode=RUSH_LAPSE_VIDEO "
          "then video_resolution only 1080,4K_4BY3,4K; video_fov only LINEAR,WIDE,MAX_ORBISCAPE,MAX_ARCASCAPE; "
          "video_aspect_ratio only 4BY3,16BY9"},
    {143, "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; flat_mode=RUSH_LAPSE_VIDEO; video_resolution=1080 "
          "then video_fov without MAX_ARCASCAPE"},
    {144, "addon_lens_status=ON; addon_lens_active=WIDE_OPTIC_2_0; flat_mode=VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,"
          "VIDEO_LIGHT_TRAIL "
          "then video_resolution only 4K,4K_4BY3; nlv_aspect_ratio only 4BY3,16BY9"},
    {145, "multi_shot_output=RAW then multi_shot_resolution only WIDE"},
    {146, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,"
          "NIGHT_LAPSE_PHOTO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then video_rushlapse_speed off; mode_button off"},
    {147, "flat_mode=RUSH_LAPSE_VIDEO "
          "then onscreen_shortcuts_* only OFF,SETTINGS,LENS,RUSHLAPSE_SPEED,HORIZON_LOCK,SCHEDULED_CAPTURE,DURATION,"
          "TIMER,ZOOM,EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR,WIND"},
    {148, "addon_lens_status=OFF; flat_mode=RUSH_LAPSE_VIDEO "
          "then video_fps off; video_aspect_ratio only 9BY16,16BY9,8BY7; video_fov without ORBISCAPE,ARCASCAPE,"
          "LINEAR_PLUS_HORIZON_LEVELING; video_resolution only 5_3K,4K,1080,5_3K_8BY7_V2,4K_8BY7_V2,1080_9BY16_V2,"
          "4K_9BY16_V2"},

    // Time lapse and night lapse
    {149, "flat_mode=TIME_LAPSE_VIDEO,RUSH_LAPSE_VIDEO "
          "then video_vellix_iso without 6400; video_vellix_iso_min without 6400"},
    {150, "flat_mode=TIME_LAPSE_PHOTO "
          "then onscreen_shortcuts_* only OFF,SETTINGS,LENS,INTERVAL,OUTPUT,SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,"
          "EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR"},
    {151, "flat_mode=TIME_LAPSE_PHOTO; multi_shot_output=RAW "
          "then multi_shot_timelapse_rate without 0_5_SECONDS,1_SECOND,2_SECONDS"},
    {152, "flat_mode=VIDEO,LOOPING,TIME_LAPSE_VIDEO,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,NIGHT_LAPSE_PHOTO,"
          "RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then multi_shot_timelapse_rate off"},
    {153, "flat_mode=TIME_LAPSE_PHOTO then photo_output only STANDARD"},
    {154, "flat_mode=VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,"
          "RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then video_timelapse_rate off"},
    {155, "flat_mode=VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,"
          "RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL; "
          "video_aspect_ratio=8BY7 "
          "then video_fov without LINEAR"},
    {156, "flat_mode=TIME_LAPSE_VIDEO "
          "then onscreen_shortcuts_* only OFF,SETTINGS,LENS,INTERVAL,SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,EV_COMP,"
          "WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR; video_aspect_ratio only 16BY9,8BY7"},
    {157, "flat_mode=TIME_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO "
          "then video_fps off; video_fov only LINEAR,WIDE; video_resolution only 5_3K,4K,1080,5_3K_8BY7_V2,4K_8BY7_V2"},
    {158, "flat_mode=NIGHT_LAPSE_VIDEO "
          "then video_fps off; video_aspect_ratio off; multi_shot_exposure_time without 0_5_SECONDS,1_SECOND; "
          "onscreen_shortcuts_* only OFF,SETTINGS,LENS,INTERVAL,SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,EV_COMP,"
          "WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR; multi_shot_vellix_iso without 1600,3200"},
    {159, "flat_mode=NIGHT_LAPSE_VIDEO; multi_shot_exposure_time!=AUTO then vellix_ev off"},

    // Night lapse and the lapse scenes: aspect ratio, exposure, shortcuts
    {160, "flat_mode=NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL; nlv_aspect_ratio=16BY9 "
          "then video_resolution only 5_3K,4K,1080"},
    {161, "flat_mode=NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL; nlv_aspect_ratio=4BY3 "
          "then video_resolution only 4K_4BY3"},
    {162, "flat_mode=NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL; nlv_aspect_ratio=8BY7 "
          "then video_resolution only 5_3K_8BY7_V2,4K_8BY7_V2"},
    {163, "flat_mode=NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL; addon_lens_status=OFF "
          "then nlv_aspect_ratio only 16BY9,8BY7"},
    {164, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,"
          "NIGHT_LAPSE_PHOTO,RUSH_LAPSE_VIDEO "
          "then multi_shot_bitrate off; nlv_aspect_ratio off"},
    {165, "flat_mode=NIGHT_LAPSE_PHOTO "
          "then multi_shot_exposure_time without 0_5_SECONDS,1_SECOND; multi_shot_vellix_iso without 1600,3200; "
          "onscreen_shortcuts_* only OFF,SETTINGS,LENS,INTERVAL,SHUTTER,OUTPUT,SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,"
          "EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR"},
    {166, "flat_mode=NIGHT_LAPSE_PHOTO; multi_shot_exposure_time!=AUTO "
          "then vellix_white_balance without AUTO; vellix_ev off"},
    {167, "flat_mode=NIGHT_LAPSE_PHOTO; multi_shot_exposure_time=30_SECONDS "
          "then multi_shot_vellix_iso without 3200; multi_shot_vellix_iso_min without 3200"},
    {168, "flat_mode=NIGHT_LAPSE_PHOTO; multi_shot_exposure_time=2_SECONDS "
          "then multi_shot_nightlapse_rate without 4_SECONDS"},
    {169, "flat_mode=VIDEO_STAR_TRAIL "
          "then vellix_white_balance only 3200K; multi_shot_exposure_time only 0_5_SECONDS,1_SECOND,2_SECONDS,"
          "5_SECONDS,10_SECONDS,30_SECONDS"},
    {170, "flat_mode=VIDEO_LIGHT_PAINTING then multi_shot_exposure_time only 0_5_SECONDS,1_SECOND,2_SECONDS"},
    {171, "flat_mode=VIDEO_LIGHT_TRAIL "
          "then multi_shot_exposure_time only 0_5_SECONDS,1_SECOND,2_SECONDS,5_SECONDS,10_SECONDS,30_SECONDS"},
    {172, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,"
          "NIGHT_LAPSE_PHOTO,RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO "
          "then multi_shot_trail_length off"},
    {173, "flat_mode=VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then video_fps off; video_aspect_ratio off; vellix_ev off; multi_shot_nightlapse_rate off; "
          "video_fov only WIDE; multi_shot_bitrate only HIGH; vellix_color only NATURAL; "
          "vellix_sharpness only MEDIUM; onscreen_shortcuts_* only OFF,SETTINGS,LENS,INTERVAL,SHUTTER,HORIZON_LOCK,"
          "SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR,TRAIL_LENGTH"},
    {174, "addon_lens_status=OFF; flat_mode=VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then video_resolution only 5_3K,4K,5_3K_8BY7_V2,4K_8BY7_V2"},

    // Formats of the lapses, and what other modes do without
    {175, "flat_mode=TIME_LAPSE_VIDEO,TIME_LAPSE_PHOTO then format only TIME_LAPSE_VIDEO,TIME_LAPSE_PHOTO"},
    {176, "flat_mode=NIGHT_LAPSE_PHOTO,NIGHT_LAPSE_VIDEO then format only NIGHT_LAPSE_VIDEO,NIGHT_LAPSE_PHOTO"},
    {177, "flat_mode=NIGHT_LAPSE_PHOTO,NIGHT_LAPSE_VIDEO; multi_shot_exposure_time!=AUTO then vellix_ev off"},
    {178, "flat_mode=NIGHT_LAPSE_PHOTO,NIGHT_LAPSE_VIDEO; multi_shot_exposure_time=AUTO "
          "then multi_shot_vellix_iso_min without 1600,3200"},
    {179, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,"
          "VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then multi_shot_output off; multi_shot_resolution off"},
    {180, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,TIME_LAPSE_PHOTO,"
          "RUSH_LAPSE_VIDEO "
          "then multi_shot_nightlapse_rate off; multi_shot_exposure_time off"},

    // Night-lapse rate against exposure time
    {181, "multi_shot_exposure_time=30_SECONDS "
          "then multi_shot_nightlapse_rate without 4_SECONDS,5_SECONDS,10_SECONDS,15_SECONDS,20_SECONDS,30_SECONDS; "
          "multi_shot_short_clip_length without 15_SECONDS"},
    {182, "multi_shot_exposure_time=20_SECONDS "
          "then multi_shot_nightlapse_rate without 4_SECONDS,5_SECONDS,10_SECONDS,15_SECONDS,20_SECONDS"},
    {183, "multi_shot_exposure_time=15_SECONDS "
          "then multi_shot_nightlapse_rate without 4_SECONDS,5_SECONDS,10_SECONDS,15_SECONDS"},
    {184, "multi_shot_exposure_time=10_SECONDS then multi_shot_nightlapse_rate without 4_SECONDS,5_SECONDS,10_SECONDS"},
    {185, "multi_shot_exposure_time=5_SECONDS then multi_shot_nightlapse_rate without 4_SECONDS,5_SECONDS"},

    // What belongs to some lapses alone
    {186, "flat_mode=VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,RUSH_LAPSE_VIDEO,VIDEO_STAR_TRAIL,"
          "VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL "
          "then format off"},
    {187, "flat_mode=TIME_LAPSE_VIDEO,RUSH_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,"
          "VIDEO_LIGHT_TRAIL "
          "then current_flat_mode only RUSH_LAPSE_VIDEO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,TIME_LAPSE_VIDEO,"
          "NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL"},
    {188, "flat_mode=NIGHT_LAPSE_PHOTO,NIGHT_LAPSE_VIDEO,VIDEO_STAR_TRAIL,VIDEO_LIGHT_TRAIL; "
          "multi_shot_exposure_time=30_SECONDS "
          "then multi_shot_vellix_iso without 3200; multi_shot_vellix_iso_min without 3200"},
    {189, "flat_mode=VIDEO,LOOPING,TIME_LAPSE_VIDEO,SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO,RUSH_LAPSE_VIDEO "
          "then multi_shot_short_clip_length off"},
    {190, "flat_mode=VIDEO,TIME_LAPSE_VIDEO,LOOPING,SINGLE_PHOTO,NIGHT_PHOTO,RUSH_LAPSE_VIDEO "
          "then multi_shot_vellix_iso_min off; multi_shot_vellix_iso off"},

    // Exposure selection of the live view
    {191, "liveview_exposure_select_type=1 "
          "then video_exposure_time off; photo_exposure_time only AUTO; photo_vellix_exposure_time off; "
          "multi_shot_exposure_time only AUTO"},
    {192, "liveview_exposure_select_type=2 "
          "then video_vellix_iso off; video_vellix_iso_min off; video_exposure_time off; photo_vellix_iso off; "
          "photo_vellix_iso_min off; photo_vellix_exposure_time off; photo_exposure_time only AUTO; "
          "multi_shot_vellix_iso off; multi_shot_vellix_iso_min off; multi_shot_exposure_time only AUTO"},

    // Microphones and audio accessories
    {193, "system_acc_mic_status=0; system_sound_cage_mic_status=0,2 then acc_mic_mode off"},
    {194, "system_acc_mic_status=2,3 then sound_cage_audio off"},
    {195, "system_acc_mic_status=3 then wind_option off"},
    {196, "system_sound_cage_mic_status=0 then sound_cage_audio off"},
    {197, "system_sound_cage_mic_status=3 then sound_cage_audio off; wind_option off"},
    {198, "system_sound_cage_status=5 then front_lcd_display_mode without ACTUAL_VIEW,FULL_SCREEN"},

    // Add-on lens status
    {199, "addon_lens_active=NONE then addon_lens_status off"},
    {200, "addon_lens_status=OFF "
          "then photo_horizon_control off; horizon_lock off; video_fov without MAX_ORBISCAPE,MAX_ARCASCAPE; "
          "photo_resolution without MAX_ORBISCAPE; easy_time_lapse_preset without MAX_LAPSE_MODE_RUSH_LAPSE,"
          "MAX_LAPSE_MODE_STAR_TRAILS,MAX_LAPSE_MODE_LIGHT_PAINTING,MAX_LAPSE_MODE_VEHICLE_LIGHTS; max_glidara off; "
          "onscreen_shortcuts_* without HORIZON_LOCK"},
    {201, "addon_lens_status=ON "
          "then video_fov only LINEAR,WIDE,MAX_ORBISCAPE,MAX_ARCASCAPE; multi_shot_resolution only WIDE; "
          "video_eis off; photo_output off; video_profile off; easy_video_preset off; mode_button off; "
          "easy_photo_preset off; easy_time_lapse_preset without LAPSE_MODE_RUSH_LAPSE,LAPSE_MODE_STAR_TRAILS,"
          "LAPSE_MODE_LIGHT_PAINTING,LAPSE_MODE_VEHICLE_LIGHTS; onscreen_shortcuts_* without OUTPUT,ZOOM"},
};

// clang-format on

static_assert(
    [] {
        unsigned number = 0;
        for (const RuleRow &row : RULE_ROWS) {
            if (row.number != number++) {
                return false;
            }
        }
        return true;
    }(),
    "the rules are numbered from 0 without gaps");

} // namespace zv
