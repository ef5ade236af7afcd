// The filter rules, as callers are given them. Internal to the library.
#pragma once

#include "camera_settings.h"

#include <map>
#include <vector>

namespace zv {

// The rules point into `elements`, which stay where they are when the catalogue moves.
struct RuleCatalogue {
    std::vector<filter_info_t> elements;
    std::map<uint32_t, std::vector<filter_info_t *>> rules;
};
RuleCatalogue make_rule_catalogue();

} // namespace zv
