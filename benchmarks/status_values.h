// How the peers' writers read the status record: by the library's rules, over the library's rows.
#pragma once

#include "bytes.h"
#include "camera_status_fields.h"
#include "csi.h"
#include "zvcontrol_if.h"

#include <cstring>
#include <string_view>

namespace bench {

inline int32_t last_percentage = 0;
inline int32_t last_vellix_default = 1;

inline int signed_byte(const uint8_t *status, int offset)
{
    return static_cast<int8_t>(status[offset]);
}

inline int exposure_coordinate(const uint8_t *status, int offset)
{
    const int value = signed_byte(status, offset);
    if (value < 0 || value > 100) {
        return 0;
    }
    return status[STATUS_EXPOSURE_COORDINATES_DIRECT] == 0 ? 100 - value : value;
}

inline uint32_t active_preset(const uint8_t *status)
{
    switch (zv::le32(status + STATUS_APP_ACTIVE_PRESETS_GROUP)) {
    case 0:
    case 3:
    case 8:
    case 9:
    case 11:
    case 14:
        return zv::le32(status + STATUS_APP_ACTIVE_VIDEO_PRESETS);
    case 1:
    case 4:
    case 12:
        return zv::le32(status + STATUS_APP_ACTIVE_PHOTO_PRESETS);
    case 2:
    case 5:
    case 13:
        return zv::le32(status + STATUS_APP_ACTIVE_TIMELAPSE_PRESETS);
    default:
        return 0;
    }
}

inline uint32_t vellix_default(const uint8_t *status)
{
    switch (status[STATUS_APP_CURRENT_MODE]) {
    case 12:
    case 14:
    case 15:
    case 24:
    case 25:
    case 27:
        last_vellix_default = signed_byte(status, STATUS_VIDEO_VELLIX_DEFAULT);
        break;
    case 16:
    case 17:
    case 18:
        last_vellix_default = signed_byte(status, STATUS_PHOTO_VELLIX_DEFAULT);
        break;
    case 13:
    case 19:
    case 20:
    case 21:
    case 26:
    case 29:
    case 30:
    case 31:
        last_vellix_default = signed_byte(status, STATUS_MULTI_SHOT_VELLIX_DEFAULT);
        break;
    }
    return static_cast<uint32_t>(last_vellix_default);
}

// Calls `sink` with the value as uint32_t, uint64_t, int or std::string_view.
template <class Sink>
inline void read_status(const uint8_t *status, const zv::StatusField &row, Sink &&sink)
{
    using enum zv::StatusOutput;
    const uint8_t *field = status + row.offset;
    switch (row.output) {
    case NONE:
        break;
    case BYTE:
        sink(uint32_t{*field});
        break;
    case NUMBER:
        sink(zv::le32(field));
        break;
    case LONG_NUMBER:
        sink(zv::le64(field));
        break;
    case SIGNED:
        sink(signed_byte(status, row.offset));
        break;
    case EXTENDED:
        sink(static_cast<uint32_t>(signed_byte(status, row.offset)));
        break;
    case TEXT: {
        const auto *text = reinterpret_cast<const char *>(field);
        sink(std::string_view(text, strnlen(text, zv::NETWORK_NAME_SIZE)));
        break;
    }
    case CSI: {
        uint32_t value = 0;
        ZVCSIListener::GetInstance().GetCSIValue(static_cast<uint32_t>(row.offset), value);
        sink(value);
        break;
    }
    case LEVEL:
        sink(field[0] >= 1 && field[0] <= 3 ? 4U : uint32_t{field[1]});
        break;
    case PERCENTAGE:
        if (const int percentage = signed_byte(status, row.offset); percentage >= 0) {
            last_percentage = percentage;
        }
        sink(last_percentage);
        break;
    case NEXT_POLL:
        sink(500);
        break;
    case ANALYTICS:
        sink(*field == 1 ? 0 : 2);
        break;
    case LOGS: {
        uint32_t ready = 0;
        if (*field == 1) {
            zvcontrol_get_logs_ready_status(&ready);
        }
        sink(ready);
        break;
    }
    case EXPOSURE: {
        constexpr int types[] = {1, 2, 0, 3};
        sink(*field < 4 ? types[*field] : 0);
        break;
    }
    case COORDINATE:
        sink(exposure_coordinate(status, row.offset));
        break;
    case GROUP:
        sink(zv::le32(field) + 1000);
        break;
    case PRESET:
        sink(active_preset(status));
        break;
    case VELLIX:
        sink(vellix_default(status));
        break;
    }
}

} // namespace bench
