// The flat modes: one number for mode and sub mode, and what the camera does in each. The settings record and status 89
// hold the present one.
#pragma once

#include "find_row.h"
#include "remote_commands.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <iterator>

namespace zv {

// The modes that a user can select have names; the firmware knows some more.
enum FlatMode : uint8_t {
    FLAT_MODE_4 = 4,
    FLAT_MODE_9 = 9,
    FLAT_MODE_VIDEO = 12,
    FLAT_MODE_TIME_LAPSE_VIDEO = 13,
    FLAT_MODE_14 = 14,
    FLAT_MODE_LOOPING = 15,
    FLAT_MODE_SINGLE_PHOTO = 16,
    FLAT_MODE_17 = 17,
    FLAT_MODE_NIGHT_PHOTO = 18,
    FLAT_MODE_BURST_PHOTO = 19,
    FLAT_MODE_TIME_LAPSE_PHOTO = 20,
    FLAT_MODE_NIGHT_LAPSE_PHOTO = 21,
    FLAT_MODE_22 = 22,
    FLAT_MODE_BROADCAST = 23,
    FLAT_MODE_RUSH_LAPSE_VIDEO = 24,
    FLAT_MODE_25 = 25,
    FLAT_MODE_NIGHT_LAPSE_VIDEO = 26,
    FLAT_MODE_27 = 27,
    FLAT_MODE_28 = 28,
    FLAT_MODE_STAR_TRAIL = 29,
    FLAT_MODE_LIGHT_PAINTING = 30,
    FLAT_MODE_VEHICLE_LIGHTS = 31,
};

// The camera's modes, of which a flat mode is one sub mode.
enum CameraMode : uint8_t { MODE_VIDEO = 0, MODE_PHOTO = 1, MODE_BROADCAST = 3 };

// The block of the settings record that holds a mode's own settings.
enum SettingsBlock : uint8_t { BLOCK_VIDEO, BLOCK_PHOTO, BLOCK_MULTI_SHOT };

// The group of presets that a mode's presets belong to; status 96 publishes it.
enum PresetGroup : uint8_t { PRESETS_VIDEO = 0, PRESETS_PHOTO = 1, PRESETS_TIME_LAPSE = 2 };

// What a preset group is published as: this and its number.
inline constexpr uint32_t PUBLISHED_PRESET_GROUP = 1000;

// What starts and stops a capture.
struct Shutter {
    RemoteCommand start;
    RemoteCommand stop;

    constexpr bool operator==(const Shutter &) const = default;
};

inline constexpr Shutter APP_SHUTTER{REMOTE_APP_SHUTTER_START, REMOTE_APP_SHUTTER_STOP};
inline constexpr Shutter VIDEO_SHUTTER{REMOTE_VIDEO_SHUTTER_START, REMOTE_VIDEO_SHUTTER_STOP};
inline constexpr Shutter PHOTO_SHUTTER{REMOTE_PHOTO_SHUTTER_START, REMOTE_PHOTO_SHUTTER_STOP};
inline constexpr Shutter MULTISHOT_SHUTTER{REMOTE_MULTISHOT_SHUTTER_START, REMOTE_MULTISHOT_SHUTTER_STOP};

struct FlatModeRow {
    FlatMode flat_mode;
    CameraMode mode;
    uint8_t sub_mode;
    SettingsBlock block;
    PresetGroup presets;
    Shutter shutter;
    uint8_t capture_mode; // the capability service's own count; NO_CAPTURE_MODE where it does not know the mode
};

inline constexpr uint8_t NO_CAPTURE_MODE = 0xFF;

// clang-format off

inline constexpr FlatModeRow FLAT_MODES[] = {
    {FLAT_MODE_VIDEO,             MODE_VIDEO,     0,  BLOCK_VIDEO,      PRESETS_VIDEO,      VIDEO_SHUTTER,     0},
    {FLAT_MODE_TIME_LAPSE_VIDEO,  MODE_VIDEO,     1,  BLOCK_VIDEO,      PRESETS_TIME_LAPSE, VIDEO_SHUTTER,     1},
    {FLAT_MODE_14,                MODE_VIDEO,     2,  BLOCK_VIDEO,      PRESETS_VIDEO,      VIDEO_SHUTTER,     NO_CAPTURE_MODE},
    {FLAT_MODE_LOOPING,           MODE_VIDEO,     3,  BLOCK_VIDEO,      PRESETS_VIDEO,      VIDEO_SHUTTER,     2},
    {FLAT_MODE_SINGLE_PHOTO,      MODE_PHOTO,     0,  BLOCK_PHOTO,      PRESETS_PHOTO,      PHOTO_SHUTTER,     3},
    {FLAT_MODE_17,                MODE_PHOTO,     1,  BLOCK_PHOTO,      PRESETS_PHOTO,      PHOTO_SHUTTER,     4},
    {FLAT_MODE_NIGHT_PHOTO,       MODE_PHOTO,     2,  BLOCK_PHOTO,      PRESETS_PHOTO,      PHOTO_SHUTTER,     5},
    {FLAT_MODE_BURST_PHOTO,       MODE_PHOTO,     3,  BLOCK_MULTI_SHOT, PRESETS_PHOTO,      MULTISHOT_SHUTTER, 6},
    {FLAT_MODE_TIME_LAPSE_PHOTO,  MODE_PHOTO,     4,  BLOCK_MULTI_SHOT, PRESETS_TIME_LAPSE, MULTISHOT_SHUTTER, 7},
    {FLAT_MODE_NIGHT_LAPSE_PHOTO, MODE_PHOTO,     5,  BLOCK_MULTI_SHOT, PRESETS_TIME_LAPSE, MULTISHOT_SHUTTER, 8},
    {FLAT_MODE_BROADCAST,         MODE_BROADCAST, 0,  BLOCK_VIDEO,      PRESETS_VIDEO,      APP_SHUTTER,       9},
    {FLAT_MODE_RUSH_LAPSE_VIDEO,  MODE_VIDEO,     4,  BLOCK_VIDEO,      PRESETS_TIME_LAPSE, VIDEO_SHUTTER,     10},
    {FLAT_MODE_25,                MODE_VIDEO,     5,  BLOCK_VIDEO,      PRESETS_VIDEO,      APP_SHUTTER,       11},
    {FLAT_MODE_NIGHT_LAPSE_VIDEO, MODE_VIDEO,     6,  BLOCK_MULTI_SHOT, PRESETS_TIME_LAPSE, APP_SHUTTER,       12},
    {FLAT_MODE_27,                MODE_VIDEO,     7,  BLOCK_VIDEO,      PRESETS_VIDEO,      APP_SHUTTER,       NO_CAPTURE_MODE},
    {FLAT_MODE_STAR_TRAIL,        MODE_VIDEO,     8,  BLOCK_MULTI_SHOT, PRESETS_TIME_LAPSE, APP_SHUTTER,       13},
    {FLAT_MODE_LIGHT_PAINTING,    MODE_VIDEO,     9,  BLOCK_MULTI_SHOT, PRESETS_TIME_LAPSE, APP_SHUTTER,       14},
    {FLAT_MODE_VEHICLE_LIGHTS,    MODE_VIDEO,     10, BLOCK_MULTI_SHOT, PRESETS_TIME_LAPSE, APP_SHUTTER,       15},
};

// clang-format on

static_assert(std::adjacent_find(std::begin(FLAT_MODES), std::end(FLAT_MODES),
                                 [](const FlatModeRow &row, const FlatModeRow &next) {
                                     return row.flat_mode >= next.flat_mode;
                                 }) == std::end(FLAT_MODES),
              "the rows ascend");

// Null for a number that has no row.
constexpr const FlatModeRow *find_flat_mode(int32_t flat_mode)
{
    return find_row(FLAT_MODES, [=](const FlatModeRow &row) { return row.flat_mode == flat_mode; });
}

// A set of flat modes, asked for any number.
class FlatModeSet {
  public:
    constexpr FlatModeSet(std::initializer_list<FlatMode> modes)
    {
        for (const FlatMode mode : modes) {
            m_bits |= bit(mode);
        }
    }
    // The modes whose settings lie in a block.
    explicit constexpr FlatModeSet(SettingsBlock block)
    {
        for (const FlatModeRow &row : FLAT_MODES) {
            m_bits |= row.block == block ? bit(row.flat_mode) : 0;
        }
    }

    constexpr FlatModeSet with(FlatModeSet modes) const { return FlatModeSet(m_bits | modes.m_bits); }
    constexpr FlatModeSet without(FlatModeSet modes) const { return FlatModeSet(m_bits & ~modes.m_bits); }
    constexpr bool contains(uint32_t mode) const { return mode < 64 && (m_bits & bit(mode)) != 0; }

  private:
    explicit constexpr FlatModeSet(uint64_t bits) : m_bits(bits) {}
    static constexpr uint64_t bit(uint32_t mode) { return uint64_t{1} << mode; }

    uint64_t m_bits = 0;
};

inline constexpr FlatModeSet VIDEO_MODES{BLOCK_VIDEO};
inline constexpr FlatModeSet PHOTO_MODES{BLOCK_PHOTO};
inline constexpr FlatModeSet MULTI_SHOT_MODES{BLOCK_MULTI_SHOT};

} // namespace zv
