// Which settings and options the sable_knoll generation does not offer in which situation: one rule a row. When all of
// a rule's conditions hold, all its consequences apply. Data for the compiler, which reads and checks it in
// camera_settings_rules.cpp. Internal to the library.
//
// Semicolons separate the conditions, and behind "then" the consequences; commas separate the values of one. A plain
// number is a setting's id and its values are keys of its options; a number with an S is a status id and its values are
// numbers. S89 is the flat mode.
//
//     S89=12,15              the status is one of these
//     175=EASY,PRO           the setting's option is one of these
//     121!=WIDE,LINEAR       the setting's option is none of these
//
//     164 off                the setting is not offered
//     3 without 240,200      these options are not offered
//     3 only 60,50           no options but these are offered
//     129-132 only OFF,ZOOM  the same for each of four settings
#pragma once

namespace zv {

struct RuleRow {
    unsigned number;
    const char *text;
};

// clang-format off

inline constexpr RuleRow RULE_ROWS[] = {
    // Frame rates and speeds of each mains frequency
    {0,   "134=60_HZ "
          "then 3 only 240,120,60,30,24; 176 only 8X_ULTRA_SLO_MO_V2,4X_SUPER_SLO_MO_V2,2X_SLO_MO_V2,2X_SLO_MO_4K_V2,"
          "2X_SLO_MO_2_7K_V2,1X_SPEED_LOW_LIGHT_V2,1X_SPEED_LOW_LIGHT_4K_V2,1X_SPEED_LOW_LIGHT_2_7K_V2,"
          "UNIVERSAL_2X_SLO_MO_V2,UNIVERSAL_1X_SPEED_LOW_LIGHT_V2,MOBILE_2X_SLO_MO_V2,MOBILE_1X_SPEED_LOW_LIGHT_V2,"
          "LB_8X_ULTRA_SLO_MO_V2,LB_4X_SUPER_SLO_MO_V2,LB_2X_SLO_MO_V2,LB_1X_SPEED_LOW_LIGHT_V2,"
          "MOBILE_LB_2X_SLO_MO_V2,MOBILE_LB_1X_SPEED_LOW_LIGHT_V2,UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_V2"},
    {1,   "134=50_HZ "
          "then 3 only 200,100,50,25,24; 176 only 8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_50HZ_V2,2X_SLO_MO_50HZ_V2,"
          "2X_SLO_MO_4K_50HZ_V2,2X_SLO_MO_2_7K_50HZ_V2,1X_SPEED_LOW_LIGHT_50HZ_V2,1X_SPEED_LOW_LIGHT_4K_50HZ_V2,"
          "1X_SPEED_LOW_LIGHT_2_7K_50HZ_V2,UNIVERSAL_2X_SLO_MO_50HZ_V2,UNIVERSAL_1X_SPEED_LOW_LIGHT_50HZ_V2,"
          "MOBILE_2X_SLO_MO_50HZ_V2,MOBILE_1X_SPEED_LOW_LIGHT_50HZ_V2,LB_8X_ULTRA_SLO_MO_50HZ_V2,"
          "LB_4X_SUPER_SLO_MO_50HZ_V2,LB_2X_SLO_MO_50HZ_V2,LB_1X_SPEED_LOW_LIGHT_50HZ_V2,MOBILE_LB_2X_SLO_MO_50HZ_V2,"
          "MOBILE_LB_1X_SPEED_LOW_LIGHT_50HZ_V2,UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_50HZ_V2"},

    // Scheduled capture while a preset is being created; pre-record while a schedule is set
    {2,   "S109=1 then 168 off"},
    {3,   "S108=1 then 167 off"},

    // The settings of each user level
    {4,   "175=EASY "
          "then 164 off; 184 off; 108 off; 192 off; 157 off; 31 off; 37 off; 76 off; 167 off; 2 off; 135 off; 3 off; "
          "156 off; 145 off; 13 off; 102 off; 19 off; 146 off; 125 off; 24 off; 75 off; 139 off; 111 off; 153 off; "
          "149 off; 114 off; 116 off; 118 off; 117 off; 115 off; 168 off; 129-132 off; 148 off"},
    {5,   "175=PRO then 187 off; 193 off; 176 off; 186 off; 191 off"},

    // Easy video: speed, framing and field of view, with and without an add-on lens
    {6,   "175=EASY; S89=12 then 187 off; 105 off"},
    {7,   "190=OFF; 175=EASY; S89=12 then 165 off; 121 without MAX_ORBISCAPE"},
    {8,   "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=WIDESCREEN; S89=12 "
          "then 176 only 8X_ULTRA_SLO_MO_V2,4X_SUPER_SLO_MO_V2,2X_SLO_MO_V2,2X_SLO_MO_4K_V2,1X_SPEED_LOW_LIGHT_V2,"
          "8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_50HZ_V2,2X_SLO_MO_50HZ_V2,2X_SLO_MO_4K_50HZ_V2,"
          "1X_SPEED_LOW_LIGHT_50HZ_V2"},
    {9,   "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=WIDESCREEN; S89=12; 121=LINEAR_PLUS_HORIZON_LOCK "
          "then 176 without 2X_SLO_MO_V2,2X_SLO_MO_50HZ_V2"},
    {10,  "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=WIDESCREEN; S89=12; 121!=ARCASCAPE,LINEAR_PLUS_HORIZON_LOCK "
          "then 176 without 2X_SLO_MO_4K_V2,2X_SLO_MO_4K_50HZ_V2"},
    {11,  "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=WIDESCREEN; S89=12; 176=8X_ULTRA_SLO_MO_V2,"
          "8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,4X_SUPER_SLO_MO_50HZ_V2 "
          "then 121 without LINEAR_PLUS_HORIZON_LOCK"},
    {12,  "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=WIDESCREEN; S89=12; 176=4X_SUPER_SLO_MO_V2,"
          "4X_SUPER_SLO_MO_50HZ_V2 "
          "then 121 without ARCASCAPE"},
    {13,  "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=WIDESCREEN; S89=12; 176=1X_SPEED_LOW_LIGHT_V2,"
          "1X_SPEED_LOW_LIGHT_50HZ_V2,2X_SLO_MO_V2,2X_SLO_MO_50HZ_V2,2X_SLO_MO_4K_V2,2X_SLO_MO_4K_50HZ_V2 "
          "then 121 without LINEAR_PLUS_HORIZON_LEVELING"},
    {14,  "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=WIDESCREEN; S89=12; 121=ARCASCAPE "
          "then 176 without 2X_SLO_MO_V2,2X_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,4X_SUPER_SLO_MO_50HZ_V2,"
          "8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2"},
    {15,  "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=WIDESCREEN; S89=12; 121=ORBISCAPE "
          "then 176 without 8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2"},
    {16,  "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=VERTICAL; S89=12 "
          "then 121 only WIDE; 176 only MOBILE_1X_SPEED_LOW_LIGHT_V2,MOBILE_1X_SPEED_LOW_LIGHT_50HZ_V2,"
          "MOBILE_2X_SLO_MO_V2,MOBILE_2X_SLO_MO_50HZ_V2"},
    {17,  "190=OFF; 175=EASY; 186=HIGHEST_QUALITY; 193=FULL_FRAME; S89=12 "
          "then 121 only WIDE; 176 only UNIVERSAL_1X_SPEED_LOW_LIGHT_V2,UNIVERSAL_1X_SPEED_LOW_LIGHT_50HZ_V2,"
          "UNIVERSAL_2X_SLO_MO_V2,UNIVERSAL_2X_SLO_MO_50HZ_V2"},
    {18,  "S89=12; 190=OFF; 175=EASY; 186=STANDARD_QUALITY; 193=WIDESCREEN "
          "then 176 only 8X_ULTRA_SLO_MO_V2,4X_SUPER_SLO_MO_V2,2X_SLO_MO_4K_V2,1X_SPEED_LOW_LIGHT_4K_V2,"
          "8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_50HZ_V2,2X_SLO_MO_4K_50HZ_V2,1X_SPEED_LOW_LIGHT_4K_50HZ_V2"},
    {19,  "190=OFF; 175=EASY; 186=STANDARD_QUALITY; 193=WIDESCREEN; S89=12; 176=8X_ULTRA_SLO_MO_V2,"
          "8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,4X_SUPER_SLO_MO_50HZ_V2 "
          "then 121 without LINEAR_PLUS_HORIZON_LOCK"},
    {20,  "190=OFF; 175=EASY; 186=STANDARD_QUALITY; 193=WIDESCREEN; S89=12; 176=8X_ULTRA_SLO_MO_V2,"
          "8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,4X_SUPER_SLO_MO_50HZ_V2 "
          "then 121 without ARCASCAPE"},
    {21,  "S89=12; 190=OFF; 175=EASY; 186=STANDARD_QUALITY; 193=WIDESCREEN; 176=1X_SPEED_LOW_LIGHT_4K_V2,"
          "1X_SPEED_LOW_LIGHT_4K_50HZ_V2,2X_SLO_MO_4K_V2,2X_SLO_MO_4K_50HZ_V2 "
          "then 121 without LINEAR_PLUS_HORIZON_LEVELING"},
    {22,  "190=OFF; 175=EASY; 186=STANDARD_QUALITY; 193=WIDESCREEN; S89=12; 121=ARCASCAPE "
          "then 176 without 8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2,4X_SUPER_SLO_MO_V2,4X_SUPER_SLO_MO_50HZ_V2"},
    {23,  "190=OFF; 175=EASY; 186=STANDARD_QUALITY; 193=WIDESCREEN; S89=12; 121=ORBISCAPE "
          "then 176 without 8X_ULTRA_SLO_MO_V2,8X_ULTRA_SLO_MO_50HZ_V2"},
    {24,  "190=OFF; 175=EASY; 186=STANDARD_QUALITY; 193=VERTICAL; S89=12 "
          "then 121 only WIDE; 176 only MOBILE_1X_SPEED_LOW_LIGHT_V2,MOBILE_1X_SPEED_LOW_LIGHT_50HZ_V2,"
          "MOBILE_2X_SLO_MO_V2,MOBILE_2X_SLO_MO_50HZ_V2"},
    {25,  "190=OFF; 175=EASY; 186=STANDARD_QUALITY; 193=FULL_FRAME; S89=12 "
          "then 121 only WIDE; 176 only UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_V2,UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_50HZ_V2,"
          "UNIVERSAL_2X_SLO_MO_V2,UNIVERSAL_2X_SLO_MO_50HZ_V2"},
    {26,  "190=OFF; 175=EASY; 186=BASIC_QUALITY; S89=12 then 193 without FULL_FRAME"},
    {27,  "190=OFF; 175=EASY; 186=BASIC_QUALITY; 193=WIDESCREEN; S89=12 "
          "then 121 without ARCASCAPE; 176 only LB_8X_ULTRA_SLO_MO_V2,LB_4X_SUPER_SLO_MO_V2,LB_2X_SLO_MO_V2,"
          "LB_1X_SPEED_LOW_LIGHT_V2,LB_8X_ULTRA_SLO_MO_50HZ_V2,LB_4X_SUPER_SLO_MO_50HZ_V2,LB_2X_SLO_MO_50HZ_V2,"
          "LB_1X_SPEED_LOW_LIGHT_50HZ_V2"},
    {28,  "190=OFF; 175=EASY; 186=BASIC_QUALITY; 193=WIDESCREEN; S89=12; 176=LB_4X_SUPER_SLO_MO_V2,LB_2X_SLO_MO_V2,"
          "LB_1X_SPEED_LOW_LIGHT_V2,LB_4X_SUPER_SLO_MO_50HZ_V2,LB_2X_SLO_MO_50HZ_V2,LB_1X_SPEED_LOW_LIGHT_50HZ_V2 "
          "then 121 without LINEAR_PLUS_HORIZON_LEVELING"},
    {29,  "190=OFF; 175=EASY; 186=BASIC_QUALITY; 193=WIDESCREEN; S89=12; 176=LB_8X_ULTRA_SLO_MO_V2,"
          "LB_8X_ULTRA_SLO_MO_50HZ_V2 "
          "then 121 without ORBISCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {30,  "190=OFF; 175=EASY; 186=BASIC_QUALITY; 193=WIDESCREEN; S89=12; 121=ORBISCAPE "
          "then 176 without LB_8X_ULTRA_SLO_MO_V2,LB_8X_ULTRA_SLO_MO_50HZ_V2"},
    {31,  "190=OFF; 175=EASY; 186=BASIC_QUALITY; 193=VERTICAL; S89=12 "
          "then 121 only WIDE; 176 only MOBILE_LB_2X_SLO_MO_V2,MOBILE_LB_1X_SPEED_LOW_LIGHT_V2,"
          "MOBILE_LB_2X_SLO_MO_50HZ_V2,MOBILE_LB_1X_SPEED_LOW_LIGHT_50HZ_V2"},
    {32,  "190=ON; 189=WIDE_OPTIC_1_0; 175=EASY; S89=12 "
          "then 193 only WIDESCREEN; 121 only WIDE,MAX_ORBISCAPE; 176 only 1X_SPEED_LOW_LIGHT_2_7K_V2,"
          "1X_SPEED_LOW_LIGHT_2_7K_50HZ_V2,2X_SLO_MO_2_7K_V2,2X_SLO_MO_2_7K_50HZ_V2"},
    {33,  "190=ON; 189=WIDE_OPTIC_2_0; 175=EASY; S89=12 "
          "then 193 without FULL_FRAME; 121 only WIDE,MAX_ORBISCAPE,MAX_ARCASCAPE"},
    {34,  "190=ON; 189=WIDE_OPTIC_2_0; 175=EASY; S89=12; 193=WIDESCREEN "
          "then 176 only 1X_SPEED_LOW_LIGHT_4K_V2,1X_SPEED_LOW_LIGHT_4K_50HZ_V2,2X_SLO_MO_4K_V2,2X_SLO_MO_4K_50HZ_V2,"
          "LB_4X_SUPER_SLO_MO_V2,LB_4X_SUPER_SLO_MO_50HZ_V2"},
    {35,  "190=ON; 189=WIDE_OPTIC_2_0; 175=EASY; S89=12; 193=WIDESCREEN; 176=LB_4X_SUPER_SLO_MO_V2,"
          "LB_4X_SUPER_SLO_MO_50HZ_V2 "
          "then 121 without MAX_ARCASCAPE"},
    {36,  "190=ON; 189=WIDE_OPTIC_2_0; 175=EASY; S89=12; 193=WIDESCREEN; 121=MAX_ARCASCAPE "
          "then 176 without LB_4X_SUPER_SLO_MO_V2,LB_4X_SUPER_SLO_MO_50HZ_V2"},
    {37,  "190=ON; 189=WIDE_OPTIC_2_0; 175=EASY; S89=12; 193=VERTICAL "
          "then 176 only MOBILE_1X_SPEED_LOW_LIGHT_V2,MOBILE_1X_SPEED_LOW_LIGHT_50HZ_V2,MOBILE_2X_SLO_MO_V2,"
          "MOBILE_2X_SLO_MO_50HZ_V2; 121 only WIDE,MAX_ORBISCAPE"},

    // Add-on lens in video
    {38,  "190=ON; S89=12; 148=OFF then 165 off"},
    {39,  "189=WIDE_OPTIC_1_0; 190=ON; 175=PRO; S89=12 "
          "then 2 only 2_7K,1080,2_7K_4BY3_V2; 108 only 16BY9,4BY3; 121 without LINEAR,MAX_ARCASCAPE; "
          "148 without AUTO_BOOST"},
    {40,  "189=WIDE_OPTIC_1_0; 190=ON; S89=12; 2=2_7K then 3 without 240,200,120,100"},
    {41,  "189=WIDE_OPTIC_1_0; 190=ON; S89=12; 2=2_7K_4BY3_V2 then 3 only 60,50,30,25,24"},
    {42,  "189=WIDE_OPTIC_1_0; 190=ON; S89=12; 2=1080 then 3 without 240,200,120,100"},
    {43,  "189=WIDE_OPTIC_2_0; 190=ON; S89=12; 175=PRO "
          "then 2 only 4K,1080,4K_4BY3,1080_9BY16_V2,4K_9BY16_V2; 108 only 16BY9,9BY16,4BY3"},
    {44,  "189=WIDE_OPTIC_2_0; 190=ON; S89=12; 175=PRO; 108=9BY16 then 148 without AUTO_BOOST"},
    {45,  "189=WIDE_OPTIC_2_0; 190=ON; 175=PRO; S89=12; 2=4K_9BY16_V2 "
          "then 3 without 240,200,120,100,24; 121 without MAX_ARCASCAPE"},
    {46,  "189=WIDE_OPTIC_2_0; 190=ON; S89=12; 2=4K then 3 without 240,200,120,100"},
    {47,  "189=WIDE_OPTIC_2_0; 190=ON; S89=12; 2=4K_4BY3 then 3 without 240,200,120,100; 121 without MAX_ARCASCAPE"},
    {48,  "189=WIDE_OPTIC_2_0; 190=ON; S89=12; 2=1080 then 3 without 240,200; 121 without MAX_ARCASCAPE"},
    {49,  "189=WIDE_OPTIC_2_0; 190=ON; S89=12; 2=1080_9BY16_V2 "
          "then 3 without 240,200,120,100,24; 121 without MAX_ARCASCAPE"},

    // Video profiles
    {50,  "183=8BIT then 184 without 10_BIT_LOG"},
    {51,  "190=OFF; 184=10_BIT_LOG; S89=12 "
          "then 116 only LOG; 108 only 16BY9,8BY7; 2 only 5_3K,4K,5_3K_8BY7_V2,4K_8BY7_V2; 13 only 100,200,400,800,"
          "1600; 102 only 100,200,400,800,1600"},
    {52,  "190=OFF; 175=PRO; 184=10_BIT_LOG; S89=12; 2=5_3K; 3=30,25,24 then 121 without LINEAR_PLUS_HORIZON_LEVELING"},
    {53,  "190=OFF; 175=PRO; 184=10_BIT_LOG; S89=12; 2=5_3K; 3=60,50 "
          "then 121 without ARCASCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {54,  "190=OFF; 175=PRO; 184=HDR; S89=12 "
          "then 116 only VIBRANT,NATURAL; 108 only 16BY9,8BY7; 2 only 5_3K,4K,4K_8BY7_V2; 145 off; 118 off; 13 off; "
          "102 off"},
    {55,  "190=OFF; 175=PRO; 184=HDR; S89=12; 2=5_3K; 3=30,25,24 then 121 without ARCASCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {56,  "190=OFF; 175=PRO; 184=HDR; S89=12; 2=5_3K,4K_8BY7_V2 then 3 without 60,50"},
    {57,  "190=OFF; 175=PRO; 184=HDR; S89=12; 2=4K then 3 without 120,100"},
    {58,  "190=OFF; 175=PRO; 184=HDR; S89=12; 2=4K; 3=60,50 then 121 only LINEAR,WIDE"},
    {59,  "190=OFF; 175=PRO; 184=HDR; S89=12; 2=4K; 3=60,50 then 121 without ORBISCAPE"},
    {60,  "184=STANDARD then 116 without LOG"},

    // Stabilisation and pre-record; what belongs to video alone
    {61,  "121=LINEAR_PLUS_HORIZON_LEVELING,LINEAR_PLUS_HORIZON_LOCK then 135 only ON,AUTO_BOOST"},
    {62,  "167!=OFF then 105 off; 139 off"},
    {63,  "S89=12 "
          "then 129-132 only OFF,SETTINGS,LENS,GLIDARA,HORIZON_LOCK,SCHEDULED_CAPTURE,DURATION,RETROCAP,TIMER,ZOOM,"
          "VIDEO_SHUTTER,EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR,RAW_AUDIO,WIND,SOUND_CAGE"},
    {64,  "190=OFF; S89=12; 135=OFF then 121 without LINEAR_PLUS_HORIZON_LEVELING,LINEAR_PLUS_HORIZON_LOCK"},
    {65,  "S89=13,15,16,18,19,20,21,24,26,29,30,31 "
          "then 167 off; 145 off; 184 off; 176 off; 139 off; 164 off; 13 without AUTO; 102 without AUTO; "
          "116 without LOG"},
    {66,  "S89=12,15 then 144 only VIDEO,LOOPING"},

    // Shutter speed and frame rate
    {67,  "S89=12; 145!=AUTO then 118 off"},
    {68,  "3=240 then 145 only AUTO,1_240,1_480,1_960,1_1920,1_3840"},
    {69,  "3=200 then 145 only AUTO,1_200,1_400,1_800,1_1600,1_3200"},
    {70,  "3=120 then 145 only AUTO,1_120,1_240,1_480,1_960,1_1920,1_3840"},
    {71,  "3=100 then 145 only AUTO,1_100,1_200,1_400,1_800,1_1600,1_3200"},
    {72,  "3=60 then 145 only AUTO,1_60,1_120,1_240,1_480,1_960,1_1920,1_3840"},
    {73,  "3=50 then 145 only AUTO,1_50,1_100,1_200,1_400,1_800,1_1600,1_3200"},
    {74,  "3=30 then 145 only AUTO,1_30,1_60,1_120,1_240,1_480,1_960,1_1920,1_3840"},
    {75,  "3=25 then 145 only AUTO,1_25,1_50,1_100,1_200,1_400,1_800,1_1600,1_3200"},
    {76,  "3=24 then 145 only AUTO,1_24,1_48,1_96,1_192,1_384,1_768,1_1536,1_3072"},

    // Aspect ratio, resolution, frame rate and field of view
    {77,  "S89=12,13,15,24; 108=16BY9 then 2 only 5_3K,4K,2_7K,1080"},
    {78,  "S89=12,13,15,24; 108=4BY3 then 2 only 2_7K_4BY3_V2,4K_4BY3"},
    {79,  "S89=12,13,15,24; 108=8BY7 "
          "then 2 only 5_3K_8BY7_V2,4K_8BY7_V2; 121 only LINEAR,WIDE; 135 only ON,OFF; 3 only 60,50,30,25,24"},
    {80,  "S89=12,13,15,24; 108=9BY16 "
          "then 2 only 4K_9BY16_V2,1080_9BY16_V2; 121 only WIDE,MAX_ORBISCAPE; 135 only ON,OFF; 3 only 60,50,30,25,"
          "24"},
    {81,  "2!=5_3K,4K then 121 without ARCASCAPE"},
    {82,  "190=OFF; 175=PRO; S89=12 "
          "then 2 only 5_3K,4K,2_7K,1080,2_7K_4BY3_V2,5_3K_8BY7_V2,4K_8BY7_V2,4K_9BY16_V2,1080_9BY16_V2"},
    {83,  "2=5_3K then 3 without 240,200,120,100"},
    {84,  "2=5_3K; 3!=30,25,24; 175=PRO then 121 without ARCASCAPE"},
    {85,  "2=5_3K; 121=ARCASCAPE then 3 only 30,25,24"},
    {86,  "190=OFF; 175=PRO; 2=5_3K; 3=60,50 then 121 without LINEAR_PLUS_HORIZON_LOCK"},
    {87,  "190=OFF; 184=STANDARD; 2=5_3K; 3=30,25,24 then 121 without LINEAR_PLUS_HORIZON_LEVELING"},
    {88,  "2=5_3K_8BY7_V2 then 3 only 30,25,24"},
    {89,  "2=4K then 3 without 240,200"},
    {90,  "2=4K; 121=ARCASCAPE then 3 without 120,100"},
    {91,  "190=OFF; 175=PRO; S89=12; 2=4K; 3=120,100 then 121 without ARCASCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {92,  "190=OFF; S89=12; 2=4K; 3=60,50,30,25,24 then 121 without LINEAR_PLUS_HORIZON_LEVELING"},
    {93,  "2=4K_8BY7_V2 then 3 only 60,50,30,25,24"},
    {94,  "2=4K_9BY16_V2 then 3 only 60,50,30,25"},
    {95,  "190=OFF; 2=2_7K then 3 only 240,200; 121 without ORBISCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {96,  "190=OFF; S89=12; 2=2_7K_4BY3_V2 "
          "then 3 only 120,100,60,50; 121 without ORBISCAPE,LINEAR_PLUS_HORIZON_LEVELING"},
    {97,  "190=OFF; 2=1080; 3=240,200 then 121 without ORBISCAPE,LINEAR_PLUS_HORIZON_LOCK"},
    {98,  "190=OFF; 2=1080; 3=120,100 then 121 without ARCASCAPE"},
    {99,  "190=OFF; 2=1080; 3=120,100,60,50,30,25,24 then 121 without LINEAR_PLUS_HORIZON_LEVELING"},
    {100, "2=1080_9BY16_V2 then 3 only 60,50,30,25"},

    // Looping
    {101, "S89=15 "
          "then 129-132 only OFF,SETTINGS,LENS,LOOPING_INTERVAL,GLIDARA,SCHEDULED_CAPTURE,TIMER,ZOOM; 114 off; "
          "116 off; 118 off; 117 off; 115 off; 121 without ARCASCAPE; 2 only 1080,4K; 108 only 16BY9"},
    {102, "S89=12,13,16,18,19,20,21,24,26,29,30,31 then 6 off"},
    {103, "S89=15; 2=4K then 3 only 30,25; 121 without LINEAR_PLUS_HORIZON_LEVELING"},
    {104, "S89=15; 2=1080 then 3 only 120,100,60,50; 121 without LINEAR_PLUS_HORIZON_LEVELING"},

    // What stills and lapses do without
    {105, "S89=13,16,18,19,20,21,24,26,29,30,31 then 148 off; 135 off; 3 off"},
    {106, "S89=13,15,16,18,19,20,21,26,29,30,31 then 149 off; 165 off"},
    {107, "S89=15,16,18,19,20,21,26,29,30,31 then 156 off; 13 off; 102 off"},
    {108, "S89=16,18,19,20,21 then 121 off; 2 off; 108 off"},

    // Easy photo, and the add-on lens in photo
    {109, "175=EASY; S89=16,18 then 193 off; 187 off; 186 off"},
    {110, "190=OFF; 175=EASY; S89=16,18 then 122 only LINEAR,WIDE; 166 off"},
    {111, "190=ON; 175=EASY; S89=16 then 122 without LINEAR"},
    {112, "190=ON; 189=WIDE_OPTIC_1_0; S89=16 then 171 off; 172 off; 122 without LINEAR"},

    // Photo output and interval
    {113, "125=RAW then 122 only WIDE; 171 only OFF,3_SECONDS,5_SECONDS,10_SECONDS,30_SECONDS,60_SECONDS,120_SECONDS"},
    {114, "125=HDR then 171 only OFF,5_SECONDS,10_SECONDS,30_SECONDS,60_SECONDS,120_SECONDS"},
    {115, "125=LUMORA,HDR then 75 off; 24 off; 146 off; 118 off; 116 only VIBRANT"},
    {116, "S89=12,15,13,18,24,19,21,20,26,29,30,31 then 166 off; 171 off; 172 off; 146 off"},
    {117, "S89=16; 171=OFF then 172 off"},
    {118, "171=30_SECONDS then 172 only OFF,1_MINUTE,5_MINUTES,15_MINUTES,30_MINUTES,1_HOUR,2_HOURS"},
    {119, "171=60_SECONDS,120_SECONDS then 172 only OFF,5_MINUTES,15_MINUTES,30_MINUTES,1_HOUR,2_HOURS"},
    {120, "S89=16 "
          "then 129-132 only OFF,SETTINGS,LENS,OUTPUT,PHOTO_INTERVAL,HORIZON_LOCK,SCHEDULED_CAPTURE,DURATION,TIMER,"
          "ZOOM,VIDEO_SHUTTER,EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR"},

    // What belongs to photo and burst alone
    {121, "S89=12,13,15,19,20,21,24,26,29,30,31 then 122 off"},
    {122, "S89=12,13,15,19,20,21,24,26,29,30,31 then 125 off; 75 off; 24 off; 191 off"},
    {123, "S89=12,13,15,16,18,20,21,24,26,29,30,31 then 147 off"},

    // Burst and night photo
    {124, "S89=19 "
          "then 129-132 only OFF,SETTINGS,LENS,BURST_RATE,OUTPUT,SCHEDULED_CAPTURE,TIMER,ZOOM,EV_COMP,WHITE_BALANCE,"
          "ISO_MIN,ISO_MAX,SHARPNESS,COLOR"},
    {125, "S89=18 "
          "then 129-132 only OFF,SETTINGS,LENS,SHUTTER,OUTPUT,SCHEDULED_CAPTURE,TIMER,ZOOM,EV_COMP,WHITE_BALANCE,"
          "ISO_MIN,ISO_MAX,SHARPNESS,COLOR"},
    {126, "S89=18 then 125 without LUMORA,HDR"},
    {127, "S89=18; 19!=AUTO then 118 off"},
    {128, "S89=18; 19=AUTO then 24 without 1600,3200; 75 without 1600,3200"},
    {129, "S89=18; 19=30_SECONDS then 24 without 3200; 75 without 3200"},

    // Photo modes
    {130, "S89=12,15,13,24,16,19,21,20,26,29,30,31 then 19 off"},
    {131, "S89=16,18,19 then 144 only SINGLE_PHOTO,NIGHT_PHOTO,BURST_PHOTO"},

    // Rush Lapse video and the lapse scenes
    {132, "175=EASY; S89=24,29,30,31 "
          "then 121 only LINEAR,WIDE,LINEAR_PLUS_HORIZON_LOCK,MAX_ORBISCAPE; 186 off; 105 off"},
    {133, "190=OFF; 175=EASY; S89=24 then 165 off"},
    {134, "175=EASY; S89=29,30,31 then 193 without VERTICAL; 121 only WIDE"},
    {135, "190=OFF; 175=EASY; 193=VERTICAL then 121 only WIDE"},
    {136, "190=OFF; 175=EASY; S89=24; 193=FULL_FRAME then 121 only WIDE"},
    {137, "190=ON; 189=WIDE_OPTIC_1_0; 175=EASY; S89=24 "
          "then 193 only WIDESCREEN; 121 only WIDE,MAX_ORBISCAPE; 187 off"},
    {138, "190=ON; 189=WIDE_OPTIC_2_0; 175=EASY; S89=24 then 193 only WIDESCREEN; 121 only WIDE,MAX_ORBISCAPE"},
    {139, "190=ON; 189=WIDE_OPTIC_2_0; 175=EASY; S89=29,30,31 then 193 only WIDESCREEN; 121 only WIDE"},
    {140, "190=ON; S89=24 then 149 off; 129-132 without WIND"},
    {141, "190=ON; 189=WIDE_OPTIC_1_0; S89=24 "
          "then 2 only 1080,2_7K_4BY3_V2,2_7K; 121 only WIDE,MAX_ORBISCAPE; 108 only 4BY3,16BY9"},
    {142, "190=ON; 189=WIDE_OPTIC_2_0; S89=24 "
          "then 2 only 1080,4K_4BY3,4K; 121 only LINEAR,WIDE,MAX_ORBISCAPE,MAX_ARCASCAPE; 108 only 4BY3,16BY9"},
    {143, "190=ON; 189=WIDE_OPTIC_2_0; S89=24; 2=1080 then 121 without MAX_ARCASCAPE"},
    {144, "190=ON; 189=WIDE_OPTIC_2_0; S89=29,30,31 then 2 only 4K,4K_4BY3; 192 only 4BY3,16BY9"},
    {145, "126=RAW then 123 only WIDE"},
    {146, "S89=12,13,15,16,18,19,20,21,26,29,30,31 then 111 off; 153 off"},
    {147, "S89=24 "
          "then 129-132 only OFF,SETTINGS,LENS,RUSHLAPSE_SPEED,HORIZON_LOCK,SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,"
          "EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR,WIND"},
    {148, "190=OFF; S89=24 "
          "then 3 off; 108 only 9BY16,16BY9,8BY7; 121 without ORBISCAPE,ARCASCAPE,LINEAR_PLUS_HORIZON_LEVELING; "
          "2 only 5_3K,4K,1080,5_3K_8BY7_V2,4K_8BY7_V2,1080_9BY16_V2,4K_9BY16_V2"},

    // Time lapse and night lapse
    {149, "S89=13,24 then 13 without 6400; 102 without 6400"},
    {150, "S89=20 "
          "then 129-132 only OFF,SETTINGS,LENS,INTERVAL,OUTPUT,SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,EV_COMP,"
          "WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR"},
    {151, "S89=20; 126=RAW then 30 without 0_5_SECONDS,1_SECOND,2_SECONDS"},
    {152, "S89=12,15,13,16,18,19,21,24,26,29,30,31 then 30 off"},
    {153, "S89=20 then 125 only STANDARD"},
    {154, "S89=12,15,16,18,19,20,21,24,26,29,30,31 then 5 off"},
    {155, "S89=12,15,16,18,19,20,21,24,26,29,30,31; 108=8BY7 then 121 without LINEAR"},
    {156, "S89=13 "
          "then 129-132 only OFF,SETTINGS,LENS,INTERVAL,SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,EV_COMP,WHITE_BALANCE,"
          "ISO_MIN,ISO_MAX,SHARPNESS,COLOR; 108 only 16BY9,8BY7"},
    {157, "S89=13,26 then 3 off; 121 only LINEAR,WIDE; 2 only 5_3K,4K,1080,5_3K_8BY7_V2,4K_8BY7_V2"},
    {158, "S89=26 "
          "then 3 off; 108 off; 31 without 0_5_SECONDS,1_SECOND; 129-132 only OFF,SETTINGS,LENS,INTERVAL,"
          "SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR; "
          "37 without 1600,3200"},
    {159, "S89=26; 31!=AUTO then 118 off"},

    // Night lapse and the lapse scenes: aspect ratio, exposure, shortcuts
    {160, "S89=26,29,30,31; 192=16BY9 then 2 only 5_3K,4K,1080"},
    {161, "S89=26,29,30,31; 192=4BY3 then 2 only 4K_4BY3"},
    {162, "S89=26,29,30,31; 192=8BY7 then 2 only 5_3K_8BY7_V2,4K_8BY7_V2"},
    {163, "S89=26,29,30,31; 190=OFF then 192 only 16BY9,8BY7"},
    {164, "S89=12,13,15,16,18,19,20,21,24 then 160 off; 192 off"},
    {165, "S89=21 "
          "then 31 without 0_5_SECONDS,1_SECOND; 37 without 1600,3200; 129-132 only OFF,SETTINGS,LENS,INTERVAL,"
          "SHUTTER,OUTPUT,SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,"
          "COLOR"},
    {166, "S89=21; 31!=AUTO then 115 without AUTO; 118 off"},
    {167, "S89=21; 31=30_SECONDS then 37 without 3200; 76 without 3200"},
    {168, "S89=21; 31=2_SECONDS then 32 without 4_SECONDS"},
    {169, "S89=29 then 115 only 3200K; 31 only 0_5_SECONDS,1_SECOND,2_SECONDS,5_SECONDS,10_SECONDS,30_SECONDS"},
    {170, "S89=30 then 31 only 0_5_SECONDS,1_SECOND,2_SECONDS"},
    {171, "S89=31 then 31 only 0_5_SECONDS,1_SECOND,2_SECONDS,5_SECONDS,10_SECONDS,30_SECONDS"},
    {172, "S89=12,13,15,16,18,19,20,21,24,26 then 179 off"},
    {173, "S89=29,30,31 "
          "then 3 off; 108 off; 118 off; 32 off; 121 only WIDE; 160 only HIGH; 116 only NATURAL; 117 only MEDIUM; "
          "129-132 only OFF,SETTINGS,LENS,INTERVAL,SHUTTER,HORIZON_LOCK,SCHEDULED_CAPTURE,DURATION,TIMER,ZOOM,"
          "EV_COMP,WHITE_BALANCE,ISO_MIN,ISO_MAX,SHARPNESS,COLOR,TRAIL_LENGTH"},
    {174, "190=OFF; S89=29,30,31 then 2 only 5_3K,4K,5_3K_8BY7_V2,4K_8BY7_V2"},

    // Formats of the lapses, and what other modes do without
    {175, "S89=13,20 then 128 only TIME_LAPSE_VIDEO,TIME_LAPSE_PHOTO"},
    {176, "S89=21,26 then 128 only NIGHT_LAPSE_VIDEO,NIGHT_LAPSE_PHOTO"},
    {177, "S89=21,26; 31!=AUTO then 118 off"},
    {178, "S89=21,26; 31=AUTO then 76 without 1600,3200"},
    {179, "S89=12,13,15,16,18,24,26,29,30,31 then 126 off; 123 off"},
    {180, "S89=12,13,15,16,18,19,20,24 then 32 off; 31 off"},

    // Night-lapse rate against exposure time
    {181, "31=30_SECONDS "
          "then 32 without 4_SECONDS,5_SECONDS,10_SECONDS,15_SECONDS,20_SECONDS,30_SECONDS; 157 without 15_SECONDS"},
    {182, "31=20_SECONDS then 32 without 4_SECONDS,5_SECONDS,10_SECONDS,15_SECONDS,20_SECONDS"},
    {183, "31=15_SECONDS then 32 without 4_SECONDS,5_SECONDS,10_SECONDS,15_SECONDS"},
    {184, "31=10_SECONDS then 32 without 4_SECONDS,5_SECONDS,10_SECONDS"},
    {185, "31=5_SECONDS then 32 without 4_SECONDS,5_SECONDS"},

    // What belongs to some lapses alone
    {186, "S89=12,15,16,18,19,24,29,30,31 then 128 off"},
    {187, "S89=13,24,26,29,30,31 "
          "then 144 only RUSH_LAPSE_VIDEO,TIME_LAPSE_PHOTO,NIGHT_LAPSE_PHOTO,TIME_LAPSE_VIDEO,NIGHT_LAPSE_VIDEO,"
          "VIDEO_STAR_TRAIL,VIDEO_LIGHT_PAINTING,VIDEO_LIGHT_TRAIL"},
    {188, "S89=21,26,29,31; 31=30_SECONDS then 37 without 3200; 76 without 3200"},
    {189, "S89=12,15,13,16,18,19,24 then 157 off"},
    {190, "S89=12,13,15,16,18,24 then 76 off; 37 off"},

    // Exposure selection of the live view
    {191, "S65=1 then 145 off; 19 only AUTO; 146 off; 31 only AUTO"},
    {192, "S65=2 then 13 off; 102 off; 145 off; 24 off; 75 off; 146 off; 19 only AUTO; 37 off; 76 off; 31 only AUTO"},

    // Microphones and audio accessories
    {193, "S74=0; S102=0,2 then 169 off"},
    {194, "S74=2,3 then 164 off"},
    {195, "S74=3 then 149 off"},
    {196, "S102=0 then 164 off"},
    {197, "S102=3 then 164 off; 149 off"},
    {198, "S110=5 then 154 without ACTUAL_VIEW,FULL_SCREEN"},

    // Add-on lens status
    {199, "189=NONE then 190 off"},
    {200, "190=OFF "
          "then 166 off; 165 off; 121 without MAX_ORBISCAPE,MAX_ARCASCAPE; 122 without MAX_ORBISCAPE; "
          "187 without MAX_LAPSE_MODE_RUSH_LAPSE,MAX_LAPSE_MODE_STAR_TRAILS,MAX_LAPSE_MODE_LIGHT_PAINTING,"
          "MAX_LAPSE_MODE_VEHICLE_LIGHTS; 148 off; 129-132 without HORIZON_LOCK"},
    {201, "190=ON "
          "then 121 only LINEAR,WIDE,MAX_ORBISCAPE,MAX_ARCASCAPE; 123 only WIDE; 135 off; 125 off; 184 off; 186 off; "
          "153 off; 191 off; 187 without LAPSE_MODE_RUSH_LAPSE,LAPSE_MODE_STAR_TRAILS,LAPSE_MODE_LIGHT_PAINTING,"
          "LAPSE_MODE_VEHICLE_LIGHTS; 129-132 without OUTPUT,ZOOM"},
};

// clang-format on

} // namespace zv
