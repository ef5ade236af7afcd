#include "camera_status.h"

#include "append_whole.h"
#include "bytes.h"
#include "camera_status_fields.h"
#include "csi.h"
#include "find_row.h"
#include "flat_modes.h"
#include "json_writer.h"
#include "zvcontrol_info.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>
#include <span>
#include <string_view>
#include <variant>

#define ZV_SOURCE_PATH "libzvCtrlD/src/camera_status"

namespace {

using zv::JSON_MEMBER_SIZE;
using zv::le32;
using zv::le64;
using zv::Place;
using zv::PushNotification;
using zv::StatusField;
using zv::StatusOutput;
using zv::StatusValue;

// What the reads remember. Threads share it, each number by itself.
using SharedNumber = std::atomic<int32_t>;
constexpr auto RELAXED = std::memory_order_relaxed;

SharedNumber pBatteryPercentage = 0; // the last that was not negative
SharedNumber vellix_default = 1;     // of the last flat mode that has one
struct {
    SharedNumber vellix_default = 0;
    SharedNumber active_preset = 0;
} errorDisplayed; // 1 once a run of unsupported values is in the log

constexpr int32_t RECORD_SIZE = sizeof(appc_system_all_status);
constexpr std::string_view OPENING = "\"status\":{\n";
constexpr size_t DOCUMENT_SIZE = (zv::STATUS_COUNT + 1) * JSON_MEMBER_SIZE;

constexpr uint32_t LEVEL_CHARGING = 4;
constexpr int32_t NEXT_POLL_MSEC = 500;
constexpr uint8_t ENCODING = 1;
constexpr int32_t ANALYTICS_NOT_READY = 0;
constexpr int32_t ANALYTICS_READY = 2;
constexpr int32_t EXPOSURE_TYPES[] = {1, 2, 0, 3}; // published, by the firmware's number
constexpr int32_t COORDINATE_MAX = 100;

// The field that holds a group's active preset, by the group's number.
constexpr uint16_t NO_FIELD = 0;
constexpr uint16_t PRESET_OF_GROUP[] = {
    STATUS_APP_ACTIVE_VIDEO_PRESETS,     // PRESETS_VIDEO
    STATUS_APP_ACTIVE_PHOTO_PRESETS,     // PRESETS_PHOTO
    STATUS_APP_ACTIVE_TIMELAPSE_PRESETS, // PRESETS_TIME_LAPSE
    STATUS_APP_ACTIVE_VIDEO_PRESETS,     // 3
    STATUS_APP_ACTIVE_PHOTO_PRESETS,     // 4
    STATUS_APP_ACTIVE_TIMELAPSE_PRESETS, // 5
    NO_FIELD,                            // 6
    NO_FIELD,                            // 7
    STATUS_APP_ACTIVE_VIDEO_PRESETS,     // 8
    STATUS_APP_ACTIVE_VIDEO_PRESETS,     // 9
    NO_FIELD,                            // 10
    STATUS_APP_ACTIVE_VIDEO_PRESETS,     // 11
    STATUS_APP_ACTIVE_PHOTO_PRESETS,     // 12
    STATUS_APP_ACTIVE_TIMELAPSE_PRESETS, // 13
    STATUS_APP_ACTIVE_VIDEO_PRESETS,     // 14
};
static_assert(PRESET_OF_GROUP[zv::PRESETS_VIDEO] == STATUS_APP_ACTIVE_VIDEO_PRESETS &&
              PRESET_OF_GROUP[zv::PRESETS_PHOTO] == STATUS_APP_ACTIVE_PHOTO_PRESETS &&
              PRESET_OF_GROUP[zv::PRESETS_TIME_LAPSE] == STATUS_APP_ACTIVE_TIMELAPSE_PRESETS);

// The field that holds the vellix default of flat modes: a time lapse video has that of the multi shots, and a
// broadcast has none.
struct VellixDefault {
    zv::FlatModeSet flat_modes;
    uint16_t field;
};
constexpr VellixDefault VELLIX_OF_FLAT_MODE[] = {
    {zv::VIDEO_MODES.without({zv::FLAT_MODE_TIME_LAPSE_VIDEO, zv::FLAT_MODE_BROADCAST}), STATUS_VIDEO_VELLIX_DEFAULT},
    {zv::PHOTO_MODES, STATUS_PHOTO_VELLIX_DEFAULT},
    {zv::MULTI_SHOT_MODES.with({zv::FLAT_MODE_TIME_LAPSE_VIDEO}), STATUS_MULTI_SHOT_VELLIX_DEFAULT},
};

uint16_t vellix_field(uint8_t flat_mode)
{
    const auto *row = zv::find_row(
        VELLIX_OF_FLAT_MODE, [=](const VellixDefault &candidate) { return candidate.flat_modes.contains(flat_mode); });
    return row != nullptr ? row->field : NO_FIELD;
}

bool is_in_record(int32_t offset)
{
    return offset >= 0 && offset < RECORD_SIZE;
}

int32_t signed_byte(const uint8_t *status, int32_t offset)
{
    return static_cast<int8_t>(status[offset]);
}

uint64_t read_int(const uint8_t *status, const Place &place)
{
    if (place.size != 1 && place.size != 4 && place.size != 8) {
        ZV_LOG(ZV_LOG_ERROR, "Unknown field size:%d was given", place.size);
        return 0;
    }
    if (!is_in_record(place.offset) || place.offset > RECORD_SIZE - place.size) {
        ZV_LOG(ZV_LOG_ERROR, "Invalid field offset:%d was given", place.offset);
        return 0;
    }
    const uint8_t *field = status + place.offset;
    return place.size == 1 ? *field : place.size == 4 ? le32(field) : le64(field);
}

uint64_t read_csi(int32_t key)
{
    uint32_t value = 0;
    ZVCSIListener::GetInstance().GetCSIValue(static_cast<uint32_t>(key), value);
    return value;
}

uint64_t read_battery_level(const uint8_t *charge)
{
    const uint32_t charge_state = charge[0];
    const uint32_t bars = charge[1];
    ZV_LOG(ZV_LOG_TRACE, "bar/ch, %u,%u\n", bars, charge_state);
    return charge_state >= 1 && charge_state <= 3 ? LEVEL_CHARGING : bars;
}

int32_t read_battery_percentage(int32_t percentage)
{
    if (percentage >= 0) {
        pBatteryPercentage.store(percentage, RELAXED);
    }
    return pBatteryPercentage.load(RELAXED);
}

uint64_t read_logs_ready(uint8_t linux_core_active)
{
    uint32_t ready = 0;
    if (linux_core_active == 1) {
        zvcontrol_get_logs_ready_status(&ready);
    }
    return ready;
}

int32_t read_exposure_type(uint8_t type)
{
    if (type >= std::size(EXPOSURE_TYPES)) {
        ZV_LOG(ZV_LOG_ERROR, "Unknown Liveview status type");
        return 0;
    }
    return EXPOSURE_TYPES[type];
}

int32_t read_exposure_coordinate(const uint8_t *status, int32_t offset)
{
    const bool is_x = offset == STATUS_LIVEVIEW_EXPOSURE_SELECT_X;
    int32_t value = signed_byte(status, offset);
    if (value < 0 || value > COORDINATE_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "exposure select %c %d, out of range 0-100", is_x ? 'x' : 'y', value);
        return 0;
    }
    ZV_LOG(ZV_LOG_TRACE, "Exposure %c from firmware is %d", is_x ? 'X' : 'Y', value);
    if (status[STATUS_EXPOSURE_COORDINATES_DIRECT] == 0) {
        value = COORDINATE_MAX - value;
        ZV_LOG(ZV_LOG_TRACE, "Exposure %c from firmware is adjusted to %d", is_x ? 'X' : 'Y', value);
    }
    return value;
}

uint64_t read_active_preset(const uint8_t *status, uint32_t group)
{
    const uint16_t field = group < std::size(PRESET_OF_GROUP) ? PRESET_OF_GROUP[group] : NO_FIELD;
    if (field == NO_FIELD) {
        if (errorDisplayed.active_preset.exchange(1, RELAXED) == 0) {
            ZV_LOG(ZV_LOG_ERROR, "Preset group 0x%ld isn't supported @ %s:%d\n",
                   static_cast<long>(group + zv::PUBLISHED_PRESET_GROUP), ZV_SOURCE_PATH, __LINE__);
        }
        return 0;
    }
    errorDisplayed.active_preset.store(0, RELAXED);
    return le32(status + field);
}

// Sign-extended to 32 bits, and then unsigned.
uint64_t read_vellix_default(const uint8_t *status, uint8_t flat_mode)
{
    const uint16_t field = vellix_field(flat_mode);
    if (field != NO_FIELD) {
        vellix_default.store(signed_byte(status, field), RELAXED);
        errorDisplayed.vellix_default.store(0, RELAXED);
    } else if (errorDisplayed.vellix_default.exchange(1, RELAXED) == 0) {
        ZV_LOG(ZV_LOG_ERROR, "Flat mode %d, doesn't support vellix, using video_vellix_default value. @ %s:%d\n",
               static_cast<int8_t>(flat_mode), ZV_SOURCE_PATH, __LINE__);
    }
    return static_cast<uint32_t>(vellix_default.load(RELAXED));
}

bool takes_part_in_changes(const StatusField &row, const PushNotification &push)
{
    if (row.output == StatusOutput::NONE) {
        return false;
    }
    if (!is_in_record(row.offset)) {
        ZV_LOG(ZV_LOG_ERROR, "WARNING: discarding %s at invalid offset of %d", camera_status_name(row.id), row.offset);
        return false;
    }
    return push.mode != 0;
}

} // namespace

namespace zv {

std::string_view status_text(const uint8_t *status, const Place &place)
{
    if (!is_in_record(place.offset)) {
        return {};
    }
    const auto *text = reinterpret_cast<const char *>(status + place.offset);
    return {text, strnlen(text, static_cast<size_t>(std::min(place.size, RECORD_SIZE - place.offset)))};
}

StatusValue read_status_value(StatusOutput output, const uint8_t *status, const Place &place)
{
    using enum StatusOutput;
    switch (output) {
    case NONE:
        return {};
    case INT:
        return read_int(status, place);
    case SIGNED:
        return signed_byte(status, place.offset);
    case EXTENDED:
        return uint64_t{static_cast<uint32_t>(signed_byte(status, place.offset))};
    case TEXT:
        return status_text(status, place);
    case CSI:
        return read_csi(place.offset);
    case LEVEL:
        return read_battery_level(status + place.offset);
    case PERCENTAGE:
        return read_battery_percentage(signed_byte(status, place.offset));
    case NEXT_POLL:
        return NEXT_POLL_MSEC;
    case ANALYTICS:
        return status[place.offset] == ENCODING ? ANALYTICS_NOT_READY : ANALYTICS_READY;
    case LOGS:
        return read_logs_ready(status[place.offset]);
    case EXPOSURE:
        return read_exposure_type(status[place.offset]);
    case COORDINATE:
        return read_exposure_coordinate(status, place.offset);
    case GROUP:
        return uint64_t{le32(status + place.offset) + zv::PUBLISHED_PRESET_GROUP};
    case PRESET:
        return read_active_preset(status, le32(status + place.offset));
    case VELLIX:
        return read_vellix_default(status, status[place.offset]);
    }
    return {};
}

void write_status_value(JsonWriter &json, const StatusValue &value)
{
    if (const auto *number = std::get_if<uint64_t>(&value)) {
        json.number(*number);
    } else if (const auto *signed_number = std::get_if<int32_t>(&value)) {
        json.number(*signed_number);
    } else if (const auto *text = std::get_if<std::string_view>(&value)) {
        json.literal("\"");
        json.literal(*text);
        json.literal("\"");
    }
}

namespace {

void write_member(JsonWriter &json, const StatusField &row, const uint8_t *status)
{
    json.key(row.id);
    write_status_value(json, read_status_value(row.output, status, {row.offset, row.size}));
}

// What an entry of the cache is to hold once it has gone out. The entry already has room for it.
struct CacheUpdate {
    std::string *cached;
    const char *fresh; // in the document
    size_t size;
};

// The low 32 bits of a number, which counts as INT64_MAX at most; 0 for a text.
uint32_t low_bits(const StatusValue &value)
{
    if (const auto *number = std::get_if<uint64_t>(&value)) {
        return static_cast<uint32_t>(std::min<uint64_t>(*number, INT64_MAX));
    }
    const auto *signed_number = std::get_if<int32_t>(&value);
    return signed_number != nullptr ? static_cast<uint32_t>(*signed_number) : 0;
}

} // namespace

int32_t write_status(std::stringstream &stream, const uint8_t *status, const StatusTable &fields)
{
    char buffer[DOCUMENT_SIZE];
    JsonWriter json(buffer);
    json.literal(OPENING);
    for (const StatusField &row : fields) {
        if (row.output != StatusOutput::NONE && is_in_record(row.offset)) {
            write_member(json, row, status);
            json.comma();
        }
    }
    json.drop_comma();
    json.literal("}");
    return append_document(stream, json.text(), ZV_OK);
}

int32_t write_status_changes(std::stringstream &stream, const uint8_t *status, std::vector<std::string> &cache,
                             const StatusTable &fields, const PushTable &pushes)
try {
    char buffer[DOCUMENT_SIZE];
    JsonWriter json(buffer);
    CacheUpdate updates[STATUS_COUNT];
    int32_t count = 0;
    for (size_t i = 0; i < fields.size(); ++i) {
        if (!takes_part_in_changes(fields[i], pushes[i])) {
            continue;
        }
        if (i >= cache.size()) {
            ZV_LOG(ZV_LOG_ERROR, "Push Error - Cache status invalid size detected at index  %d", static_cast<int>(i));
            continue;
        }
        const std::streamsize start = json.size();
        write_member(json, fields[i], status);
        const std::string_view fresh = json.text().substr(static_cast<size_t>(start));
        std::string &cached = cache[i];
        if (fresh == cached) {
            json.truncate(start);
            continue;
        }
        cached.reserve(fresh.size());
        updates[count++] = {&cached, fresh.data(), fresh.size()};
        ZV_LOG(ZV_LOG_INFO, "index=%d change count = %d, old=[%s]  new=[%.*s]", static_cast<int>(i), count,
               cached.c_str(), static_cast<int>(fresh.size()), fresh.data());
        json.comma();
    }
    json.drop_comma();
    if (const int32_t result = append_whole(stream, json.text()); result != ZV_OK) {
        return result == ZV_ERR_OUTOFMEM ? result : 0; // no member was written
    }
    for (const CacheUpdate &update : std::span(updates, static_cast<size_t>(count))) {
        update.cached->assign(update.fresh, update.size);
    }
    return count;
} catch (const std::bad_alloc &) {
    return ZV_ERR_OUTOFMEM;
}

void update_status_values(const uint8_t *status, std::vector<uint32_t> &values, const StatusTable &fields,
                          const PushTable &pushes)
{
    for (size_t i = 0; i < fields.size() && i < values.size(); ++i) {
        if (takes_part_in_changes(fields[i], pushes[i])) {
            values[i] = low_bits(read_status_value(fields[i].output, status, {fields[i].offset, fields[i].size}));
        }
    }
}

} // namespace zv

int32_t camera_status_serialize_status_to_json(std::stringstream &stream, const appc_system_all_status *status,
                                               [[maybe_unused]] uint32_t model)
{
    return zv::write_status(stream, status->bytes, zv::status_fields);
}

int32_t camera_status_serialize_status_changes_to_json(std::stringstream &stream, const appc_system_all_status *status,
                                                       [[maybe_unused]] const appc_system_all_status *previous,
                                                       [[maybe_unused]] uint32_t model, std::vector<std::string> &cache)
{
    return zv::write_status_changes(stream, status->bytes, cache, zv::status_fields, zv::push_notification_fields);
}

void update_camera_status(const appc_system_all_status *status, [[maybe_unused]] uint32_t model,
                          std::vector<uint32_t> &values)
{
    zv::update_status_values(status->bytes, values, zv::status_fields, zv::push_notification_fields);
}

int32_t camera_status_init_bossCache([[maybe_unused]] uint32_t model, std::vector<std::string> &cache)
try {
    cache.resize(cache.size() + zv::STATUS_COUNT);
    ZV_LOG(ZV_LOG_DEBUG, "init status max index = %d", static_cast<int>(zv::STATUS_COUNT));
    return ZV_OK;
} catch (const std::bad_alloc &) {
    return ZV_ERR_OUTOFMEM;
}
