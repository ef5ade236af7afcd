// The filter rules, as callers are given them. Internal to the library.
#pragma once

#include "camera_settings.h"

#include <map>
#include <vector>

namespace zv {

using FilterRules = std::map<uint32_t, std::vector<filter_info_t *>>;
FilterRules make_filter_rules();

} // namespace zv
