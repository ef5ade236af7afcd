#include "permission.h"

#include "catalogue.h"

#include <utility>

namespace zvservice {

Result permission(const State &state, uint32_t setting, uint32_t option)
{
    const Catalogue catalogue(state.model());
    const std::string number = std::to_string(setting);
    if (Result found = catalogue.find_setting(number, setting); !found.done()) {
        return found;
    }
    if (!catalogue.takes(setting, option)) {
        return {Outcome::NO_SUCH_OPTION,
                "setting " + number + ", " + catalogue.name(setting) + ", has no option " + std::to_string(option)};
    }
    std::vector<Removal> reasons = Availability(state.values(), state.model()).against(setting, option);
    if (reasons.empty()) {
        return {};
    }
    return {number + " " + catalogue.name(setting) + ": " + catalogue.option_text(setting, option) +
                " is not available now",
            std::move(reasons)};
}

} // namespace zvservice
