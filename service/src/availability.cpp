#include "availability.h"

#include "generation.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <zvctrl/camera_status.h>

namespace zvservice {

namespace {

using Options = std::map<uint32_t, std::vector<option_t *>>;

const option_t *find_option(const Options &catalogue, uint32_t setting, uint32_t id)
{
    if (const auto options = catalogue.find(setting); options != catalogue.end()) {
        for (const option_t *option : options->second) {
            if (option->id == id) {
                return option;
            }
        }
    }
    return nullptr;
}

bool lists(const filter_info_t &element, std::string_view text)
{
    return std::find(element.values.begin(), element.values.end(), text) != element.values.end();
}

// Puts what the condition looks at into `current`.
bool holds(const filter_info_t &condition, const CameraState &state, const Options &catalogue, std::string &current)
{
    const bool wanted = condition.include == 1;
    if (condition.type == FILTER_INFO_STATUS) {
        current = std::to_string(state.statuses.at(condition.id));
        return lists(condition, current) == wanted;
    }
    const uint32_t id = state.settings.at(condition.id);
    const option_t *option = find_option(catalogue, condition.id, id);
    current = option != nullptr ? option->key : std::to_string(id);
    return (option != nullptr && lists(condition, current)) == wanted;
}

// Whether a consequence for a setting takes away its option with `key`, or without a key the setting as a whole.
bool takes_away(const filter_info_t &consequence, const char *key)
{
    return consequence.values.empty() || (key != nullptr && lists(consequence, key) == (consequence.include == 1));
}

} // namespace

CameraState read_state(const all_status_settings_t &record, uint32_t model)
{
    CameraState state;
    appc_system_all_status status;
    std::copy_n(record.bytes + ALL_STATUS_OFFSET, sizeof status.bytes, status.bytes);
    update_camera_settings(&record, model, state.settings);
    update_camera_status(&status, model, state.statuses);
    return state;
}

bool same_offers(const CameraState &a, const CameraState &b, uint32_t model)
{
    const auto same = [&](const filter_info_t *element) {
        return element->type == FILTER_INFO_BLOCK ||
               (element->type == FILTER_INFO_STATUS ? a.statuses.at(element->id) == b.statuses.at(element->id)
                                                    : a.settings.at(element->id) == b.settings.at(element->id));
    };
    return std::ranges::all_of(rules_of(model),
                               [&](const auto &rule) { return std::ranges::all_of(rule.second, same); });
}

std::string condition_name(const filter_info_t &condition)
{
    return (condition.type == FILTER_INFO_STATUS ? "status " : "setting ") + std::to_string(condition.id);
}

std::string because(const Removal &removal, const std::function<std::string(const filter_info_t &condition)> &name)
{
    std::string text;
    for (const MetCondition &met : removal.conditions) {
        text += (text.empty() ? "" : " and ") + name(*met.condition) + " is " + met.current;
    }
    return text;
}

Availability::Availability(const CameraState &state, uint32_t model) : m_catalogue(options_of(model))
{
    for (const auto &[number, elements] : rules_of(model)) {
        Applied rule = {number, {}};
        const bool applies = std::all_of(elements.begin(), elements.end(), [&](const filter_info_t *element) {
            if (element->type == FILTER_INFO_BLOCK) {
                return true;
            }
            MetCondition &met = rule.conditions.emplace_back(MetCondition{element, {}});
            return holds(*element, state, m_catalogue, met.current);
        });
        if (!applies) {
            continue;
        }
        for (const filter_info_t *element : elements) {
            if (element->type == FILTER_INFO_BLOCK) {
                m_consequences[element->id].push_back({m_applied.size(), element});
            }
        }
        m_applied.push_back(std::move(rule));
    }
    for (const auto &[setting, options] : m_catalogue) {
        Offer &offer = m_offers[setting];
        offer.off = taken_away(setting, nullptr);
        for (const option_t *option : options) {
            if (!taken_away(setting, option->key)) {
                offer.options.push_back(option);
            }
        }
    }
}

bool Availability::taken_away(uint32_t setting, const char *key) const
{
    const auto found = m_consequences.find(setting);
    return found != m_consequences.end() &&
           std::any_of(found->second.begin(), found->second.end(),
                       [key](const Consequence &consequence) { return takes_away(*consequence.element, key); });
}

std::vector<Removal> Availability::removals(uint32_t setting, const char *key) const
{
    std::vector<Removal> removals;
    const auto found = m_consequences.find(setting);
    if (found == m_consequences.end()) {
        return removals;
    }
    for (const Consequence &consequence : found->second) {
        const Applied &rule = m_applied[consequence.rule];
        const bool told = !removals.empty() && removals.back().rule == rule.number;
        if (!told && takes_away(*consequence.element, key)) {
            removals.push_back({rule.number, consequence.element, rule.conditions});
        }
    }
    return removals;
}

bool Availability::offers(uint32_t setting) const
{
    const auto offer = m_offers.find(setting);
    return offer != m_offers.end() && !offer->second.off;
}

bool Availability::offers(uint32_t setting, uint32_t option_id) const
{
    const std::vector<const option_t *> left = options(setting);
    return std::any_of(left.begin(), left.end(), [option_id](const option_t *o) { return o->id == option_id; });
}

bool Availability::has_choice(uint32_t setting) const
{
    return m_offers.find(setting) == m_offers.end() || !options(setting).empty();
}

std::vector<const option_t *> Availability::options(uint32_t setting) const
{
    const auto offer = m_offers.find(setting);
    return offer != m_offers.end() ? offer->second.options : std::vector<const option_t *>{};
}

std::vector<Removal> Availability::why(uint32_t setting) const
{
    return removals(setting, nullptr);
}

std::vector<Removal> Availability::why(uint32_t setting, uint32_t option_id) const
{
    const option_t *option = find_option(m_catalogue, setting, option_id);
    return option != nullptr ? removals(setting, option->key) : std::vector<Removal>{};
}

std::vector<Removal> Availability::against(uint32_t setting, uint32_t option_id) const
{
    return find_option(m_catalogue, setting, option_id) != nullptr ? why(setting, option_id) : why(setting);
}

} // namespace zvservice
