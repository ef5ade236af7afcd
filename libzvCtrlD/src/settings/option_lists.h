// What each setting of the sable_knoll generation can be set to: a list per setting, in menu order, an option per line.
// Data for the compiler; setting_rows.h names each setting's list. Internal to the library.
//
// An option has a key, its stable name, which the filter rules speak in; the name that a user sees; the firmware's
// number for it, its value; and the public number, its id. Keys and ids are unique within a list. A value that a list
// has twice, as the shortcuts' do, belongs to the first option that has it.
#pragma once

#include "flat_modes.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace zv {

// The texts are in the row itself, so that the tables are constant down to the last byte: nothing to relocate.
struct Option {
    char key[40];
    char name[26];
    uint32_t value;
    uint32_t id;
};

// clang-format off

// Setting 2
inline constexpr Option VIDEO_RESOLUTION[] = {
    {"5_3K",          "5.3K",   24, 100},
    {"5_3K_8BY7_V2",  "5.3K",   26, 107},
    {"4K",            "4K",      1,   1},
    {"4K_4BY3",       "4K 4:3", 18,  18},
    {"4K_8BY7_V2",    "4K",     28, 108},
    {"2_7K",          "2.7K",    4,   4},
    {"2_7K_4BY3_V2",  "2.7K",    6, 111},
    {"1080",          "1080",    9,   9},
    {"4K_9BY16_V2",   "4K",     29, 109},
    {"1080_9BY16_V2", "1080",   30, 110},
};

// Setting 3
inline constexpr Option VIDEO_FPS[] = {
    {"240", "240",  0,  0},
    {"200", "200", 13, 13},
    {"120", "120",  1,  1},
    {"100", "100",  2,  2},
    {"60",  "60",   5,  5},
    {"50",  "50",   6,  6},
    {"30",  "30",   8,  8},
    {"25",  "25",   9,  9},
    {"24",  "24",  10, 10},
};

// Setting 5
inline constexpr Option VIDEO_TIMELAPSE_RATE[] = {
    {"60_MINUTES",  "60 Minutes",  10, 10},
    {"30_MINUTES",  "30 Minutes",   9,  9},
    {"5_MINUTES",   "5 Minutes",    8,  8},
    {"2_MINUTES",   "2 Minutes",    7,  7},
    {"60_SECONDS",  "60 Seconds",   6,  6},
    {"30_SECONDS",  "30 Seconds",   5,  5},
    {"10_SECONDS",  "10 Seconds",   4,  4},
    {"5_SECONDS",   "5 Seconds",    3,  3},
    {"3_SECONDS",   "3 Seconds",   11, 11},
    {"2_SECONDS",   "2 Seconds",    2,  2},
    {"1_SECOND",    "1 Second",     1,  1},
    {"0_5_SECONDS", "0.5 Seconds",  0,  0},
};

// Setting 6
inline constexpr Option VIDEO_LOOPING[] = {
    {"MAX",         "Max",         0, 0},
    {"120_MINUTES", "120 Minutes", 4, 4},
    {"60_MINUTES",  "60 Minutes",  3, 3},
    {"20_MINUTES",  "20 Minutes",  2, 2},
    {"5_MINUTES",   "5 Minutes",   1, 1},
};

// Setting 13
inline constexpr Option VIDEO_VELLIX_ISO[] = {
    {"AUTO", "Auto", 9, 9},
    {"6400", "6400", 0, 0},
    {"3200", "3200", 3, 3},
    {"1600", "1600", 1, 1},
    {"800",  "800",  4, 4},
    {"400",  "400",  2, 2},
    {"200",  "200",  7, 7},
    {"100",  "100",  8, 8},
};

// Setting 19
inline constexpr Option PHOTO_EXPOSURE_TIME[] = {
    {"30_SECONDS", "30 Seconds", 6, 6},
    {"20_SECONDS", "20 Seconds", 5, 5},
    {"15_SECONDS", "15 Seconds", 4, 4},
    {"10_SECONDS", "10 Seconds", 3, 3},
    {"5_SECONDS",  "5 Seconds",  2, 2},
    {"2_SECONDS",  "2 Seconds",  1, 1},
    {"AUTO",       "Auto",       0, 0},
};

// Settings 24, 37, 75, 76
inline constexpr Option VELLIX_ISO[] = {
    {"3200", "3200", 5, 5},
    {"1600", "1600", 4, 4},
    {"800",  "800",  0, 0},
    {"400",  "400",  1, 1},
    {"200",  "200",  2, 2},
    {"100",  "100",  3, 3},
};

// Setting 30
inline constexpr Option MULTI_SHOT_TIMELAPSE_RATE[] = {
    {"60_MINUTES",  "60 Minutes",  10, 100},
    {"30_MINUTES",  "30 Minutes",   9, 101},
    {"5_MINUTES",   "5 Minutes",    8, 102},
    {"2_MINUTES",   "2 Minutes",    7, 103},
    {"60_SECONDS",  "60 Seconds",   6, 104},
    {"30_SECONDS",  "30 Seconds",   5, 105},
    {"10_SECONDS",  "10 Seconds",   4, 106},
    {"5_SECONDS",   "5 Seconds",    3, 107},
    {"3_SECONDS",   "3 Seconds",   11,  11},
    {"2_SECONDS",   "2 Seconds",    2, 108},
    {"1_SECOND",    "1 Second",     1, 109},
    {"0_5_SECONDS", "0.5 Seconds",  0, 110},
};

// Setting 31
inline constexpr Option MULTI_SHOT_EXPOSURE_TIME[] = {
    {"30_SECONDS",  "30 Seconds",  6, 6},
    {"20_SECONDS",  "20 Seconds",  5, 5},
    {"15_SECONDS",  "15 Seconds",  4, 4},
    {"10_SECONDS",  "10 Seconds",  3, 3},
    {"5_SECONDS",   "5 Seconds",   2, 2},
    {"2_SECONDS",   "2 Seconds",   1, 1},
    {"1_SECOND",    "1 Second",    8, 8},
    {"0_5_SECONDS", "0.5 Seconds", 7, 7},
    {"AUTO",        "Auto",        0, 0},
};

// Setting 32
inline constexpr Option NIGHTLAPSE_RATE[] = {
    {"60_MINUTES", "60 Minutes",  8, 3600},
    {"30_MINUTES", "30 Minutes",  7, 1800},
    {"5_MINUTES",  "5 Minutes",   6,  300},
    {"2_MINUTES",  "2 Minutes",   5,  120},
    {"60_SECONDS", "60 Seconds",  4,  100},
    {"30_SECONDS", "30 Seconds",  3,   30},
    {"20_SECONDS", "20 Seconds",  2,   20},
    {"15_SECONDS", "15 Seconds",  1,   15},
    {"10_SECONDS", "10 Seconds",  0,   10},
    {"5_SECONDS",  "5 Seconds",  11,    5},
    {"4_SECONDS",  "4 Seconds",  10,    4},
    {"AUTO",       "Auto",        9, 3601},
};

// Setting 41
inline constexpr Option BROADCAST_RESOLUTION[] = {
    {"1080", "1080",  9,  9},
    {"720",  "720",  12, 12},
};

// Settings 42, 45
inline constexpr Option BROADCAST_FPS[] = {
    {"30", "30", 8, 8},
};

// Setting 43
inline constexpr Option BROADCAST_FOV[] = {
    {"ORBISCAPE", "Orbiscape", 3, 3},
    {"WIDE",      "Wide",      0, 0},
    {"LINEAR",    "Linear",    4, 4},
    {"NARROW",    "Narrow",    2, 2},
};

// Setting 44
inline constexpr Option BROADCAST_RECORD_RESOLUTION[] = {
    {"1080", "1080", 9, 9},
};

// Setting 47
inline constexpr Option BROADCAST_WINDOW_SIZE[] = {
    {"720",  "720",   7,  7},
    {"1080", "1080", 12, 12},
};

// Settings 54, 86, 114
inline constexpr Option ON_OFF[] = {
    {"ON",  "ON",  1, 1},
    {"OFF", "OFF", 0, 0},
};

// Setting 59
inline constexpr Option AUTO_POWER_DOWN[] = {
    {"1_MIN",  "1 Min",  1, 1},
    {"5_MIN",  "5 Min",  4, 4},
    {"15_MIN", "15 Min", 6, 6},
    {"30_MIN", "30 Min", 7, 7},
    {"NEVER",  "Never",  0, 0},
};

// Setting 62
inline constexpr Option STREAM_BIT_RATE[] = {
    {"250_KBPS", "250 Kbps",  250000,  250000},
    {"400_KBPS", "400 Kbps",  400000,  400000},
    {"600_KBPS", "600 Kbps",  600000,  600000},
    {"700_KBPS", "700 Kbps",  700000,  700000},
    {"800_KBPS", "800 Kbps",  800000,  800000},
    {"1_MBPS",   "1 Mbps",   1000000, 1000000},
    {"1_2_MBPS", "1.2 Mbps", 1200000, 1200000},
    {"1_6_MBPS", "1.6 Mbps", 1600000, 1600000},
    {"2_MBPS",   "2 Mbps",   2000000, 2000000},
    {"2_4_MBPS", "2.4 Mbps", 2400000, 2400000},
    {"2_5_MBPS", "2.5 Mbps", 2500000, 2500000},
    {"4_MBPS",   "4 Mbps",   4000000, 4000000},
};

// Setting 64
inline constexpr Option STREAM_WINDOW_SIZE[] = {
    {"DEFAULT", "Default",  0,  0},
    {"480",     "480",      4,  4},
    {"720",     "720",      7,  7},
    {"1080",    "1080",    12, 12},
};

// Setting 84
inline constexpr Option LANGUAGE[] = {
    {"ENGLISH",             "English",               0,  0},
    {"FRENCH",              "French",                6,  6},
    {"GERMAN",              "German",                2,  2},
    {"ITALIAN",             "Italian",               3,  3},
    {"SPANISH",             "Spanish",               4,  4},
    {"CHINESE",             "Chinese",               1,  1},
    {"JAPANESE",            "Japanese",              5,  5},
    {"KOREAN",              "Korean",                7,  7},
    {"PORTUGUESE",          "Portuguese",            8,  8},
    {"RUSSIAN",             "Russian",               9,  9},
    {"SWEDISH",             "Swedish",              10, 10},
    {"CHINESE_TRADITIONAL", "Chinese(Traditional)", 11, 11},
};

// Setting 85
inline constexpr Option VOICE_CONTROL_LANGUAGE[] = {
    {"CHINESE",       "Chinese",        8,  8},
    {"ENGLISH_AUS",   "English - AUS",  2,  2},
    {"ENGLISH_INDIA", "English - IND", 13, 13},
    {"ENGLISH_UK",    "English - UK",   1,  1},
    {"ENGLISH_US",    "English - US",   0,  0},
    {"FRENCH",        "French",         4,  4},
    {"GERMAN",        "German",         3,  3},
    {"ITALIAN",       "Italian",        5,  5},
    {"JAPANESE",      "Japanese",       9,  9},
    {"KOREAN",        "Korean",        10, 10},
    {"PORTUGUESE",    "Portuguese",    11, 11},
    {"RUSSIAN",       "Russian",       12, 12},
    {"SPANISH",       "Spanish",        6,  6},
    {"SPANISH_NA",    "Spanish - NA",   7,  7},
    {"SWEDISH",       "Swedish",       14, 14},
};

// Setting 87
inline constexpr Option BEEP_VOLUME[] = {
    {"HIGH",   "High",   100, 100},
    {"MEDIUM", "Medium",  85,  70},
    {"LOW",    "Low",     70,  40},
    {"MUTE",   "Mute",     0,   0},
};

// Setting 88
inline constexpr Option LCD_BRIGHTNESS[] = {
    {"10P",  "10%",   10,  10},
    {"20P",  "20%",   20,  20},
    {"30P",  "30%",   30,  30},
    {"40P",  "40%",   40,  40},
    {"50P",  "50%",   50,  50},
    {"60P",  "60%",   60,  60},
    {"70P",  "70%",   70,  70},
    {"80P",  "80%",   80,  80},
    {"90P",  "90%",   90,  90},
    {"100P", "100%", 100, 100},
};

// Setting 91
inline constexpr Option LED[] = {
    {"ALL_ON",         "All On",         2, 3},
    {"ALL_OFF",        "All Off",        0, 4},
    {"FRONT_OFF_ONLY", "Front Off Only", 1, 5},
};

// Setting 102
inline constexpr Option VIDEO_VELLIX_ISO_MIN[] = {
    {"6400", "6400", 0, 0},
    {"3200", "3200", 3, 3},
    {"1600", "1600", 1, 1},
    {"800",  "800",  4, 4},
    {"400",  "400",  2, 2},
    {"200",  "200",  7, 7},
    {"100",  "100",  8, 8},
    {"AUTO", "Auto", 9, 9},
};

// Setting 103
inline constexpr Option AUTO_SCREEN_LOCK[] = {
    {"OFF", "Off", 3,   3},
    {"ON",  "On",  6, 100},
};

// Setting 105
inline constexpr Option CAPTURE_DELAY[] = {
    {"10_SECONDS", "10 Seconds", 2, 2},
    {"3_SECONDS",  "3 Seconds",  1, 1},
    {"OFF",        "Off",        0, 0},
};

// Setting 108
inline constexpr Option ASPECT_RATIO[] = {
    {"4BY3",  "4:3",  0, 0},
    {"16BY9", "16:9", 1, 1},
    {"8BY7",  "8:7",  3, 3},
    {"9BY16", "9:16", 4, 4},
};

// Setting 111
inline constexpr Option RUSHLAPSE_SPEED[] = {
    {"30X",  "30X",   1,  1},
    {"15X",  "15X",   0,  0},
    {"10X",  "10X",   9,  9},
    {"5X",   "5X",    8,  8},
    {"2X",   "2X",    7,  7},
    {"AUTO", "Auto", 10, 10},
};

// Setting 112
inline constexpr Option ORIENTATION[] = {
    {"ALL",    "All",      0, 100},
    {"LOCKED", "Locked", 255, 255},
};

// Setting 115
inline constexpr Option WHITE_BALANCE[] = {
    {"6500K",  "6500K",   3,  3},
    {"6000K",  "6000K",   7,  7},
    {"5500K",  "5500K",   2,  2},
    {"5000K",  "5000K",  12, 12},
    {"4500K",  "4500K",  11, 11},
    {"AUTO",   "Auto",    0,  0},
    {"NATIVE", "Native",  4,  4},
    {"4000K",  "4000K",   5,  5},
    {"3200K",  "3200K",  10, 10},
    {"2800K",  "2800K",   9,  9},
    {"2300K",  "2300K",   8,  8},
};

// Setting 116
inline constexpr Option COLOR[] = {
    {"VIBRANT", "Vibrant", 0, 100},
    {"NATURAL", "Natural", 2,   2},
    {"FLAT",    "Flat",    1,   1},
    {"LOG",     "Log",     3,   3},
};

// Setting 117
inline constexpr Option SHARPNESS[] = {
    {"HIGH",   "High",   0, 0},
    {"MEDIUM", "Medium", 1, 1},
    {"LOW",    "Low",    2, 2},
};

// Setting 118
inline constexpr Option EV[] = {
    {"MINUS2_0", "-2.0", 8, 8},
    {"MINUS1_5", "-1.5", 7, 7},
    {"MINUS1_0", "-1.0", 6, 6},
    {"MINUS0_5", "-0.5", 5, 5},
    {"0_0",      "0.0",  4, 4},
    {"0_5",      "0.5",  3, 3},
    {"1_0",      "1.0",  2, 2},
    {"1_5",      "1.5",  1, 1},
    {"2_0",      "2.0",  0, 0},
};

// Setting 121
inline constexpr Option VIDEO_FOV[] = {
    {"LINEAR_PLUS_HORIZON_LOCK",     "Linear + Horizon Lock",     10, 10},
    {"LINEAR_PLUS_HORIZON_LEVELING", "Linear + Horizon Leveling",  8,  8},
    {"LINEAR",                       "Linear",                     4,  4},
    {"WIDE",                         "Wide",                       0,  0},
    {"ORBISCAPE",                    "Orbiscape",                  3,  3},
    {"ARCASCAPE",                    "Arcascape",                  9,  9},
    {"MAX_ORBISCAPE",                "Max Orbiscape",              7,  7},
    {"MAX_ARCASCAPE",                "Max Arcascape",             11, 11},
};

// Setting 122
inline constexpr Option PHOTO_RESOLUTION[] = {
    {"MAX_ORBISCAPE", "Max Orbiscape", 30, 100},
    {"WIDE",          "Wide",          31, 101},
    {"LINEAR",        "Linear",        32, 102},
};

// Setting 123
inline constexpr Option MULTI_SHOT_RESOLUTION[] = {
    {"WIDE",   "Wide",   31, 101},
    {"LINEAR", "Linear", 32, 102},
};

// Setting 125
inline constexpr Option PHOTO_OUTPUT[] = {
    {"LUMORA",   "Lumora",   3, 3},
    {"HDR",      "HDR",      2, 2},
    {"STANDARD", "Standard", 0, 0},
    {"RAW",      "Raw",      1, 1},
};

// Setting 126
inline constexpr Option MULTI_SHOT_OUTPUT[] = {
    {"STANDARD", "Standard", 0, 0},
    {"RAW",      "Raw",      1, 1},
};

// Setting 128
inline constexpr Option FORMAT[] = {
    {"TIME_LAPSE_VIDEO",  "Video", FLAT_MODE_TIME_LAPSE_VIDEO,  13},
    {"TIME_LAPSE_PHOTO",  "Photo", FLAT_MODE_TIME_LAPSE_PHOTO,  20},
    {"NIGHT_LAPSE_PHOTO", "Photo", FLAT_MODE_NIGHT_LAPSE_PHOTO, 21},
    {"NIGHT_LAPSE_VIDEO", "Video", FLAT_MODE_NIGHT_LAPSE_VIDEO, 26},
};

// Settings 129, 130, 131, 132
inline constexpr Option ONSCREEN_SHORTCUTS[] = {
    {"OFF",               "Off",                0,   0},
    {"SETTINGS",          "Settings",          33,  33},
    {"LENS",              "Lens",               2,   2},
    {"LOOPING_INTERVAL",  "Looping Interval",  13, 109},
    {"INTERVAL",          "Interval",          13,  13},
    {"BURST_RATE",        "Burst Rate",         8,   8},
    {"SHUTTER",           "Shutter",            6,   6},
    {"OUTPUT",            "Output",            17,  17},
    {"PHOTO_INTERVAL",    "Interval",          31,  31},
    {"RUSHLAPSE_SPEED",   "Speed",             21,  21},
    {"GLIDARA",           "Glidara",           12,  12},
    {"HORIZON_LOCK",      "Horizon Lock",      24, 107},
    {"SCHEDULED_CAPTURE", "Scheduled Capture", 26, 104},
    {"DURATION",          "Duration",           9, 102},
    {"RETROCAP",          "RetroCap",          27, 105},
    {"TIMER",             "Timer",             20,  20},
    {"ZOOM",              "Zoom",               1,   1},
    {"VIDEO_SHUTTER",     "Shutter",            6, 111},
    {"EV_COMP",           "EV Comp",           11,  11},
    {"WHITE_BALANCE",     "White Balance",      5,   5},
    {"ISO_MIN",           "ISO Min",           14,  14},
    {"ISO_MAX",           "ISO Max",           15,  15},
    {"SHARPNESS",         "Sharpness",         19,  19},
    {"COLOR",             "Color",             10,  10},
    {"TRAIL_LENGTH",      "Trails Length",     30,  30},
    {"RAW_AUDIO",         "Raw Audio",         18,  18},
    {"WIND",              "Wind",              23, 100},
    {"SOUND_CAGE",        "Sound Cage",        16, 106},
};

// Setting 134
inline constexpr Option VIDEO_FORMAT[] = {
    {"60_HZ", "60Hz", 0, 2},
    {"50_HZ", "50Hz", 1, 3},
};

// Settings 135, 148
inline constexpr Option EIS[] = {
    {"AUTO_BOOST", "Auto Boost", 4, 4},
    {"ON",         "On",         1, 1},
    {"OFF",        "Off",        0, 0},
};

// Setting 139
inline constexpr Option AUDIO_VELLIX_OPTION[] = {
    {"HIGH", "High",   2, 2},
    {"MID",  "Medium", 1, 1},
    {"LOW",  "Low",    0, 0},
    {"OFF",  "Off",    3, 3},
};

// Setting 144
inline constexpr Option CURRENT_FLAT_MODE[] = {
    {"VIDEO",                "Video",             FLAT_MODE_VIDEO,             12},
    {"TIME_LAPSE_VIDEO",     "Time Lapse Video",  FLAT_MODE_TIME_LAPSE_VIDEO,  13},
    {"RUSH_LAPSE_VIDEO",     "Rush Lapse Video",  FLAT_MODE_RUSH_LAPSE_VIDEO,  24},
    {"NIGHT_LAPSE_VIDEO",    "Night Lapse Video", FLAT_MODE_NIGHT_LAPSE_VIDEO, 26},
    {"LOOPING",              "Looping",           FLAT_MODE_LOOPING,           15},
    {"SINGLE_PHOTO",         "Single Photo",      FLAT_MODE_SINGLE_PHOTO,      16},
    {"NIGHT_PHOTO",          "Night Photo",       FLAT_MODE_NIGHT_PHOTO,       18},
    {"BURST_PHOTO",          "Burst Photo",       FLAT_MODE_BURST_PHOTO,       19},
    {"TIME_LAPSE_PHOTO",     "Time Lapse Photo",  FLAT_MODE_TIME_LAPSE_PHOTO,  20},
    {"NIGHT_LAPSE_PHOTO",    "Night Lapse Photo", FLAT_MODE_NIGHT_LAPSE_PHOTO, 21},
    {"VIDEO_STAR_TRAIL",     "Star Trail",        FLAT_MODE_STAR_TRAIL,        29},
    {"VIDEO_LIGHT_PAINTING", "Light Painting",    FLAT_MODE_LIGHT_PAINTING,    30},
    {"VIDEO_LIGHT_TRAIL",    "Vehicle Lights",    FLAT_MODE_VEHICLE_LIGHTS,    31},
};

// Setting 145
inline constexpr Option VIDEO_EXPOSURE_TIME[] = {
    {"1_3840", "1/3840", 31, 31},
    {"1_3200", "1/3200", 30, 30},
    {"1_3072", "1/3072", 34, 34},
    {"1_1920", "1/1920", 24, 24},
    {"1_1600", "1/1600", 29, 29},
    {"1_1536", "1/1536", 33, 33},
    {"1_960",  "1/960",  23, 23},
    {"1_800",  "1/800",  28, 28},
    {"1_768",  "1/768",  32, 32},
    {"1_480",  "1/480",  22, 22},
    {"1_400",  "1/400",  21, 21},
    {"1_384",  "1/384",  25, 25},
    {"1_240",  "1/240",  18, 18},
    {"1_200",  "1/200",  17, 17},
    {"1_192",  "1/192",  16, 16},
    {"1_120",  "1/120",  13, 13},
    {"1_100",  "1/100",  12, 12},
    {"1_96",   "1/96",   11, 11},
    {"1_60",   "1/60",    8,  8},
    {"1_50",   "1/50",    7,  7},
    {"1_48",   "1/48",    6,  6},
    {"1_30",   "1/30",    5,  5},
    {"1_25",   "1/25",    4,  4},
    {"1_24",   "1/24",    3,  3},
    {"AUTO",   "Auto",    0,  0},
};

// Setting 146
inline constexpr Option VELLIX_EXPOSURE_TIME[] = {
    {"AUTO",   "Auto",   0, 0},
    {"1_125",  "1/125",  1, 1},
    {"1_250",  "1/250",  2, 2},
    {"1_500",  "1/500",  3, 3},
    {"1_1000", "1/1000", 4, 4},
    {"1_2000", "1/2000", 5, 5},
};

// Setting 147
inline constexpr Option BURST_RATE[] = {
    {"60_PHOTOS_10_SECOND", "60 Photos / 10 Seconds", 13, 13},
    {"60_PHOTOS_6_SECOND",  "60 Photos / 6 Seconds",  12, 12},
    {"30_PHOTOS_6_SECONDS", "30 Photos / 6 Seconds",   8,  8},
    {"30_PHOTOS_3_SECONDS", "30 Photos / 3 Seconds",   7,  7},
    {"30_PHOTOS_1_SECOND",  "30 Photos / 1 Second",    5,  5},
    {"10_PHOTOS_3_SECONDS", "10 Photos / 3 Seconds",   4,  4},
    {"10_PHOTOS_1_SECOND",  "10 Photos / 1 Second",    2,  2},
    {"5_PHOTOS_1_SECOND",   "5 Photos / 1 Second",     1,  1},
    {"3_PHOTOS_1_SECOND",   "3 Photos / 1 Second",     0,  0},
    {"AUTO",                "Auto",                    9,  9},
};

// Setting 149
inline constexpr Option WIND_OPTION[] = {
    {"AUTO", "Auto", 2, 2},
    {"ON",   "On",   1, 4},
    {"OFF",  "Off",  0, 0},
};

// Setting 153
inline constexpr Option MODE_BUTTON[] = {
    {"SPEED_RAMP", "Speed Ramp", 0, 100},
    {"KEYMARK",    "KeyMark",    1,   1},
};

// Setting 154
inline constexpr Option FRONT_LCD_DISPLAY_MODE[] = {
    {"SCREEN_OFF",  "Screen Off",  0, 0},
    {"STATUS_ONLY", "Status Only", 1, 1},
    {"ACTUAL_VIEW", "Actual View", 2, 2},
    {"FULL_SCREEN", "Full Screen", 3, 3},
};

// Settings 156, 157
inline constexpr Option SHORT_CLIP_LENGTH[] = {
    {"3_HOURS",    "3 Hours",    9,   9},
    {"2_HOURS",    "2 Hours",    8,   8},
    {"1_HOUR",     "1 Hour",     7,   7},
    {"30_MINUTES", "30 Minutes", 6,   6},
    {"15_MINUTES", "15 Minutes", 5,   5},
    {"5_MINUTES",  "5 Minutes",  4,   4},
    {"1_MINUTE",   "1 Minute",   3,   3},
    {"30_SECONDS", "30 Seconds", 2,   2},
    {"15_SECONDS", "15 Seconds", 1,   1},
    {"NO_LIMIT",   "No Limit",   0, 100},
};

// Setting 158
inline constexpr Option FRONT_LCD_SCREEN_SAVER[] = {
    {"NEVER",             "Never",             0, 0},
    {"MATCH_REAR_SCREEN", "Match Rear Screen", 1, 1},
    {"1_MIN",             "1 Min",             2, 2},
    {"2_MIN",             "2 Min",             3, 3},
    {"3_MIN",             "3 Min",             4, 4},
    {"5_MIN",             "5 Min",             5, 5},
};

// Setting 159
inline constexpr Option LCD_SLEEP[] = {
    {"1_MIN", "1 Min", 1, 1},
    {"2_MIN", "2 Min", 2, 2},
    {"3_MIN", "3 Min", 3, 3},
    {"5_MIN", "5 Min", 4, 4},
    {"NEVER", "Never", 0, 0},
};

// Settings 160, 182
inline constexpr Option BIT_RATE[] = {
    {"HIGH",     "High",     1, 1},
    {"STANDARD", "Standard", 0, 0},
};

// Setting 161
inline constexpr Option DEFAULT_CAMERA_MODE[] = {
    {"LAST_USED",           "Last Used",            255, 200},
    {"LAST_USED_VIDEO",     "Last Used Video",        0, 100},
    {"LAST_USED_PHOTO",     "Last Used Photo",        1, 101},
    {"LAST_USED_TIMELAPSE", "Last Used Time Lapse",   2, 102},
};

// Setting 164
inline constexpr Option SOUND_CAGE_AUDIO[] = {
    {"CAMERA_MICS",     "Camera Mics",  0, 100},
    {"BACK",            "Back",         2,   2},
    {"FRONT",           "Front",        1,   1},
    {"FRONT_PLUS_BACK", "Front + Back", 6,   4},
};

// Settings 165, 166, 190
inline constexpr Option OFF_ON[] = {
    {"OFF", "Off", 0, 0},
    {"ON",  "On",  1, 1},
};

// Setting 167
inline constexpr Option RETROCAP_LENGTH[] = {
    {"15_SECONDS", "15 Seconds", 2, 2},
    {"30_SECONDS", "30 Seconds", 3, 3},
    {"OFF",        "Off",        4, 4},
};

// Setting 168
inline constexpr Option SCHEDULED_CAPTURE[] = {
    {"OFF", "Off", 0, 0},
};

// Setting 169
inline constexpr Option ACC_MIC_MODE[] = {
    {"STANDARD_MIC",      "Standard Mic",  1, 1},
    {"STANDARD_MIC_PLUS", "Standard Mic+", 2, 2},
    {"POWERED_MIC",       "Powered Mic",   3, 3},
    {"POWERED_MIC_PLUS",  "Powered Mic+",  4, 4},
    {"LINE_IN",           "Line In",       5, 5},
};

// Setting 171
inline constexpr Option SINGLE_INTERVAL[] = {
    {"OFF",         "Off",   0,  0},
    {"0_5_SECONDS", "0.5s",  2,  2},
    {"1_SECOND",    "1s",    3,  3},
    {"2_SECONDS",   "2s",    4,  4},
    {"3_SECONDS",   "3s",   10, 10},
    {"5_SECONDS",   "5s",    5,  5},
    {"10_SECONDS",  "10s",   6,  6},
    {"30_SECONDS",  "30s",   7,  7},
    {"60_SECONDS",  "60s",   8,  8},
    {"120_SECONDS", "120s",  9,  9},
};

// Setting 172
inline constexpr Option INTERVAL_DURATION[] = {
    {"OFF",        "Off",        0, 0},
    {"15_SECONDS", "15 Seconds", 1, 1},
    {"30_SECONDS", "30 Seconds", 2, 2},
    {"1_MINUTE",   "1 Minute",   3, 3},
    {"5_MINUTES",  "5 Minutes",  4, 4},
    {"15_MINUTES", "15 Minutes", 5, 5},
    {"30_MINUTES", "30 Minutes", 6, 6},
    {"1_HOUR",     "1 Hour",     7, 7},
    {"2_HOURS",    "2 Hours",    8, 8},
    {"3_HOURS",    "3 Hours",    9, 9},
};

// Setting 175
inline constexpr Option CAMERA_UX_MODE[] = {
    {"EASY", "Easy", 0, 0},
    {"PRO",  "Pro",  1, 1},
};

// Setting 176
inline constexpr Option EASY_MODE_SPEED[] = {
    {"1X_SPEED_LOW_LIGHT_V2",                   "1X Speed / Low Light", 103, 103},
    {"1X_SPEED_LOW_LIGHT_4K_V2",                "1X Speed / Low Light", 126, 126},
    {"1X_SPEED_LOW_LIGHT_2_7K_V2",              "1X Speed / Low Light", 128, 128},
    {"2X_SLO_MO_4K_V2",                         "2X Slo-Mo",            116, 116},
    {"2X_SLO_MO_2_7K_V2",                       "2X Slo-Mo",            130, 130},
    {"2X_SLO_MO_V2",                            "2X Slo-Mo",            102, 102},
    {"4X_SUPER_SLO_MO_V2",                      "4X Super Slo-Mo",      101, 101},
    {"8X_ULTRA_SLO_MO_V2",                      "8X Ultra Slo-Mo",      100, 100},
    {"1X_SPEED_LOW_LIGHT_50HZ_V2",              "1X Speed / Low Light", 107, 107},
    {"1X_SPEED_LOW_LIGHT_4K_50HZ_V2",           "1X Speed / Low Light", 127, 127},
    {"1X_SPEED_LOW_LIGHT_2_7K_50HZ_V2",         "1X Speed / Low Light", 129, 129},
    {"2X_SLO_MO_4K_50HZ_V2",                    "2X Slo-Mo",            117, 117},
    {"2X_SLO_MO_2_7K_50HZ_V2",                  "2X Slo-Mo",            131, 131},
    {"2X_SLO_MO_50HZ_V2",                       "2X Slo-Mo",            106, 106},
    {"4X_SUPER_SLO_MO_50HZ_V2",                 "4X Super Slo-Mo",      105, 105},
    {"8X_ULTRA_SLO_MO_50HZ_V2",                 "8X Ultra Slo-Mo",      104, 104},
    {"MOBILE_1X_SPEED_LOW_LIGHT_V2",            "1X Speed / Low Light", 118, 118},
    {"MOBILE_1X_SPEED_LOW_LIGHT_50HZ_V2",       "1X Speed / Low Light", 119, 119},
    {"MOBILE_2X_SLO_MO_V2",                     "2X Slo-Mo",            120, 120},
    {"MOBILE_2X_SLO_MO_50HZ_V2",                "2X Slo-Mo",            121, 121},
    {"UNIVERSAL_1X_SPEED_LOW_LIGHT_V2",         "1X Speed / Low Light", 122, 122},
    {"UNIVERSAL_1X_SPEED_LOW_LIGHT_50HZ_V2",    "1X Speed / Low Light", 123, 123},
    {"UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_V2",      "1X Speed / Low Light", 136, 136},
    {"UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_50HZ_V2", "1X Speed / Low Light", 137, 137},
    {"UNIVERSAL_2X_SLO_MO_V2",                  "2X Slo-Mo",            124, 124},
    {"UNIVERSAL_2X_SLO_MO_50HZ_V2",             "2X Slo-Mo",            125, 125},
    {"LB_1X_SPEED_LOW_LIGHT_V2",                "1X Speed / Low Light", 111, 111},
    {"LB_2X_SLO_MO_V2",                         "2X Slo-Mo",            110, 110},
    {"LB_4X_SUPER_SLO_MO_V2",                   "4X Super Slo-Mo",      109, 109},
    {"LB_8X_ULTRA_SLO_MO_V2",                   "8X Ultra Slo-Mo",      108, 108},
    {"LB_1X_SPEED_LOW_LIGHT_50HZ_V2",           "1X Speed / Low Light", 115, 115},
    {"LB_2X_SLO_MO_50HZ_V2",                    "2X Slo-Mo",            114, 114},
    {"LB_4X_SUPER_SLO_MO_50HZ_V2",              "4X Super Slo-Mo",      113, 113},
    {"LB_8X_ULTRA_SLO_MO_50HZ_V2",              "8X Ultra Slo-Mo",      112, 112},
    {"MOBILE_LB_1X_SPEED_LOW_LIGHT_V2",         "1X Speed / Low Light", 134, 134},
    {"MOBILE_LB_1X_SPEED_LOW_LIGHT_50HZ_V2",    "1X Speed / Low Light", 135, 135},
    {"MOBILE_LB_2X_SLO_MO_V2",                  "2X Slo-Mo",            132, 132},
    {"MOBILE_LB_2X_SLO_MO_50HZ_V2",             "2X Slo-Mo",            133, 133},
};

// Setting 178
inline constexpr Option WIRELESS_BAND[] = {
    {"2_4_GHZ", "2.4GHz", 0, 0},
    {"5_GHZ",   "5GHz",   1, 1},
};

// Setting 179
inline constexpr Option TRAIL_LENGTH[] = {
    {"MAX",   "Max",   3, 3},
    {"LONG",  "Long",  2, 2},
    {"SHORT", "Short", 1, 1},
};

// Setting 183
inline constexpr Option VIDEO_BIT_DEPTH[] = {
    {"8BIT",  "8-Bit",  0, 0},
    {"10BIT", "10-Bit", 2, 2},
};

// Setting 184
inline constexpr Option VIDEO_PROFILE[] = {
    {"STANDARD",   "Standard", 0, 0},
    {"HDR",        "HDR",      1, 1},
    {"10_BIT_LOG", "Log",      2, 2},
};

// Setting 186
inline constexpr Option EASY_VIDEO_PRESETS[] = {
    {"HIGHEST_QUALITY",  "Highest Quality",  0, 0},
    {"STANDARD_QUALITY", "Standard Quality", 1, 1},
    {"BASIC_QUALITY",    "Basic Quality",    2, 2},
};

// Setting 187
inline constexpr Option EASY_TIMELAPSE_PRESETS[] = {
    {"LAPSE_MODE_RUSH_LAPSE",         "RushLapse",          0, 0},
    {"LAPSE_MODE_STAR_TRAILS",        "Star Trails",        1, 1},
    {"LAPSE_MODE_LIGHT_PAINTING",     "Light Painting",     2, 2},
    {"LAPSE_MODE_VEHICLE_LIGHTS",     "Vehicle Lights",     3, 3},
    {"MAX_LAPSE_MODE_RUSH_LAPSE",     "Max RushLapse",      4, 4},
    {"MAX_LAPSE_MODE_STAR_TRAILS",    "Max Star Trails",    5, 5},
    {"MAX_LAPSE_MODE_LIGHT_PAINTING", "Max Light Painting", 6, 6},
    {"MAX_LAPSE_MODE_VEHICLE_LIGHTS", "Max Vehicle Lights", 7, 7},
};

// Setting 189
inline constexpr Option ADDON_LENS[] = {
    {"NONE",           "None",           0, 0},
    {"WIDE_OPTIC_1_0", "Wide Optic 1.0", 1, 1},
    {"WIDE_OPTIC_2_0", "Wide Optic 2.0", 2, 2},
};

// Setting 191
inline constexpr Option EASY_PHOTO_PRESETS[] = {
    {"LUMORA_SHOT", "Lumora Shot", 0, 0},
    {"NIGHT_PHOTO", "Night Photo", 1, 1},
};

// Setting 192
inline constexpr Option NLV_ASPECT_RATIO[] = {
    {"4BY3",  "4:3",  0, 0},
    {"16BY9", "16:9", 1, 1},
    {"8BY7",  "8:7",  3, 3},
};

// Setting 193
inline constexpr Option EASY_FRAMING[] = {
    {"WIDESCREEN", "Widescreen", 1, 0},
    {"VERTICAL",   "Vertical",   4, 1},
    {"FULL_FRAME", "Full Frame", 3, 2},
};

// clang-format on

// For the compiler, which stops where there is none.
constexpr const Option &option_with_key(std::span<const Option> options, std::string_view key)
{
    for (const Option &option : options) {
        if (key == option.key) {
            return option;
        }
    }
    throw "the setting has no option of this key";
}

} // namespace zv
