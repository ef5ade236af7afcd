// The firmware's capability service: which values it offers for a setting. Internal to the library.
#pragma once

#include "remote_call.h"

namespace zv {

// What the offer depends on, as the most common camera has it. The power profile is not read: every query is made for
// 0.
struct Situation {
    int8_t lens = 0;
    uint8_t ux_mode = 1;
    uint8_t power_profile = 0;
    uint8_t capture_mode = 0; // the service's own count of the flat modes
    uint32_t anti_flicker = 0;
    uint32_t video_profile = 0;
};

// The offered values: a copy, since the answer is gone with the next exchange.
struct ValueList {
    uint8_t values[UINT8_MAX];
    uint8_t count;

    const uint8_t *begin() const { return values; }
    const uint8_t *end() const { return values + count; }
};

// What a list must have, and the messages at ERROR of one that has not. The resolutions are those of the camera's
// current settings, the others those of a situation.
struct ListRule {
    uint8_t least;       // values
    const char *failure; // code
    const char *empty;   // size, 0
    const char *count;   // count, size
};
extern const ListRule RES_LIST;
extern const ListRule FPS_LIST;
extern const ListRule FOV_LIST;

// A setting at a resolution, with one filter more.
struct FilterQuery {
    CapabilityKey listed;
    int32_t res;
    CapabilityKey filter;
    uint8_t filter_value;
};

// The capture mode of a flat mode; 0, after a warning, for one that the service does not know.
uint8_t capture_mode_of(int32_t flat_mode, const SourceLocation &where = SourceLocation::current());

// The values of a setting under the camera's current settings. `list` is written on success only.
int32_t list_values(zvc_msg_q_context_t *context, CapabilityKey listed, const ListRule &rule, ValueList &list,
                    const SourceLocation &where = SourceLocation::current());

// The same in a situation. ZV_ERR_NOT_SUPPORTED, for which callers have another way, is not logged.
int32_t list_values(zvc_msg_q_context_t *context, const Situation &situation, const FilterQuery &query,
                    const ListRule &rule, ValueList &list, const SourceLocation &where = SourceLocation::current());

} // namespace zv
