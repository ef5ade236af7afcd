// Whether a setting may be set to an option now.
#pragma once

#include "result.h"
#include "snapshot.h"

#include <cstdint>

namespace zvservice {

// By the present state: DONE; NO_SUCH_SETTING, or NO_SUCH_OPTION for an id that the setting does not take; or FORBIDDEN
// by the filter rules, which the result's reasons() holds: Catalogue::reason() puts each in words. Any thread. The
// camera may refuse what is permitted here.
ZV_API Result permission(const State &state, uint32_t setting, uint32_t option);

} // namespace zvservice
