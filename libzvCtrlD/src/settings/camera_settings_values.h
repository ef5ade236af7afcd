// The firmware's values of the settings, out of the records. Internal to the library.
#pragma once

#include "camera_settings.h"
#include "flat_modes.h"
#include "setting_row.h"

#include <cstdint>

namespace zv {

// Where a setting is read from: the two records' bytes, null where the caller has none, and the camera.
struct SettingsSource {
    const uint8_t *settings;
    const uint8_t *status;
    uint32_t model;
};

// The block of the settings record that a flat mode is read from; NO_BLOCK for a mode without one. The broadcast writes
// the video block and does not read it.
inline constexpr uint32_t NO_BLOCK = 3;
constexpr uint32_t block_read_in(uint8_t flat_mode)
{
    if (VIDEO_MODES.without({FLAT_MODE_BROADCAST}).contains(flat_mode)) {
        return BLOCK_VIDEO;
    }
    if (PHOTO_MODES.contains(flat_mode)) {
        return BLOCK_PHOTO;
    }
    return MULTI_SHOT_MODES.contains(flat_mode) ? uint32_t{BLOCK_MULTI_SHOT} : NO_BLOCK;
}

// Where the byte lies in the settings record that a way of reading takes from a place of its own, in a flat mode that
// is read from this block. NO_BLOCK is none to a way that has an offset for each.
constexpr uint16_t byte_offset(const ReadWay &read, uint32_t block)
{
    switch (read.way) {
    case Read::OF_BLOCK:
    case Read::OF_BLOCK_OR_PLAIN:
        return read.numbers[block];
    case Read::MULTI_SHOT_OR:
        return read.numbers[block == BLOCK_MULTI_SHOT ? 0 : 1];
    default:
        return read.numbers[0];
    }
}

// The value of a setting that is read from one byte of the settings record.
constexpr int32_t byte_value(const ReadWay &read, uint8_t byte)
{
    const auto replaced = [](int32_t value, int32_t from, int32_t to) { return value == from ? to : value; };
    const auto sign_extended = static_cast<int8_t>(byte);
    switch (read.way) {
    case Read::REPLACED:
        return replaced(byte, read.numbers[0], read.numbers[1]);
    case Read::SIGNED:
        return replaced(sign_extended, read.numbers[1], read.numbers[2]);
    case Read::LOCKED_AS_ONE:
        return sign_extended >= 1 && sign_extended <= 4 ? 255 : sign_extended;
    case Read::MULTI_SHOT_OR:
        return sign_extended;
    default:
        return byte;
    }
}

// The firmware's value of one setting. A missing record gives 0, after a message on standard error; a row that reaches
// past the record reads as 0.
int32_t field_value(const settings_field_t &field, const SettingsSource &source);

} // namespace zv

extern "C" int32_t get_field_value(const appc_setup_all_settings *settings, const settings_field_t *field,
                                   uint32_t model, const appc_system_all_status *status,
                                   const zvcontrol_system_settings *system);
