// The camera's settings: settings, get, set, why.

#include "settings.h"

#include "command.h"
#include "links.h"
#include "options.h"
#include "output.h"

#include <algorithm>
#include <cstdlib>
#include <rules.h>

namespace zvcam {

namespace {

constexpr size_t LINE_WIDTH = 100;
constexpr char INDENT[] = "      ";

zv::Availability availability_in(const State &state)
{
    return zv::Availability(zv::read_state(state.all, camera_model()), camera_model());
}

uint32_t option_now(const State &state, uint32_t setting)
{
    return zv::read_state(state.all, camera_model()).settings.at(setting);
}

void print_setting(uint32_t setting, uint32_t option)
{
    print("%3u %-34s %-28s", setting, setting_name(setting).c_str(), option_text(setting, option).c_str());
    if (uint32_t id = 0; default_option(setting, id)) {
        print(" default %s", option_text(setting, id).c_str());
    }
    print("\n");
}

// Keys with their ids, as many to a line as fit.
void print_choices(const std::vector<const option_t *> &options)
{
    std::string line;
    for (const option_t *option : options) {
        const std::string choice = std::string(option->key) + " " + std::to_string(option->id);
        if (!line.empty() && line.size() + choice.size() + 2 > LINE_WIDTH) {
            print("%s%s,\n", INDENT, line.c_str());
            line.clear();
        }
        line += (line.empty() ? "" : ", ") + choice;
    }
    if (!line.empty()) {
        print("%s%s\n", INDENT, line.c_str());
    }
}

void print_removals(const std::vector<zv::Removal> &removals)
{
    for (const zv::Removal &removal : removals) {
        print("%srule %u, because %s\n", INDENT, removal.rule, zv::because(removal).c_str());
    }
}

void settings(const Arguments &arguments)
{
    const State state(DaemonLink().poll());
    if (arguments.given("--json")) {
        print("{%s}\n", settings_document(state).c_str());
        return;
    }
    const bool available = arguments.given("--available");
    const zv::Availability availability = availability_in(state);
    for (const Member &member : settings_members(state)) {
        const auto option = static_cast<uint32_t>(strtoul(member.value.c_str(), nullptr, 10));
        if (!available || availability.offers(member.id) || options_of(member.id).empty()) {
            const auto &all = options_of(member.id);
            print_setting(member.id, option);
            print_choices(available ? availability.options(member.id)
                                    : std::vector<const option_t *>(all.begin(), all.end()));
        }
    }
}

void get(const Arguments &arguments)
{
    const uint32_t setting = find_setting(arguments.words.at(0));
    const State state(DaemonLink().poll());
    const zv::Availability availability = availability_in(state);
    const uint32_t now = option_now(state, setting);
    print_setting(setting, now);
    for (const option_t *option : options_of(setting)) {
        print("%s%c %7u %-34s %s%s\n", INDENT, option->id == now ? '*' : ' ', option->id, option->key, option->name,
              availability.offers(setting, option->id) ? "" : "  (not available now)");
    }
}

// The rules that forbid the option now; none for an option that no rule knows, unless the whole setting is forbidden.
std::vector<zv::Removal> removals_of(const zv::Availability &availability, uint32_t setting, uint32_t option)
{
    const std::vector<zv::Removal> removals = availability.why(setting, option);
    return removals.empty() ? availability.why(setting) : removals;
}

void why(const Arguments &arguments)
{
    const uint32_t setting = find_setting(arguments.words.at(0));
    const State state(DaemonLink().poll());
    const zv::Availability availability = availability_in(state);
    if (arguments.words.size() > 1) {
        const uint32_t option = find_option(setting, arguments.words[1]);
        const auto removals = removals_of(availability, setting, option);
        print("%u %s: %s is %savailable\n", setting, setting_name(setting).c_str(),
              option_text(setting, option).c_str(), removals.empty() ? "" : "not ");
        print_removals(removals);
        return;
    }
    const auto whole = availability.why(setting);
    print("%u %s is %savailable\n", setting, setting_name(setting).c_str(), whole.empty() ? "" : "not ");
    print_removals(whole);
    for (const option_t *option : options_of(setting)) {
        if (whole.empty() && !availability.offers(setting, option->id)) {
            print("  %s is not available\n", option_text(setting, option->id).c_str());
            print_removals(availability.why(setting, option->id));
        }
    }
}

constexpr Command COMMANDS[] = {
    {"settings",
     "",
     "the settings by number, name and option, with default and choices",
     settings,
     {JSON, {"--available", nullptr, "only what the camera's rules allow now"}}},
    {"get", "SETTING", "one setting and its options", get},
    {"why", "SETTING [OPTION]", "whether a setting or an option is available now, and which rules take it away", why},
};

} // namespace

constinit const Commands SETTINGS_COMMANDS = COMMANDS;

void print_settings(const State &state)
{
    for (const Member &member : settings_members(state)) {
        print_setting(member.id, static_cast<uint32_t>(strtoul(member.value.c_str(), nullptr, 10)));
    }
}

} // namespace zvcam
