#include "modes.h"

#include "find_row.h"

namespace zv::sim {

namespace {

// The modes that do not record a video.
struct PhotoCapture {
    FlatMode flat_mode;
    CaptureKind captures;
};

constexpr PhotoCapture PHOTO_CAPTURES[] = {
    {FLAT_MODE_SINGLE_PHOTO, CaptureKind::PHOTO},
    {FLAT_MODE_17, CaptureKind::PHOTO},
    {FLAT_MODE_NIGHT_PHOTO, CaptureKind::PHOTO},
    {FLAT_MODE_BURST_PHOTO, CaptureKind::BURST},
    {FLAT_MODE_TIME_LAPSE_PHOTO, CaptureKind::TIMELAPSE_PHOTO},
    {FLAT_MODE_NIGHT_LAPSE_PHOTO, CaptureKind::NIGHTLAPSE_PHOTO},
};

} // namespace

CaptureKind capture_kind(FlatMode flat_mode)
{
    const PhotoCapture *row =
        find_row(PHOTO_CAPTURES, [=](const PhotoCapture &photo) { return photo.flat_mode == flat_mode; });
    return row == nullptr ? CaptureKind::VIDEO : row->captures;
}

const FlatModeRow *find_capture_mode(uint8_t capture_mode)
{
    return find_row(FLAT_MODES, [=](const FlatModeRow &row) {
        return row.capture_mode == capture_mode && capture_mode != NO_CAPTURE_MODE;
    });
}

const FlatModeRow *find_mode(uint8_t mode, uint8_t sub_mode)
{
    return find_row(FLAT_MODES, [=](const FlatModeRow &row) { return row.mode == mode && row.sub_mode == sub_mode; });
}

} // namespace zv::sim
