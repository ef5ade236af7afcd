#include "documents.h"

#include "json.h"
#include "links.h"
#include "member_json.h"

#include <cstdint>
#include <map>
#include <utility>

namespace zvservice {

namespace {

std::string members_json(const std::vector<Member> &members)
{
    Json json;
    json.open('{');
    for (const Member &member : members) {
        write_member(json, member.id, member.text);
    }
    return json.close().text();
}

// Without a service that has it the library looks for the number by a shell command, each time. That is not worth it
// before a camera has told anything.
uint32_t model_of(const Snapshot &snapshot, bool has_service)
{
    if (snapshot.state != nullptr) {
        return snapshot.state->model();
    }
    return has_service ? camera_model() : 0;
}

void write_condition(Json &json, const MetCondition &met)
{
    json.open('{');
    if (met.condition->type == FILTER_INFO_STATUS) {
        json.member("status", met.condition->id).key("value").raw(met.current);
    } else {
        json.member("setting", met.condition->id).member("option", met.current);
    }
    json.close();
}

void write_why(Json &json, const std::vector<Removal> &reasons)
{
    json.open('[');
    for (const Removal &removal : reasons) {
        json.open('{').member("rule", removal.rule).key("because").open('[');
        for (const MetCondition &met : removal.conditions) {
            write_condition(json, met);
        }
        json.close().close();
    }
    json.close();
}

// The members of an option, without the braces.
void write_option(Json &json, const Catalogue &catalogue, uint32_t setting, uint32_t id)
{
    json.member("id", id);
    if (const option_t *option = catalogue.option(setting, id)) {
        json.member("key", option->key).member("name", option->name);
    } else {
        json.member("key", std::to_string(id)).member("name", catalogue.option_text(setting, id));
    }
}

void write_names(Json &json, const Catalogue &catalogue, uint32_t setting)
{
    json.member("setting", setting).member("name", catalogue.name(setting));
}

void write_default(Json &json, const Catalogue &catalogue, uint32_t setting)
{
    if (uint32_t id = 0; catalogue.default_option(setting, id)) {
        write_option(json.key("default").open('{'), catalogue, setting, id);
        json.close();
    }
}

// The rules that leave a setting without an option: those that take it away as a whole, or else those that take away
// the one option and the other.
std::vector<Removal> rules_against(const Availability &availability, const Catalogue &catalogue, uint32_t setting)
{
    if (availability.has_choice(setting)) {
        return {};
    }
    std::vector<Removal> reasons = availability.why(setting);
    if (!reasons.empty()) {
        return reasons;
    }
    std::map<uint32_t, Removal> by_rule;
    for (const option_t *option : catalogue.options(setting)) {
        for (Removal &removal : availability.why(setting, option->id)) {
            by_rule.emplace(removal.rule, std::move(removal));
        }
    }
    for (auto &[rule, removal] : by_rule) {
        reasons.push_back(std::move(removal));
    }
    return reasons;
}

void write_availability(Json &json, const Availability &availability, const Catalogue &catalogue, uint32_t setting)
{
    json.member("available", availability.has_choice(setting));
    write_why(json.key("why"), rules_against(availability, catalogue, setting));
}

} // namespace

std::string status_json(const State &state)
{
    return members_json(state.status_members());
}

std::string settings_json(const State &state)
{
    return members_json(state.settings_members());
}

std::string camera_json(const Snapshot &snapshot)
{
    const CameraIdentity identity = camera_identity();
    Json json;
    json.open('{').member("model", model_of(snapshot, !identity.model_name.empty()));
    json.member("model_name", identity.model_name).member("serial_number", identity.serial_number);
    json.member("firmware", identity.firmware);
    json.member("link", link_state_name(snapshot.link)).member("switched_off", snapshot.switched_off);
    json.member("epoch", snapshot.epoch != nullptr ? *snapshot.epoch : "").member("revision", snapshot.revision);
    return json.close().text();
}

std::string why_json(const std::vector<Removal> &reasons)
{
    Json json;
    write_why(json, reasons);
    return json.text();
}

std::string option_json(const Catalogue &catalogue, uint32_t setting, uint32_t id)
{
    Json json;
    write_option(json.open('{'), catalogue, setting, id);
    return json.close().text();
}

std::string option_member_json(const Catalogue &catalogue, uint32_t setting, uint32_t id)
{
    Json json;
    if (catalogue.options(setting).empty()) {
        return json.member("value", id).text();
    }
    return json.key("option").raw(option_json(catalogue, setting, id)).text();
}

std::string setting_json(const State &state, uint32_t setting)
{
    const Catalogue catalogue(state.model());
    const Availability availability(state.values(), state.model());
    Json json;
    write_names(json.open('{'), catalogue, setting);
    json.raw(option_member_json(catalogue, setting, state.option(setting)));
    write_default(json, catalogue, setting);
    write_availability(json, availability, catalogue, setting);
    json.key("options").open('[');
    for (const option_t *option : catalogue.options(setting)) {
        write_option(json.open('{'), catalogue, setting, option->id);
        const std::vector<Removal> reasons = availability.against(setting, option->id);
        json.member("available", reasons.empty());
        write_why(json.key("why"), reasons);
        json.close();
    }
    return json.close().close().text();
}

std::string catalogue_json(uint32_t model)
{
    const Catalogue catalogue(model);
    Json json;
    json.open('{').key("settings").open('[');
    for (const uint32_t setting : catalogue.settings()) {
        write_names(json.open('{'), catalogue, setting);
        write_default(json, catalogue, setting);
        json.key("options").open('[');
        for (const option_t *option : catalogue.options(setting)) {
            write_option(json.open('{'), catalogue, setting, option->id);
            json.close();
        }
        json.close().close();
    }
    return json.close().close().text();
}

std::string available_json(const State &state)
{
    const Catalogue catalogue(state.model());
    const Availability availability(state.values(), state.model());
    Json json;
    json.open('{');
    for (const uint32_t setting : catalogue.settings()) {
        json.key(std::to_string(setting)).open('{');
        write_availability(json, availability, catalogue, setting);
        json.key("options").open('[');
        for (const option_t *option : availability.options(setting)) {
            json.value(option->id);
        }
        json.close().key("unavailable").open('[');
        for (const option_t *option : catalogue.options(setting)) {
            if (const std::vector<Removal> reasons = availability.against(setting, option->id); !reasons.empty()) {
                write_why(json.open('{').member("id", option->id).key("why"), reasons);
                json.close();
            }
        }
        json.close().close();
    }
    return json.close().text();
}

} // namespace zvservice
