// What the camera publishes as status, and what of it takes part in change detection. Internal to the library.
#pragma once

#include "camera_status.h"
#include "json_writer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// How a value comes out of the record.
enum class StatusOutput : uint8_t {
    NONE,        // the id is free and publishes nothing
    BYTE,        // unsigned, as are the next two
    NUMBER,      // 4 bytes
    LONG_NUMBER, // 8 bytes
    SIGNED,      // a signed byte
    EXTENDED,    // a signed byte, sign-extended to 32 bits and published as unsigned
    TEXT,        // a network's name in quotes, which ends with its field at the latest
    CSI,         // a number of the system information service; the offset is its key
    LEVEL,       // battery bars, in the byte after the charge state
    PERCENTAGE,  // battery charge, or the last good one
    NEXT_POLL,
    ANALYTICS,
    LOGS,
    EXPOSURE,   // what the exposure point selects
    COORDINATE, // of the exposure point
    GROUP,      // of the active preset
    PRESET,     // the active one, of the active group
    VELLIX,     // the default of the flat mode
};

// One status value. The row's index is its id.
struct StatusField {
    uint8_t id;
    StatusOutput output;
    int16_t offset; // in appc_system_all_status
};

inline constexpr size_t STATUS_COUNT = 119;
using StatusTable = std::array<StatusField, STATUS_COUNT>;

// Both camera generations publish the same values.
extern const StatusTable status_fields;

enum class PushValue : uint8_t { NONE, BYTE, NUMBER, LONG_NUMBER, TEXT };

// One status value's part in change detection; the rows run beside those of the status table.
struct PushNotification {
    uint8_t id;
    PushValue value;
    uint8_t mode;       // 0 takes no part; 1, 2 and 3 do
    uint8_t related_id; // with mode 3: another status
};

using PushTable = std::array<PushNotification, STATUS_COUNT>;
extern const PushTable push_notification_fields;

// The rows that publish a value, and those of them that take part in change detection: what a walk goes over.
using StatusRows = std::span<const StatusField>;
StatusRows published_statuses();
StatusRows pushed_statuses();

// Bytes of a network's name, which has no NUL where it fills them.
inline constexpr int32_t NETWORK_NAME_SIZE = 33;

// The unsigned number of 1, 4 or 8 bytes; 0, with a log line, for another size or a place that leaves the record.
uint64_t read_unsigned(const uint8_t *status, int32_t offset, int32_t size);

// A text that ends after `size` bytes or with the record, when no zero byte ends it before; none for an offset outside.
std::string_view status_text(const uint8_t *status, int32_t offset, int32_t size);

// The value alone, without its key; a text in quotes.
void write_status_value(JsonWriter &json, StatusOutput output, const uint8_t *status, int32_t offset);

// The public functions of the same purpose, over any rows. Those of a document lie inside the record; the two others
// log a row that does not, and leave it out.
int32_t write_status(std::stringstream &stream, const uint8_t *status, StatusRows rows);
int32_t write_status_changes(std::stringstream &stream, const uint8_t *status, std::vector<std::string> &cache,
                             StatusRows rows);
void update_status_values(const uint8_t *status, std::vector<uint32_t> &values, StatusRows rows);

} // namespace zv
