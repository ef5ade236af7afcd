#include "camera_status.h"

#include "bytes.h"
#include "camera_status_fields.h"
#include "csi.h"
#include "json_writer.h"
#include "zvcontrol_info.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

#define ZV_SOURCE_PATH "libzvCtrlD/src/camera_status"

namespace {

using zv::JSON_MEMBER_SIZE;
using zv::JsonWriter;
using zv::le32;
using zv::le64;
using zv::Place;
using zv::PushNotification;
using zv::StatusField;
using zv::StatusOutput;

// What the output functions remember. Threads share it, each number by itself.
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
constexpr uint32_t FIRST_GROUP = 1000;             // what group 0 is published as
constexpr int32_t EXPOSURE_TYPES[] = {1, 2, 0, 3}; // published, by the firmware's number
constexpr int32_t COORDINATE_MAX = 100;

// Which field holds the value of a preset group or flat mode.
constexpr uint8_t NO_FIELD = 0;
using FieldChoice = std::array<uint8_t, 32>;

struct FieldUsers {
    uint8_t offset;
    std::initializer_list<uint8_t> numbers;
};

consteval FieldChoice field_choice(std::initializer_list<FieldUsers> rows)
{
    FieldChoice choice = {};
    for (const FieldUsers &row : rows) {
        for (const uint8_t number : row.numbers) {
            choice[number] = row.offset;
        }
    }
    return choice;
}

constexpr FieldChoice PRESET_OF_GROUP = field_choice({
    {STATUS_APP_ACTIVE_VIDEO_PRESETS, {0, 3, 8, 9, 11, 14}},
    {STATUS_APP_ACTIVE_PHOTO_PRESETS, {1, 4, 12}},
    {STATUS_APP_ACTIVE_TIMELAPSE_PRESETS, {2, 5, 13}},
});

constexpr FieldChoice VELLIX_OF_FLAT_MODE = field_choice({
    {STATUS_VIDEO_VELLIX_DEFAULT, {12, 14, 15, 24, 25, 27}},
    {STATUS_PHOTO_VELLIX_DEFAULT, {16, 17, 18}},
    {STATUS_MULTI_SHOT_VELLIX_DEFAULT, {13, 19, 20, 21, 26, 29, 30, 31}},
});

constexpr uint8_t chosen_field(const FieldChoice &choice, uint32_t number)
{
    return number < choice.size() ? choice[number] : NO_FIELD;
}

bool is_in_record(int32_t offset)
{
    return offset >= 0 && offset < RECORD_SIZE;
}

int32_t signed_byte(const uint8_t *status, int32_t offset)
{
    return static_cast<int8_t>(status[offset]);
}

// A text that ends with its field or the record, when no zero byte ends it before.
std::string_view text_at(const uint8_t *status, const Place &place)
{
    if (!is_in_record(place.offset)) {
        return {};
    }
    const auto *text = reinterpret_cast<const char *>(status + place.offset);
    return {text, strnlen(text, static_cast<size_t>(std::min(place.size, RECORD_SIZE - place.offset)))};
}

void write_int(JsonWriter &json, const uint8_t *status, const Place &place)
{
    if (place.size != 1 && place.size != 4 && place.size != 8) {
        ZV_LOG(ZV_LOG_ERROR, "Unknown field size:%d was given", place.size);
        json.number(0);
    } else if (!is_in_record(place.offset) || place.offset > RECORD_SIZE - place.size) {
        ZV_LOG(ZV_LOG_ERROR, "Invalid field offset:%d was given", place.offset);
        json.number(0);
    } else if (place.size == 1) {
        json.number(uint32_t{status[place.offset]});
    } else if (place.size == 4) {
        json.number(le32(status + place.offset));
    } else {
        json.number(le64(status + place.offset));
    }
}

void write_text(JsonWriter &json, const uint8_t *status, const Place &place)
{
    json.literal("\"");
    json.literal(text_at(status, place));
    json.literal("\"");
}

void write_csi(JsonWriter &json, int32_t key)
{
    uint32_t value = 0;
    ZVCSIListener::GetInstance().GetCSIValue(static_cast<uint32_t>(key), value);
    json.number(value);
}

void write_battery_level(JsonWriter &json, const uint8_t *charge)
{
    const uint32_t charge_state = charge[0];
    const uint32_t bars = charge[1];
    ZV_LOG(ZV_LOG_TRACE, "bar/ch, %u,%u\n", bars, charge_state);
    json.number(charge_state >= 1 && charge_state <= 3 ? LEVEL_CHARGING : bars);
}

void write_battery_percentage(JsonWriter &json, int32_t percentage)
{
    if (percentage >= 0) {
        pBatteryPercentage.store(percentage, RELAXED);
    }
    json.number(pBatteryPercentage.load(RELAXED));
}

void write_logs_ready(JsonWriter &json, uint8_t linux_core_active)
{
    uint32_t ready = 0;
    if (linux_core_active == 1) {
        zvcontrol_get_logs_ready_status(&ready);
    }
    json.number(ready);
}

void write_exposure_type(JsonWriter &json, uint8_t type)
{
    if (type >= std::size(EXPOSURE_TYPES)) {
        ZV_LOG(ZV_LOG_ERROR, "Unknown Liveview status type");
        json.number(0);
        return;
    }
    json.number(EXPOSURE_TYPES[type]);
}

void write_exposure_coordinate(JsonWriter &json, const uint8_t *status, int32_t offset)
{
    const bool is_x = offset == STATUS_LIVEVIEW_EXPOSURE_SELECT_X;
    int32_t value = signed_byte(status, offset);
    if (value < 0 || value > COORDINATE_MAX) {
        ZV_LOG(ZV_LOG_ERROR, "exposure select %c %d, out of range 0-100", is_x ? 'x' : 'y', value);
        json.number(0);
        return;
    }
    ZV_LOG(ZV_LOG_TRACE, "Exposure %c from firmware is %d", is_x ? 'X' : 'Y', value);
    if (status[STATUS_EXPOSURE_COORDINATES_DIRECT] == 0) {
        value = COORDINATE_MAX - value;
        ZV_LOG(ZV_LOG_TRACE, "Exposure %c from firmware is adjusted to %d", is_x ? 'X' : 'Y', value);
    }
    json.number(value);
}

void write_active_preset(JsonWriter &json, const uint8_t *status, uint32_t group)
{
    const uint8_t field = chosen_field(PRESET_OF_GROUP, group);
    if (field == NO_FIELD) {
        if (errorDisplayed.active_preset.exchange(1, RELAXED) == 0) {
            ZV_LOG(ZV_LOG_ERROR, "Preset group 0x%ld isn't supported @ %s:%d\n", static_cast<long>(group + FIRST_GROUP),
                   ZV_SOURCE_PATH, __LINE__);
        }
        json.number(0);
        return;
    }
    errorDisplayed.active_preset.store(0, RELAXED);
    json.number(le32(status + field));
}

void write_vellix_default(JsonWriter &json, const uint8_t *status, uint8_t flat_mode)
{
    const uint8_t field = chosen_field(VELLIX_OF_FLAT_MODE, flat_mode);
    if (field != NO_FIELD) {
        vellix_default.store(signed_byte(status, field), RELAXED);
        errorDisplayed.vellix_default.store(0, RELAXED);
    } else if (errorDisplayed.vellix_default.exchange(1, RELAXED) == 0) {
        ZV_LOG(ZV_LOG_ERROR, "Flat mode %d, doesn't support vellix, using video_vellix_default value. @ %s:%d\n",
               static_cast<int8_t>(flat_mode), ZV_SOURCE_PATH, __LINE__);
    }
    json.number(static_cast<uint32_t>(vellix_default.load(RELAXED)));
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

void write_status_value(JsonWriter &json, StatusOutput output, const uint8_t *status, const Place &place)
{
    using enum StatusOutput;
    switch (output) {
    case NONE:
        break;
    case ZERO:
        json.number(0);
        break;
    case INT:
        write_int(json, status, place);
        break;
    case SIGNED:
        json.number(signed_byte(status, place.offset));
        break;
    case EXTENDED:
        json.number(static_cast<uint32_t>(signed_byte(status, place.offset)));
        break;
    case TEXT:
        write_text(json, status, place);
        break;
    case BARE_TEXT:
        json.literal(text_at(status, place));
        break;
    case CSI:
        write_csi(json, place.offset);
        break;
    case LEVEL:
        write_battery_level(json, status + place.offset);
        break;
    case PERCENTAGE:
        write_battery_percentage(json, signed_byte(status, place.offset));
        break;
    case NEXT_POLL:
        json.number(NEXT_POLL_MSEC);
        break;
    case ANALYTICS:
        json.number(status[place.offset] == ENCODING ? ANALYTICS_NOT_READY : ANALYTICS_READY);
        break;
    case LOGS:
        write_logs_ready(json, status[place.offset]);
        break;
    case EXPOSURE:
        write_exposure_type(json, status[place.offset]);
        break;
    case COORDINATE:
        write_exposure_coordinate(json, status, place.offset);
        break;
    case GROUP:
        json.number(le32(status + place.offset) + FIRST_GROUP);
        break;
    case PRESET:
        write_active_preset(json, status, le32(status + place.offset));
        break;
    case VELLIX:
        write_vellix_default(json, status, status[place.offset]);
        break;
    }
}

namespace {

void write_member(JsonWriter &json, const StatusField &row, const uint8_t *status)
{
    json.key(row.id);
    write_status_value(json, row.output, status, {row.offset, row.size});
}

} // namespace

void write_status(std::stringstream &stream, const uint8_t *status, const StatusTable &fields)
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
    stream.write(json.begin(), json.size());
}

int32_t write_status_changes(std::stringstream &stream, const uint8_t *status, std::vector<std::string> &cache,
                             const StatusTable &fields, const PushTable &pushes)
{
    char buffer[DOCUMENT_SIZE];
    JsonWriter json(buffer);
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
        ++count;
        ZV_LOG(ZV_LOG_INFO, "index=%d change count = %d, old=[%s]  new=[%s]", static_cast<int>(i), count,
               cached.c_str(), std::string(fresh).c_str());
        cached = fresh;
        json.comma();
    }
    json.drop_comma();
    stream.write(json.begin(), json.size());
    return count;
}

void update_status_values(const uint8_t *status, std::vector<uint32_t> &values, const StatusTable &fields,
                          const PushTable &pushes)
{
    for (size_t i = 0; i < fields.size() && i < values.size(); ++i) {
        if (takes_part_in_changes(fields[i], pushes[i])) {
            char buffer[JSON_MEMBER_SIZE];
            JsonWriter json(buffer);
            write_member(json, fields[i], status);
            json.literal({"\0", 1});
            values[i] = static_cast<uint32_t>(strtoll(strchr(buffer, ':') + 1, nullptr, 10));
        }
    }
}

} // namespace zv

int32_t camera_status_serialize_status_to_json(std::stringstream &stream, const appc_system_all_status *status,
                                               [[maybe_unused]] uint32_t model)
{
    zv::write_status(stream, status->bytes, zv::status_fields);
    return 0;
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
{
    cache.resize(cache.size() + zv::STATUS_COUNT);
    ZV_LOG(ZV_LOG_DEBUG, "init status max index = %d", static_cast<int>(zv::STATUS_COUNT));
    return 0;
}
