// What a camera offers in its present state, and why it does not offer the rest: the filter rules at work.
//
// An Availability is worked out once from a state, and then answers for every setting and option:
//
// ```cpp
// #include <iostream>
//
// void explain(const all_status_settings_t &record, uint32_t model)
// {
//     const zvservice::Availability availability(zvservice::read_state(record, model), model);
//     for (const zvservice::Removal &removal : availability.why(3, 0)) {
//         // rule 83, because setting 2 is 5_3K
//         std::cout << "rule " << removal.rule << ", because " << zvservice::because(removal) << '\n';
//     }
// }
// ```
//
// Only the sable_knoll generation has options and rules: with any other model every setting is unknown here. Pointers
// lead into the catalogue and live as long as the process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>
#include <zvctrl/camera_settings.h>

namespace zvservice {

inline constexpr size_t SETTING_COUNT = SETTINGS_ID_TABLE_COUNT;
inline constexpr size_t STATUS_COUNT = 119;

// What the rules look at, in the numbers that clients see.
struct CameraState {
    std::vector<uint32_t> settings = std::vector<uint32_t>(SETTING_COUNT); // option ids, by setting id
    std::vector<uint32_t> statuses = std::vector<uint32_t>(STATUS_COUNT);  // values, by status id
};

// The state that a snapshot shows. Change an entry before an Availability looks at it to ask "what if".
ZV_API CameraState read_state(const all_status_settings_t &record, uint32_t model);

// A condition that holds, and what it met: the current option's key (its id where the setting does not list it), or the
// status value.
struct MetCondition {
    const filter_info_t *condition;
    std::string current;
};

// A rule that takes a setting or an option away, by which of its consequences, and the conditions that let it.
struct Removal {
    uint32_t rule;
    const filter_info_t *consequence;
    std::vector<MetCondition> conditions;
};

// Whether the rules see the same in both: then an Availability says the same of both, reasons included. A hundredth of
// the time that one takes.
ZV_API bool same_offers(const CameraState &a, const CameraState &b, uint32_t model);

// What a condition looks at: "setting 2" or "status 89".
ZV_API std::string condition_name(const filter_info_t &condition);

// "setting 2 is 5_3K and status 89 is 12", with conditions as `name` calls them.
ZV_API std::string because(const Removal &removal,
                           const std::function<std::string(const filter_info_t &condition)> &name = condition_name);

class ZV_API Availability {
  public:
    Availability(const CameraState &state, uint32_t model);

    // Whether a setting is offered at all: it is known, and no rule takes it away as a whole. Its options may still all
    // be taken away one by one.
    bool offers(uint32_t setting) const;

    // Whether an option is offered: its setting is, and no rule takes the option away. False for an unknown one.
    bool offers(uint32_t setting, uint32_t option_id) const;

    // Whether there is anything to set a setting to: an option is offered, or it lists none and takes what it is given.
    bool has_choice(uint32_t setting) const;

    // The options that are offered, in menu order.
    std::vector<const option_t *> options(uint32_t setting) const;

    // The rules that take away a setting as a whole, in ascending order.
    std::vector<Removal> why(uint32_t setting) const;

    // The rules that take away an option, by itself or with its setting. Empty for an unknown one.
    std::vector<Removal> why(uint32_t setting, uint32_t option_id) const;

    // The rules that are against setting it to this now: those, and for an id that it does not list those that take
    // away the setting.
    std::vector<Removal> against(uint32_t setting, uint32_t option_id) const;

  private:
    // A rule whose conditions all hold.
    struct Applied {
        uint32_t number;
        std::vector<MetCondition> conditions;
    };
    // What such a rule does to a setting.
    struct Consequence {
        size_t rule; // in m_applied
        const filter_info_t *element;
    };
    struct Offer {
        bool off; // taken away as a whole
        std::vector<const option_t *> options;
    };

    // By `key` an option's, without one the whole setting.
    bool taken_away(uint32_t setting, const char *key) const;
    std::vector<Removal> removals(uint32_t setting, const char *key) const;

    const std::map<uint32_t, std::vector<option_t *>> &m_catalogue;
    std::vector<Applied> m_applied;                              // ascending
    std::map<uint32_t, std::vector<Consequence>> m_consequences; // of each setting, in the order of the rules
    std::map<uint32_t, Offer> m_offers;
};

} // namespace zvservice
