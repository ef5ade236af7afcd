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

#define ZV_SOURCE_PATH "libzvCtrlD/src/camera_status"

namespace {

using zv::JSON_MEMBER_SIZE;
using zv::le32;
using zv::StatusField;

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
constexpr size_t DOCUMENT_SIZE = zv::JSON_OPENING_SIZE + zv::STATUS_COUNT * JSON_MEMBER_SIZE;

constexpr uint32_t LEVEL_CHARGING = 4;
constexpr uint32_t NEXT_POLL_MSEC = 500;
constexpr uint8_t ENCODING = 1;
constexpr uint32_t ANALYTICS_NOT_READY = 0;
constexpr uint32_t ANALYTICS_READY = 2;
constexpr uint8_t EXPOSURE_TYPES[] = {1, 2, 0, 3}; // published, by the firmware's number
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

uint64_t read_battery_percentage(int32_t percentage)
{
    if (percentage >= 0) {
        pBatteryPercentage.store(percentage, RELAXED);
    }
    return static_cast<uint32_t>(pBatteryPercentage.load(RELAXED)); // never negative
}

uint64_t read_logs_ready(uint8_t linux_core_active)
{
    uint32_t ready = 0;
    if (linux_core_active == 1) {
        zvcontrol_get_logs_ready_status(&ready);
    }
    return ready;
}

uint64_t read_exposure_type(uint8_t type)
{
    if (type >= std::size(EXPOSURE_TYPES)) {
        ZV_LOG(ZV_LOG_ERROR, "Unknown Liveview status type");
        return 0;
    }
    return EXPOSURE_TYPES[type];
}

uint64_t read_exposure_coordinate(const uint8_t *status, int32_t offset)
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
    return static_cast<uint32_t>(value);
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

bool is_discarded(const StatusField &row)
{
    if (is_in_record(row.offset)) {
        return false;
    }
    ZV_LOG(ZV_LOG_ERROR, "WARNING: discarding %s at invalid offset of %d", camera_status_name(row.id), row.offset);
    return true;
}

} // namespace

namespace zv {

uint64_t read_unsigned(const uint8_t *status, int32_t offset, int32_t size)
{
    if (size != 1 && size != 4 && size != 8) {
        ZV_LOG(ZV_LOG_ERROR, "Unknown field size:%d was given", size);
        return 0;
    }
    if (!is_in_record(offset) || offset > RECORD_SIZE - size) {
        ZV_LOG(ZV_LOG_ERROR, "Invalid field offset:%d was given", offset);
        return 0;
    }
    const uint8_t *field = status + offset;
    return size == 1 ? *field : size == 4 ? le32(field) : le64(field);
}

std::string_view status_text(const uint8_t *status, int32_t offset, int32_t size)
{
    if (!is_in_record(offset)) {
        return {};
    }
    const auto *text = reinterpret_cast<const char *>(status + offset);
    return {text, strnlen(text, static_cast<size_t>(std::min(size, RECORD_SIZE - offset)))};
}

namespace {

constexpr bool is_written_as_number(StatusOutput output)
{
    return output != StatusOutput::TEXT && output != StatusOutput::SIGNED;
}

// What is not read in place.
[[gnu::noinline]] uint64_t read_worked_out(StatusOutput output, const uint8_t *status, int32_t offset)
{
    using enum StatusOutput;
    const uint8_t *field = status + offset;
    switch (output) {
    case NONE:
    case TEXT:
    case BYTE:   // read_number reads
    case NUMBER: // these two
        break;
    case LONG_NUMBER:
        return le64(field);
    case SIGNED:
        return static_cast<uint64_t>(int64_t{signed_byte(status, offset)});
    case EXTENDED:
        return static_cast<uint32_t>(signed_byte(status, offset));
    case CSI:
        return read_csi(offset);
    case LEVEL:
        return read_battery_level(field);
    case PERCENTAGE:
        return read_battery_percentage(signed_byte(status, offset));
    case NEXT_POLL:
        return NEXT_POLL_MSEC;
    case ANALYTICS:
        return *field == ENCODING ? ANALYTICS_NOT_READY : ANALYTICS_READY;
    case LOGS:
        return read_logs_ready(*field);
    case EXPOSURE:
        return read_exposure_type(*field);
    case COORDINATE:
        return read_exposure_coordinate(status, offset);
    case GROUP:
        return le32(field) + zv::PUBLISHED_PRESET_GROUP;
    case PRESET:
        return read_active_preset(status, le32(field));
    case VELLIX:
        return read_vellix_default(status, *field);
    }
    return 0;
}

// The number that an output publishes; a SIGNED one is sign-extended to 64 bits. 0 for NONE and TEXT. Most are plain
// numbers, for which no function is called.
inline uint64_t read_number(StatusOutput output, const uint8_t *status, int32_t offset)
{
    if (output == StatusOutput::BYTE) {
        return status[offset];
    }
    return output == StatusOutput::NUMBER ? le32(status + offset) : read_worked_out(output, status, offset);
}

inline void write_value(JsonWriter &json, StatusOutput output, const uint8_t *status, int32_t offset)
{
    if (output == StatusOutput::BYTE) {
        json.number(status[offset]);
    } else if (is_written_as_number(output)) {
        json.number(read_number(output, status, offset));
    } else if (output == StatusOutput::SIGNED) {
        json.number(signed_byte(status, offset));
    } else {
        json.literal("\"");
        json.literal(status_text(status, offset, NETWORK_NAME_SIZE));
        json.literal("\"");
    }
}

// The members that have changed, and what the cache is to hold of them once they have gone out. Most rows of a poll
// have not changed, so that the functions here are kept out of the loop over the rows.
class Changes {
  public:
    [[gnu::noinline]] void add(uint8_t id, uint64_t number, std::string &cached)
    {
        const size_t start = m_json.size();
        m_json.key(id);
        m_json.number(number);
        note(id, start, cached);
    }

    // Writes any value, and takes it back if it is the cached text.
    [[gnu::noinline]] void add_unless_cached(const StatusField &row, const uint8_t *status, std::string &cached)
    {
        const size_t start = m_json.size();
        m_json.key(row.id);
        write_value(m_json, row.output, status, row.offset);
        if (m_json.members(start) == cached) {
            m_json.truncate(start);
        } else {
            note(row.id, start, cached);
        }
    }

    // Returns how many there are; 0 for a stream that takes nothing.
    int32_t go_out(std::stringstream &stream)
    {
        if (const int32_t result = append_whole(stream, m_json.members()); result != ZV_OK) {
            return result == ZV_ERR_OUTOFMEM ? result : 0;
        }
        for (const Update &update : std::span(m_updates, static_cast<size_t>(m_count))) {
            update.cached->assign(update.fresh, update.size);
        }
        return m_count;
    }

  private:
    struct Update {
        std::string *cached; // has room for the fresh text
        const char *fresh;   // in the buffer
        size_t size;
    };

    void note(uint8_t id, size_t start, std::string &cached)
    {
        const std::string_view fresh = m_json.members(start);
        cached.reserve(fresh.size());
        m_updates[m_count++] = {&cached, fresh.data(), fresh.size()};
        ZV_LOG(ZV_LOG_INFO, "index=%d change count = %d, old=[%s]  new=[%.*s]", id, m_count, cached.c_str(),
               static_cast<int>(fresh.size()), fresh.data());
    }

    char m_buffer[DOCUMENT_SIZE];
    JsonWriter m_json{m_buffer};
    Update m_updates[STATUS_COUNT];
    int32_t m_count = 0;
};

} // namespace

void write_status_value(JsonWriter &json, StatusOutput output, const uint8_t *status, int32_t offset)
{
    write_value(json, output, status, offset);
}

int32_t write_status(std::stringstream &stream, const uint8_t *status, StatusRows rows)
{
    char buffer[DOCUMENT_SIZE];
    JsonWriter json(buffer);
    for (const StatusField row : rows) {
        json.key(row.id);
        write_value(json, row.output, status, row.offset);
    }
    return append_document(stream, json.document(OPENING), ZV_OK);
}

int32_t write_status_changes(std::stringstream &stream, const uint8_t *status, std::vector<std::string> &cache,
                             StatusRows rows)
try {
    Changes changes;
    for (const StatusField row : rows) {
        if (is_discarded(row)) {
            continue;
        }
        if (row.id >= cache.size()) {
            ZV_LOG(ZV_LOG_ERROR, "Push Error - Cache status invalid size detected at index  %d", row.id);
            continue;
        }
        std::string &cached = cache[row.id];
        if (!is_written_as_number(row.output)) {
            changes.add_unless_cached(row, status, cached);
        } else if (const uint64_t number = read_number(row.output, status, row.offset);
                   !is_member(cached, row.id, number)) {
            changes.add(row.id, number, cached);
        }
    }
    return changes.go_out(stream);
} catch (const std::bad_alloc &) {
    return ZV_ERR_OUTOFMEM;
}

// The low 32 bits of a number, which counts as INT64_MAX at most unless it is a signed one.
void update_status_values(const uint8_t *status, std::vector<uint32_t> &values, StatusRows rows)
{
    for (const StatusField row : rows) {
        if (row.id >= values.size() || is_discarded(row)) {
            continue;
        }
        const uint64_t number = read_number(row.output, status, row.offset);
        const bool is_cut = row.output != StatusOutput::SIGNED && number > INT64_MAX;
        values[row.id] = is_cut ? UINT32_MAX : static_cast<uint32_t>(number);
    }
}

} // namespace zv

int32_t camera_status_serialize_status_to_json(std::stringstream &stream, const appc_system_all_status *status,
                                               [[maybe_unused]] uint32_t model)
{
    return zv::write_status(stream, status->bytes, zv::published_statuses());
}

int32_t camera_status_serialize_status_changes_to_json(std::stringstream &stream, const appc_system_all_status *status,
                                                       [[maybe_unused]] const appc_system_all_status *previous,
                                                       [[maybe_unused]] uint32_t model, std::vector<std::string> &cache)
{
    return zv::write_status_changes(stream, status->bytes, cache, zv::pushed_statuses());
}

void update_camera_status(const appc_system_all_status *status, [[maybe_unused]] uint32_t model,
                          std::vector<uint32_t> &values)
{
    zv::update_status_values(status->bytes, values, zv::pushed_statuses());
}

int32_t camera_status_init_bossCache([[maybe_unused]] uint32_t model, std::vector<std::string> &cache)
try {
    cache.resize(cache.size() + zv::STATUS_COUNT);
    ZV_LOG(ZV_LOG_DEBUG, "init status max index = %d", static_cast<int>(zv::STATUS_COUNT));
    return ZV_OK;
} catch (const std::bad_alloc &) {
    return ZV_ERR_OUTOFMEM;
}
