#include "modes.h"

#include <zvctrl/zvc_commands.h>

#include <algorithm>
#include <iterator>

namespace zv::sim {

namespace {

constexpr uint8_t APP = REMOTE_GROUP_APP;
constexpr uint8_t VIDEO = REMOTE_GROUP_VIDEO;
constexpr uint8_t PHOTO = REMOTE_GROUP_PHOTO;
constexpr uint8_t MULTISHOT = REMOTE_GROUP_MULTISHOT;

constexpr FlatMode FLAT_MODES[] = {
    // flat mode, mode, sub mode, settings, presets, shutter, capture mode, captures
    {12, 0, 0, Block::VIDEO, 0, VIDEO, 0, CaptureKind::VIDEO},                     // video
    {13, 0, 1, Block::VIDEO, 2, VIDEO, 1, CaptureKind::VIDEO},                     // time lapse video
    {14, 0, 2, Block::VIDEO, 0, VIDEO, 0, CaptureKind::VIDEO},                     //
    {15, 0, 3, Block::VIDEO, 0, VIDEO, 2, CaptureKind::VIDEO},                     // looping
    {24, 0, 4, Block::VIDEO, 2, VIDEO, 10, CaptureKind::VIDEO},                    // rush lapse
    {25, 0, 5, Block::VIDEO, 0, APP, 11, CaptureKind::VIDEO},                      //
    {26, 0, 6, Block::MULTI_SHOT, 2, APP, 12, CaptureKind::VIDEO},                 // night lapse video
    {27, 0, 7, Block::VIDEO, 0, APP, 0, CaptureKind::VIDEO},                       //
    {29, 0, 8, Block::MULTI_SHOT, 2, APP, 13, CaptureKind::VIDEO},                 // star trail
    {30, 0, 9, Block::MULTI_SHOT, 2, APP, 14, CaptureKind::VIDEO},                 // light painting
    {31, 0, 10, Block::MULTI_SHOT, 2, APP, 15, CaptureKind::VIDEO},                // vehicle lights
    {16, 1, 0, Block::PHOTO, 1, PHOTO, 3, CaptureKind::PHOTO},                     // single photo
    {17, 1, 1, Block::PHOTO, 1, PHOTO, 4, CaptureKind::PHOTO},                     //
    {18, 1, 2, Block::PHOTO, 1, PHOTO, 5, CaptureKind::PHOTO},                     // night photo
    {19, 1, 3, Block::MULTI_SHOT, 1, MULTISHOT, 6, CaptureKind::BURST},            // burst
    {20, 1, 4, Block::MULTI_SHOT, 2, MULTISHOT, 7, CaptureKind::TIMELAPSE_PHOTO},  // time lapse photo
    {21, 1, 5, Block::MULTI_SHOT, 2, MULTISHOT, 8, CaptureKind::NIGHTLAPSE_PHOTO}, // night lapse photo
    {23, 3, 0, Block::VIDEO, 0, APP, 9, CaptureKind::VIDEO},                       // broadcast
};

struct PresetMode {
    uint32_t preset;
    uint8_t flat_mode;
};

constexpr PresetMode PRESET_MODES[] = {
    {0xA0000, 12},  {0xA0001, 12},  {0xA0002, 12},                  // video in three qualities
    {0xC0000, 16},  {0xC0001, 18},                                  // photo, night photo
    {0xD0000, 24},  {0xD0001, 29},  {0xD0002, 30},  {0xD0003, 31},  // rush lapse, star trail, painting, lights
    {0x180000, 24}, {0x180001, 29}, {0x180002, 30}, {0x180003, 31}, // the same with the add-on lens
    {0x150000, 24},
};

template <class Row, size_t Count, class Test>
const Row *find(const Row (&rows)[Count], Test test)
{
    const Row *row = std::find_if(std::begin(rows), std::end(rows), test);
    return row == std::end(rows) ? nullptr : row;
}

} // namespace

const FlatMode *find_flat_mode(uint8_t flat_mode)
{
    return find(FLAT_MODES, [&](const FlatMode &row) { return row.flat_mode == flat_mode; });
}

const FlatMode *find_capture_mode(uint8_t capture_mode)
{
    return find(FLAT_MODES, [&](const FlatMode &row) { return row.capture_mode == capture_mode; });
}

const FlatMode *find_mode(uint8_t mode, uint8_t sub_mode)
{
    return find(FLAT_MODES, [&](const FlatMode &row) { return row.mode == mode && row.sub_mode == sub_mode; });
}

const FlatMode *find_preset_mode(uint32_t preset)
{
    const PresetMode *row = find(PRESET_MODES, [&](const PresetMode &p) { return p.preset == preset; });
    return row == nullptr ? nullptr : find_flat_mode(row->flat_mode);
}

} // namespace zv::sim
