// One setting of the camera in one row: its names, its options, how it is read and how it is written. The rows are in
// setting_rows.h; what the library looks up at run time is made of them by the compiler. Internal to the library.
#pragma once

#include "camera_records.h"
#include "camera_setting_ids.h"
#include "flat_modes.h"
#include "option_lists.h"
#include "remote_commands.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace zv {

// Which camera generations have the setting.
enum Generations : uint8_t { DEFAULT, BOTH };

// A setting of the camera as a whole is written without a preset edit around it.
enum Scope : uint8_t { OF_PRESET, OF_CAMERA };

// What a value reads as that is no option's.
enum Unlisted : uint8_t {
    AS_DEFAULT,
    AS_ITSELF,
    PERCENTAGE_AS_ITSELF, // 10 to 100; as the default otherwise
};

inline constexpr std::span<const Option> NO_OPTIONS = {};

// Where the record has the value, and the command that takes it as it is. A setting with a bare name has neither: it is
// worked out, and written in a way of its own.
struct PlainAccess {
    RemoteCommand command;
    uint8_t offset;     // in appc_setup_all_settings
    uint8_t write_size; // bytes of the command's payload: 1 or 4
    uint8_t read_size;  // bytes in the record: 1 or 4
};

inline constexpr PlainAccess BARE_NAME = {RemoteCommand{}, 0, 0, 1};

constexpr PlainAccess plain(RemoteCommand command, uint8_t offset, uint8_t write_size = 1, uint8_t read_size = 1)
{
    return {command, offset, write_size, read_size};
}

// ---- Reading ----

enum class Read : uint8_t {
    PLAIN,             // what the row's place says; byte 0 of the record for a bare name
    REPLACED,          // the same, but one value reads as another
    BYTE,              // a byte of the settings record
    SIGNED,            // the same with its sign; one value may read as another
    NUMBER,            // 4 bytes of the settings record
    STATUS,            // a signed byte of the status record
    LOCKED_AS_ONE,     // a signed byte; the four locked orientations read as one
    OF_BLOCK,          // a byte of the block that the flat mode uses; 0 in other modes
    OF_BLOCK_OR_PLAIN, // the same; plain, with a log line, in other modes
    MULTI_SHOT_OR,     // a signed byte of the multi-shot block in its modes, of another place in all others
    SHORTCUT,          // a slot of the block's shortcuts
    SCHEDULE,          // a time of day and two flags
    EASY_SPEED,        // the speed that resolution and frame rate are
    ACTIVE_PRESET,     // the active preset of a group, as its value
};

// What the numbers are, a function below says per way.
struct ReadWay {
    Read way;
    uint16_t numbers[3];
};

inline constexpr ReadWay READ_PLAIN = {Read::PLAIN, {}};
inline constexpr ReadWay SCHEDULE_READ = {Read::SCHEDULE, {}};
inline constexpr ReadWay EASY_SPEED_READ = {Read::EASY_SPEED, {}};

constexpr ReadWay replaced(uint16_t from, uint16_t to)
{
    return {Read::REPLACED, {from, to}};
}

constexpr ReadWay byte_at(uint16_t offset)
{
    return {Read::BYTE, {offset}};
}

constexpr ReadWay signed_at(uint16_t offset, uint16_t from = 0, uint16_t to = 0)
{
    return {Read::SIGNED, {offset, from, to}};
}

constexpr ReadWay number_at(uint16_t offset)
{
    return {Read::NUMBER, {offset}};
}

constexpr ReadWay status_at(uint16_t offset)
{
    return {Read::STATUS, {offset}};
}

constexpr ReadWay orientation_at(uint16_t offset)
{
    return {Read::LOCKED_AS_ONE, {offset}};
}

constexpr ReadWay of_block(uint16_t video, uint16_t photo, uint16_t multi_shot)
{
    return {Read::OF_BLOCK, {video, photo, multi_shot}};
}

constexpr ReadWay of_block_or_plain(uint16_t video, uint16_t photo, uint16_t multi_shot)
{
    return {Read::OF_BLOCK_OR_PLAIN, {video, photo, multi_shot}};
}

constexpr ReadWay multi_shot_or(uint16_t multi_shot, uint16_t other)
{
    return {Read::MULTI_SHOT_OR, {multi_shot, other}};
}

constexpr ReadWay shortcut(uint16_t slot)
{
    return {Read::SHORTCUT, {slot}};
}

constexpr ReadWay active_preset(PresetGroup group)
{
    constexpr uint16_t OFFSETS[] = {STATUS_APP_ACTIVE_VIDEO_PRESETS, STATUS_APP_ACTIVE_PHOTO_PRESETS,
                                    STATUS_APP_ACTIVE_TIMELAPSE_PRESETS};
    return {Read::ACTIVE_PRESET, {group, OFFSETS[group]}};
}

// ---- Writing ----

enum class Write : uint8_t {
    PLAIN,               // the value to the caller's group and action
    LOW_BYTE,            // to a command of its own, whatever the caller's row says
    BY_BLOCK,            // to the command of the block that the flat mode uses
    OPERATION,           // by a camera operation
    VIDEO_ISO,           // a limit, and the ISO mode in the modes that have one
    PHOTO_EXPOSURE,      // plain, after the white balance fits
    MULTI_SHOT_EXPOSURE, // plain, after rate and white balance fit
    BROADCAST_VIEW,      // with the present resolution and frame rate
    ACTUAL_ORIENTATION,  // the actual one where it is to be locked
    VIDEO_VIEW,          // with a resolution that has it, in the easy mode
    SHORTCUT,            // a slot
    AUDIO,               // by a camera operation, unless the sound cage forbids it
    FRONT_DISPLAY,       // when it is another than the present one
    SCHEDULE,            // a time of day and two flags
    EASY_SPEED,          // as resolution, frame rate and field of view
    LOAD_PRESET,         // of a group, by its value
};

// The camera operations that write a setting.
enum Operation : uint8_t {
    SET_VIDEO_RES,
    SET_VIDEO_FPS,
    SET_VIDEO_ISO,
    SET_VIDEO_ISO_MIN,
    SET_VIDEO_BIT_RATE,
    SET_VIDEO_BIT_DEPTH,
    SET_PHOTO_ISO,
    SET_PHOTO_ISO_MIN,
    SET_TIMELAPSE_RATE,
    SET_NIGHTLAPSE_RATE,
    SET_MULTISHOT_ISO,
    SET_MULTISHOT_ISO_MIN,
    SET_CAPTURE_DELAY,
    SET_AUDIO_OPTION,
    SET_MIC_OPTION,
    SET_LENS_STATUS,
};

// What the numbers are, a function below says per way.
struct WriteWay {
    Write way;
    uint16_t numbers[3];
};

inline constexpr WriteWay WRITE_PLAIN = {Write::PLAIN, {}};
inline constexpr WriteWay PHOTO_EXPOSURE_WRITE = {Write::PHOTO_EXPOSURE, {}};
inline constexpr WriteWay MULTI_SHOT_EXPOSURE_WRITE = {Write::MULTI_SHOT_EXPOSURE, {}};
inline constexpr WriteWay BROADCAST_FOV_WRITE = {Write::BROADCAST_VIEW, {}};
inline constexpr WriteWay ORIENTATION_WRITE = {Write::ACTUAL_ORIENTATION, {}};
inline constexpr WriteWay VIDEO_FOV_WRITE = {Write::VIDEO_VIEW, {}};
inline constexpr WriteWay FRONT_DISPLAY_WRITE = {Write::FRONT_DISPLAY, {}};
inline constexpr WriteWay SCHEDULE_WRITE = {Write::SCHEDULE, {}};
inline constexpr WriteWay EASY_SPEED_WRITE = {Write::EASY_SPEED, {}};

constexpr WriteWay low_byte_to(RemoteCommand command)
{
    return {Write::LOW_BYTE, {command}};
}

constexpr WriteWay by_block(RemoteCommand video, RemoteCommand photo, RemoteCommand multi_shot)
{
    return {Write::BY_BLOCK, {video, photo, multi_shot}};
}

constexpr WriteWay by_operation(Operation operation)
{
    return {Write::OPERATION, {operation}};
}

constexpr WriteWay video_iso(Operation operation)
{
    return {Write::VIDEO_ISO, {operation}};
}

constexpr WriteWay audio(Operation operation)
{
    return {Write::AUDIO, {operation}};
}

constexpr WriteWay to_shortcut(uint16_t slot)
{
    return {Write::SHORTCUT, {slot}};
}

constexpr WriteWay load_preset(PresetGroup group)
{
    return {Write::LOAD_PRESET, {group}};
}

// ---- The row ----

// A table of these exists for the compiler alone.
struct Setting {
    camera_setting_id id;
    Generations generations;
    Scope scope;
    char path[44];                   // the name in the id table
    std::span<const Option> options; // in menu order; of the sable_knoll generation, whose settings all have some
    uint32_t default_id;             // the option that an unlisted value reads as
    PlainAccess place = BARE_NAME;
    ReadWay read = READ_PLAIN;
    WriteWay write = WRITE_PLAIN;
    Unlisted unlisted = AS_DEFAULT;
};

} // namespace zv
