// The easy video presets: which resolution each has for a field of view and a frame rate.
#include "camera_interface.h"

#include "log_at.h"
#include "zvc_video.h"

#include <algorithm>
#include <iterator>
#include <span>

using namespace zv;

namespace {

enum AspectRatio : uint32_t { WIDESCREEN = 1, UNIVERSAL = 3, MOBILE = 4 };
// NONE: the preset does not have this combination.
enum Resolution : uint8_t { NONE = 0, R_4K = 1, R_2_7K = 4, R_1080 = 9, R_5_3K = 24 };

// The frame rates of each speed, 60 and 50 Hz.
constexpr uint32_t SPEED_FPS[][2] = {{8, 9}, {5, 6}, {1, 2}, {0, 13}}; // 1X, 2X, 4X, 8X
constexpr size_t SPEEDS = std::size(SPEED_FPS);

// What a field of view can do at an aspect ratio. `place` names both in the log, as clients of the log know them.
struct FovRow {
    uint32_t aspect_ratio;
    uint32_t fov;
    Resolution res[SPEEDS];
    const char *place;
};

struct AspectRatioRow {
    uint32_t aspect_ratio;
    const char *place;
};

struct EasyVideo {
    std::span<const AspectRatioRow> aspect_ratios;
    std::span<const FovRow> fovs;
    const char *name;
};

// clang-format off
constexpr AspectRatioRow ASPECT_RATIOS_5_3K[] = {
    {WIDESCREEN, "Video Widescreen"},
    {MOBILE,     "Video Mobile"},
    {UNIVERSAL,  "Video Universal"},
};
constexpr FovRow FOVS_5_3K[] = {
    //                                             1X      2X      4X      8X
    {WIDESCREEN, FOV_WIDE,                         {R_5_3K, R_5_3K, R_4K,   R_2_7K}, "Video Widescreen"},
    {WIDESCREEN, FOV_LINEAR,                       {R_5_3K, R_5_3K, R_4K,   R_2_7K}, "Video Widescreen"},
    {WIDESCREEN, FOV_ORBISCAPE,                    {R_5_3K, R_5_3K, R_4K,   NONE},   "Video Widescreen"},
    {WIDESCREEN, FOV_LINEAR_PLUS_HORIZON_LEVELING, {NONE,   NONE,   R_4K,   R_2_7K}, "Video Widescreen"},
    {WIDESCREEN, FOV_ARCASCAPE,                    {R_5_3K, R_4K,   NONE,   NONE},   "Video Widescreen"},
    {WIDESCREEN, FOV_LINEAR_PLUS_HORIZON_LOCK,     {R_5_3K, R_4K,   NONE,   NONE},   "Video Widescreen"},
    {MOBILE,     FOV_WIDE,                         {R_4K,   R_4K,   NONE,   NONE},   "Video Mobile"},
    {UNIVERSAL,  FOV_WIDE,                         {R_5_3K, R_4K,   NONE,   NONE},   "Video Universal"},
};
constexpr EasyVideo EASY_5_3K = {ASPECT_RATIOS_5_3K, FOVS_5_3K, "Video"};

constexpr AspectRatioRow ASPECT_RATIOS_4K[] = {
    {WIDESCREEN, "HDR Widescreen"},
    {MOBILE,     "HDR Universal"},
    {UNIVERSAL,  "HDR Universal"},
};
constexpr FovRow FOVS_4K[] = {
    //                                             1X      2X      4X      8X
    {WIDESCREEN, FOV_WIDE,                         {R_4K,   R_4K,   NONE,   R_2_7K}, "HDR Widescreen"},
    {WIDESCREEN, FOV_LINEAR,                       {R_4K,   R_4K,   NONE,   R_2_7K}, "HDR Widescreen"},
    {WIDESCREEN, FOV_ORBISCAPE,                    {R_4K,   R_4K,   R_4K,   NONE},   "HDR Widescreen"},
    {WIDESCREEN, FOV_LINEAR_PLUS_HORIZON_LEVELING, {NONE,   NONE,   R_4K,   R_2_7K}, "Video Widescreen"},
    {WIDESCREEN, FOV_ARCASCAPE,                    {R_4K,   R_4K,   NONE,   NONE},   "HDR Widescreen"},
    {WIDESCREEN, FOV_LINEAR_PLUS_HORIZON_LOCK,     {R_4K,   R_4K,   NONE,   NONE},   "HDR Widescreen"},
    {MOBILE,     FOV_WIDE,                         {R_4K,   R_4K,   NONE,   NONE},   "HDR Universal"},
    {UNIVERSAL,  FOV_WIDE,                         {R_4K,   R_4K,   NONE,   NONE},   "HDR Universal"},
};
constexpr EasyVideo EASY_4K = {ASPECT_RATIOS_4K, FOVS_4K, "HDR"};

constexpr AspectRatioRow ASPECT_RATIOS_1080P[] = {
    {WIDESCREEN, "HDR Widescreen"},
    {UNIVERSAL,  "HDR Universal"},
};
constexpr FovRow FOVS_1080P[] = {
    //                                             1X      2X      4X      8X
    {WIDESCREEN, FOV_WIDE,                         {R_1080, R_1080, R_1080, R_1080}, "HDR Widescreen"},
    {WIDESCREEN, FOV_LINEAR,                       {R_1080, R_1080, R_1080, R_1080}, "HDR Widescreen"},
    {WIDESCREEN, FOV_ORBISCAPE,                    {R_1080, R_1080, R_1080, NONE},   "HDR Widescreen"},
    {WIDESCREEN, FOV_LINEAR_PLUS_HORIZON_LEVELING, {NONE,   NONE,   NONE,   R_1080}, "Video Widescreen"},
    {WIDESCREEN, FOV_LINEAR_PLUS_HORIZON_LOCK,     {R_1080, R_1080, R_1080, NONE},   "HDR Widescreen"},
    {UNIVERSAL,  FOV_WIDE,                         {R_1080, R_1080, NONE,   NONE},   "HDR Universal"},
};
constexpr EasyVideo EASY_1080P = {ASPECT_RATIOS_1080P, FOVS_1080P, "HDR"};
// clang-format on

Resolution res_of(const FovRow &row, uint32_t fps)
{
    for (size_t speed = 0; speed < SPEEDS; ++speed) {
        if (fps == SPEED_FPS[speed][0] || fps == SPEED_FPS[speed][1]) {
            return row.res[speed];
        }
    }
    return NONE;
}

void resolve(const EasyVideo &preset, uint32_t *res, uint32_t fps, uint32_t fov, uint32_t aspect_ratio,
             const SourceLocation &where = SourceLocation::current())
{
    const auto aspect = std::find_if(preset.aspect_ratios.begin(), preset.aspect_ratios.end(),
                                     [&](const AspectRatioRow &row) { return row.aspect_ratio == aspect_ratio; });
    if (aspect == preset.aspect_ratios.end()) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "Unsupported Aspect Ratio:%d given for Easy %s", aspect_ratio, preset.name);
        return;
    }
    const auto row = std::find_if(preset.fovs.begin(), preset.fovs.end(), [&](const FovRow &candidate) {
        return candidate.aspect_ratio == aspect_ratio && candidate.fov == fov;
    });
    if (row == preset.fovs.end()) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "Unsupported FOV:%d given for Easy %s", fov, aspect->place);
        return;
    }
    const Resolution match = res_of(*row, fps);
    if (match == NONE) {
        ZV_LOG_AT(where, ZV_LOG_ERROR, "Unsupported FPS value:%d given for Easy %s fov:%d", fps, row->place, fov);
        return;
    }
    *res = match;
}

} // namespace

void easy_5_3k_video_get_res(uint32_t *res, uint32_t fps, uint32_t fov, uint32_t aspect_ratio)
{
    resolve(EASY_5_3K, res, fps, fov, aspect_ratio);
}

void easy_4k_video_get_res(uint32_t *res, uint32_t fps, uint32_t fov, uint32_t aspect_ratio)
{
    resolve(EASY_4K, res, fps, fov, aspect_ratio);
}

void easy_1080p_video_get_res(uint32_t *res, uint32_t fps, uint32_t fov, uint32_t aspect_ratio)
{
    resolve(EASY_1080P, res, fps, fov, aspect_ratio);
}
