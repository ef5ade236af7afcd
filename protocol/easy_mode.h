// The easy mode: presets in place of single settings, and speeds in place of resolution and frame rate.
#pragma once

#include "find_row.h"
#include "flat_modes.h"

#include <cstdint>

namespace zv {

inline constexpr uint32_t EASY_VIDEO_PRESET_5_3K = 0xA0000;
inline constexpr uint32_t EASY_VIDEO_PRESET_4K = 0xA0001;
inline constexpr uint32_t EASY_VIDEO_PRESET_1080P = 0xA0002;

// A preset's number in the firmware, and its value in the setting that chooses among its group. Where two presets have
// one value, the first is written and both read as it.
struct EasyPreset {
    uint32_t preset;
    PresetGroup group;
    uint8_t value;
    FlatMode flat_mode;
};

// clang-format off

inline constexpr EasyPreset EASY_PRESETS[] = {
    {EASY_VIDEO_PRESET_5_3K,  PRESETS_VIDEO,      0, FLAT_MODE_VIDEO},
    {EASY_VIDEO_PRESET_4K,    PRESETS_VIDEO,      1, FLAT_MODE_VIDEO},
    {EASY_VIDEO_PRESET_1080P, PRESETS_VIDEO,      2, FLAT_MODE_VIDEO},

    {0xC0000,                 PRESETS_PHOTO,      0, FLAT_MODE_SINGLE_PHOTO},
    {0xC0001,                 PRESETS_PHOTO,      1, FLAT_MODE_NIGHT_PHOTO},

    {0xD0000,                 PRESETS_TIME_LAPSE, 0, FLAT_MODE_RUSH_LAPSE_VIDEO},
    {0xD0001,                 PRESETS_TIME_LAPSE, 1, FLAT_MODE_STAR_TRAIL},
    {0xD0002,                 PRESETS_TIME_LAPSE, 2, FLAT_MODE_LIGHT_PAINTING},
    {0xD0003,                 PRESETS_TIME_LAPSE, 3, FLAT_MODE_VEHICLE_LIGHTS},
    {0x180000,                PRESETS_TIME_LAPSE, 4, FLAT_MODE_RUSH_LAPSE_VIDEO}, // these with the add-on lens
    {0x180001,                PRESETS_TIME_LAPSE, 5, FLAT_MODE_STAR_TRAIL},
    {0x180002,                PRESETS_TIME_LAPSE, 6, FLAT_MODE_LIGHT_PAINTING},
    {0x180003,                PRESETS_TIME_LAPSE, 7, FLAT_MODE_VEHICLE_LIGHTS},
    {0x150000,                PRESETS_TIME_LAPSE, 4, FLAT_MODE_RUSH_LAPSE_VIDEO},
};

// The resolution of each easy speed; the frame rate follows the mains frequency, and so does the speed's own number in
// its menu. Resolutions and frame rates are the firmware's values.
struct EasySpeed {
    uint8_t speed;
    uint8_t speed_50hz;
    uint8_t resolution;
    uint8_t fps;
    uint8_t fps_50hz;
};

inline constexpr EasySpeed EASY_SPEEDS[] = {
    {100, 104,  4, 0, 13}, // 8X_ULTRA_SLO_MO_V2
    {101, 105,  1, 1,  2}, // 4X_SUPER_SLO_MO_V2
    {102, 106, 24, 5,  6}, // 2X_SLO_MO_V2
    {103, 107, 24, 8,  9}, // 1X_SPEED_LOW_LIGHT_V2
    {108, 112,  9, 0, 13}, // LB_8X_ULTRA_SLO_MO_V2
    {109, 113,  9, 1,  2}, // LB_4X_SUPER_SLO_MO_V2
    {110, 114,  9, 5,  6}, // LB_2X_SLO_MO_V2
    {111, 115,  9, 8,  9}, // LB_1X_SPEED_LOW_LIGHT_V2
    {116, 117,  1, 5,  6}, // 2X_SLO_MO_4K_V2
    {118, 119, 29, 8,  9}, // MOBILE_1X_SPEED_LOW_LIGHT_V2
    {120, 121, 29, 5,  6}, // MOBILE_2X_SLO_MO_V2
    {122, 123, 26, 8,  9}, // UNIVERSAL_1X_SPEED_LOW_LIGHT_V2
    {124, 125, 28, 5,  6}, // UNIVERSAL_2X_SLO_MO_V2
    {126, 127,  1, 8,  9}, // 1X_SPEED_LOW_LIGHT_4K_V2
    {128, 129,  4, 8,  9}, // 1X_SPEED_LOW_LIGHT_2_7K_V2
    {130, 131,  4, 5,  6}, // 2X_SLO_MO_2_7K_V2
    {132, 133, 30, 5,  6}, // MOBILE_LB_2X_SLO_MO_V2
    {134, 135, 30, 8,  9}, // MOBILE_LB_1X_SPEED_LOW_LIGHT_V2
    {136, 137, 28, 8,  9}, // UNIVERSAL_1X_SPEED_LOW_LIGHT_4K_V2
};

// clang-format on

// What a resolution and frame rate without a speed of their own read as.
inline constexpr EasySpeed EASY_SPEED_OTHERWISE = EASY_SPEEDS[3];
static_assert(EASY_SPEED_OTHERWISE.speed == 103 && EASY_SPEED_OTHERWISE.speed_50hz == 107);

// The preset of a value; null for a value without one.
constexpr const EasyPreset *find_easy_preset(PresetGroup group, uint32_t value)
{
    return find_row(EASY_PRESETS, [=](const EasyPreset &row) { return row.group == group && row.value == value; });
}

// The row of a preset, whichever choice it belongs to; null for another number.
constexpr const EasyPreset *find_preset(uint32_t preset)
{
    return find_row(EASY_PRESETS, [=](const EasyPreset &row) { return row.preset == preset; });
}

// The row of a speed, by either number; null for another one.
constexpr const EasySpeed *find_easy_speed(uint32_t speed)
{
    return find_row(EASY_SPEEDS, [=](const EasySpeed &row) { return row.speed == speed || row.speed_50hz == speed; });
}

} // namespace zv
