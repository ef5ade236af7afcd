// Which models have options and rules: the sable_knoll generation alone. Internal to the service core.
#pragma once

#include <cstdint>
#include <map>
#include <vector>
#include <zvctrl/camera_settings.h>

namespace zvservice {

inline bool has_options(uint32_t model)
{
    return getOpenZelvarVersion(model)[0] != ' ';
}

// The options of each setting. The library fills its map once, for whatever model asks first with options, and one that
// was handed out empty must not be read meanwhile: a model without options has an empty map of its own.
inline const std::map<uint32_t, std::vector<option_t *>> &options_of(uint32_t model)
{
    static const std::map<uint32_t, std::vector<option_t *>> NONE;
    return has_options(model) ? getCameraOptions(model) : NONE;
}

// The filter rules by number, likewise.
inline const std::map<uint32_t, std::vector<filter_info_t *>> &rules_of(uint32_t model)
{
    static const std::map<uint32_t, std::vector<filter_info_t *>> NONE;
    return has_options(model) ? getCameraFilters(model) : NONE;
}

} // namespace zvservice
