#include "capabilities.h"

#include "find_row.h"
#include "remote_commands.h"

#include <cstddef>

namespace zv::sim {

namespace {

// An option value at 60 Hz and at 50 Hz, and its bit in the tables below.
struct Choice {
    uint32_t bit;
    uint8_t value;
    uint8_t value_50hz;
};

constexpr uint32_t F240 = 1, F120 = 2, F60 = 4, F30 = 8, F24 = 16;
constexpr uint32_t SLOW = F30 | F24;
constexpr uint32_t NORMAL = F60 | SLOW;
constexpr Choice RATES[] = {{F240, 0, 13}, {F120, 1, 2}, {F60, 5, 6}, {F30, 8, 9}, {F24, 10, 10}};

constexpr uint32_t LOCK = 1, LEVELING = 2, LINEAR = 4, WIDE = 8, ORBI = 16, ARCA = 32, MAX_ORBI = 64, MAX_ARCA = 128;
constexpr uint32_t ALL_VIEWS = 255;
constexpr Choice VIEWS[] = {{LOCK, 10, 10}, {LEVELING, 8, 8}, {LINEAR, 4, 4},   {WIDE, 0, 0},
                            {ORBI, 3, 3},   {ARCA, 9, 9},     {MAX_ORBI, 7, 7}, {MAX_ARCA, 11, 11}};

constexpr uint32_t STD = 1, HDR = 2, LOG = 4;
constexpr Choice PROFILES[] = {{STD, 0, 0}, {HDR, 1, 1}, {LOG, 2, 2}};

constexpr uint32_t VIDEO = 1, LOOPING = 2, LAPSE = 4, RUSH = 8, NIGHT = 16;
constexpr uint32_t EVERY = VIDEO | LAPSE | RUSH | NIGHT;

// A mode, its bit in the tables below, and the fields of view that it can have at all.
struct Mode {
    FlatMode flat_mode;
    uint32_t bit;
    uint32_t views;
};
constexpr Mode MODES[] = {
    {FLAT_MODE_VIDEO, VIDEO, ALL_VIEWS},
    {FLAT_MODE_TIME_LAPSE_VIDEO, LAPSE, LINEAR | WIDE},
    {FLAT_MODE_14, VIDEO, ALL_VIEWS},
    {FLAT_MODE_LOOPING, LOOPING, ALL_VIEWS},
    {FLAT_MODE_RUSH_LAPSE_VIDEO, RUSH, LOCK | LINEAR | WIDE | MAX_ORBI | MAX_ARCA},
    {FLAT_MODE_NIGHT_LAPSE_VIDEO, LAPSE, LINEAR | WIDE},
    {FLAT_MODE_STAR_TRAIL, NIGHT, WIDE},
    {FLAT_MODE_LIGHT_PAINTING, NIGHT, WIDE},
    {FLAT_MODE_VEHICLE_LIGHTS, NIGHT, WIDE},
};

struct Format {
    uint8_t lens;
    uint8_t resolution;
    uint32_t rates;
    uint32_t views;
    uint32_t modes;
    uint32_t profiles;
};

// Resolutions in the order in which they are offered.
constexpr Format FORMATS[] = {
    // no add-on lens
    {0, 24, F60, LEVELING | LINEAR | WIDE | ORBI, EVERY, STD | LOG}, // 5.3K
    {0, 24, SLOW, LOCK | LINEAR | WIDE | ORBI | ARCA, EVERY, STD | LOG},
    {0, 24, SLOW, LINEAR | WIDE | ORBI, EVERY, HDR},
    {0, 26, SLOW, WIDE, EVERY, STD | LOG},                           // 5.3K 8:7
    {0, 1, F120, LEVELING | LINEAR | WIDE | ORBI, EVERY, STD | LOG}, // 4K
    {0, 1, NORMAL, LOCK | LINEAR | WIDE | ORBI | ARCA, EVERY, STD | LOG},
    {0, 1, F60, LINEAR | WIDE, EVERY, HDR},
    {0, 1, SLOW, LOCK | LINEAR | WIDE | ORBI | ARCA, EVERY, HDR},
    {0, 1, F30, LOCK | LINEAR | WIDE | ORBI, LOOPING, STD | HDR | LOG},
    {0, 28, F60, WIDE, EVERY, STD | LOG}, // 4K 8:7
    {0, 28, SLOW, WIDE, EVERY, STD | HDR | LOG},
    {0, 4, F240, LEVELING | LINEAR | WIDE, VIDEO, STD},   // 2.7K
    {0, 6, F120 | F60, LOCK | LINEAR | WIDE, VIDEO, STD}, // 2.7K 4:3
    {0, 9, F240, LEVELING | LINEAR | WIDE, VIDEO, STD},   // 1080
    {0, 9, F120 | F60, LOCK | LINEAR | WIDE | ORBI, VIDEO | LAPSE | RUSH | LOOPING, STD},
    {0, 9, SLOW, LOCK | LINEAR | WIDE | ORBI, VIDEO | LAPSE | RUSH, STD},
    {0, 29, F60 | F30, WIDE, VIDEO | RUSH, STD}, // 4K 9:16
    {0, 30, F60 | F30, WIDE, VIDEO | RUSH, STD}, // 1080 9:16
    // wide optic 1.0
    {1, 4, NORMAL, WIDE | MAX_ORBI, VIDEO | RUSH, STD},
    {1, 6, NORMAL, WIDE | MAX_ORBI, VIDEO | RUSH, STD},
    {1, 9, NORMAL, WIDE | MAX_ORBI, VIDEO | RUSH, STD},
    // wide optic 2.0
    {2, 1, NORMAL, LINEAR | WIDE | MAX_ORBI | MAX_ARCA, VIDEO | RUSH | NIGHT, STD},
    {2, 18, NORMAL, LINEAR | WIDE | MAX_ORBI, VIDEO | RUSH | NIGHT, STD}, // 4K 4:3
    {2, 9, F120 | NORMAL, LINEAR | WIDE | MAX_ORBI, VIDEO | RUSH, STD},
    {2, 29, F60 | F30, WIDE | MAX_ORBI, VIDEO, STD},
    {2, 30, F60 | F30, WIDE | MAX_ORBI, VIDEO, STD},
};

template <size_t Count>
uint32_t bit_of(const Choice (&choices)[Count], uint8_t value)
{
    for (const Choice &choice : choices) {
        if (choice.value == value || choice.value_50hz == value) {
            return choice.bit;
        }
    }
    return 0;
}

template <size_t Count>
Bytes values_of(const Choice (&choices)[Count], uint32_t bits, bool at_50hz)
{
    Bytes values;
    for (const Choice &choice : choices) {
        if ((bits & choice.bit) != 0) {
            values.push_back(at_50hz ? choice.value_50hz : choice.value);
        }
    }
    return values;
}

Mode mode_of(FlatMode flat_mode)
{
    const Mode *row = find_row(MODES, [=](const Mode &mode) { return mode.flat_mode == flat_mode; });
    return row == nullptr ? Mode{flat_mode, 0, 0} : *row;
}

bool offers(const Format &format, const Mode &mode, const Situation &situation)
{
    return format.lens == situation.lens && (format.modes & mode.bit) != 0 &&
           (format.profiles & bit_of(PROFILES, situation.video_profile)) != 0 &&
           (!situation.resolution || format.resolution == *situation.resolution) &&
           (!situation.fps || (format.rates & bit_of(RATES, *situation.fps)) != 0);
}

} // namespace

std::optional<Bytes> capability_list(uint8_t key, const Situation &situation)
{
    const Mode mode = mode_of(situation.flat_mode);
    Bytes resolutions;
    uint32_t rates = 0;
    uint32_t views = 0;
    for (const Format &format : FORMATS) {
        if (offers(format, mode, situation)) {
            if (resolutions.empty() || resolutions.back() != format.resolution) {
                resolutions.push_back(format.resolution);
            }
            rates |= format.rates;
            views |= format.views;
        }
    }
    switch (key) {
    case CAP_KEY_RESOLUTION:
        return resolutions;
    case CAP_KEY_FPS:
        return values_of(RATES, rates, situation.anti_flicker != 0);
    case CAP_KEY_FOV:
        return values_of(VIEWS, views & mode.views, false);
    case CAP_KEY_ANTI_FLICKER:
        return Bytes{0, 1};
    case CAP_KEY_VIDEO_PROFILE:
        return values_of(PROFILES, STD | HDR | LOG, false);
    default:
        return std::nullopt;
    }
}

} // namespace zv::sim
