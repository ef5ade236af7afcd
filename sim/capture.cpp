#include "capture.h"

#include "field.h"
#include "modes.h"

#include <zvctrl/camera_records.h>

#include <cstddef>

namespace zv::sim {

namespace {

constexpr uint64_t SECOND = 1000; // in milliseconds

// Photos of a burst, and intervals in milliseconds, by the option values of their settings. 0: none.
constexpr uint8_t BURST_PHOTOS[] = {3, 5, 10, 10, 10, 30, 30, 30, 30, 30, 30, 30, 60, 60};
constexpr uint32_t PHOTO_INTERVALS[] = {0, 0, 500, 1000, 2000, 5000, 10000, 30000, 60000, 120000, 3000};
constexpr uint32_t TIMELAPSE_INTERVALS[] = {500,   1000,   2000,   5000,    10000,   30000,
                                            60000, 120000, 300000, 1800000, 3600000, 3000};
constexpr uint32_t NIGHTLAPSE_INTERVALS[] = {10000,  15000,   20000,   30000, 60000, 120000,
                                             300000, 1800000, 3600000, 10000, 4000,  5000};

template <class Value, size_t Count>
Value at(const Value (&values)[Count], uint8_t index)
{
    return values[index < Count ? index : 0];
}

constexpr Field ENCODING = status(STATUS_SYSTEM_ENCODING_ACTIVE);
constexpr Field VIDEO_PROGRESS = status(STATUS_VIDEO_VIDEO_PROGRESS_COUNTER, 4);
constexpr Field INTERVAL_PHOTOS = status(STATUS_PHOTO_INTERVAL_CAPTURE_COUNT, 4);
constexpr Field COUNT_DOWN = status(STATUS_MULTI_SHOT_MULTI_SHOT_COUNT_DOWN, 4);

} // namespace

bool Capture::start(const FlatModeRow &mode)
{
    if (m_card.full()) {
        return false;
    }
    m_mode = &mode;
    m_group = 0;
    m_waited = 0;
    m_state.set(VIDEO_PROGRESS, 0);
    m_state.set(INTERVAL_PHOTOS, 0);
    const CaptureKind kind = capture_kind(mode.flat_mode);
    if (kind == CaptureKind::BURST) {
        m_group = m_card.new_group();
        take_photos(at(BURST_PHOTOS, m_state.byte(settings(SETTINGS_MULTI_SHOT_BURST_RATE))));
        m_mode = nullptr;
    } else if (kind != CaptureKind::VIDEO && interval_ms() == 0) {
        take_photos(1);
        m_mode = nullptr;
    } else if (kind != CaptureKind::VIDEO) {
        m_group = m_card.new_group();
    }
    m_state.set(ENCODING, active());
    return true;
}

void Capture::stop()
{
    if (!active()) {
        return;
    }
    if (capture_kind(m_mode->flat_mode) == CaptureKind::VIDEO) {
        m_card.end_recording();
    }
    m_mode = nullptr;
    m_state.set(ENCODING, 0);
    m_state.set(VIDEO_PROGRESS, 0);
    m_state.set(COUNT_DOWN, 0);
}

void Capture::second()
{
    if (!active()) {
        return;
    }
    const bool goes_on = capture_kind(m_mode->flat_mode) == CaptureKind::VIDEO ? record_second() : wait_second();
    if (!goes_on) {
        stop();
    }
}

// False when the card is full.
bool Capture::record_second()
{
    const bool room = m_card.record_second();
    m_state.set(VIDEO_PROGRESS, m_state.get(VIDEO_PROGRESS) + room);
    return room;
}

// Takes the photos that fall into this second. False when the card is full, or the interval was switched off.
bool Capture::wait_second()
{
    const uint32_t interval = interval_ms();
    if (interval == 0) {
        return false;
    }
    for (m_waited += SECOND; m_waited >= interval; m_waited -= interval) {
        take_photos(1);
    }
    m_state.set(COUNT_DOWN, (interval - m_waited) / SECOND);
    return !m_card.full();
}

void Capture::take_photos(uint32_t count)
{
    for (uint32_t i = 0; i < count && !m_card.full(); ++i) {
        m_card.add_photo(m_group);
        m_state.set(INTERVAL_PHOTOS, m_state.get(INTERVAL_PHOTOS) + 1);
    }
}

// Between two photos; 0 when the mode takes one photo alone.
uint32_t Capture::interval_ms() const
{
    switch (capture_kind(m_mode->flat_mode)) {
    case CaptureKind::PHOTO:
        return at(PHOTO_INTERVALS, m_state.byte(settings(SETTINGS_PHOTO_SINGLE_INTERVAL)));
    case CaptureKind::TIMELAPSE_PHOTO:
        return at(TIMELAPSE_INTERVALS, m_state.byte(settings(SETTINGS_MULTI_SHOT_TIMELAPSE_RATE)));
    case CaptureKind::NIGHTLAPSE_PHOTO:
        return at(NIGHTLAPSE_INTERVALS, m_state.byte(settings(SETTINGS_MULTI_SHOT_NIGHTLAPSE_RATE)));
    default:
        return 0;
    }
}

} // namespace zv::sim
