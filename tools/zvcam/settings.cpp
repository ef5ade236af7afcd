// The camera's settings: settings, get, set, why.

#include "settings.h"

#include "command.h"
#include "failure.h"
#include "links.h"
#include "options.h"
#include "output.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <rules.h>
#include <string>
#include <vector>
#include <zvctrl/camera_interface.h>
#include <zvctrl/camera_setting_ids.h>

namespace zvcam {

namespace {

constexpr size_t LINE_WIDTH = 100;
constexpr char INDENT[] = "      ";

// How long a changed setting may take to show.
constexpr int LOOKS = 10;
constexpr timespec BETWEEN_LOOKS = {0, 100000000};

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
    print("%3u %-34s ", setting, setting_name(setting).c_str());
    const std::string now = option_text(setting, option);
    if (uint32_t id = 0; default_option(setting, id)) {
        print("%-28s default %s\n", now.c_str(), option_text(setting, id).c_str());
    } else {
        print("%s\n", now.c_str());
    }
}

// Keys with their ids, as many per line as fit.
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

// "setting 2 video/resolution", "status 89 app_current_mode"
std::string condition_name(const filter_info_t &condition)
{
    return zv::condition_name(condition) + " " +
           (condition.type == FILTER_INFO_STATUS ? status_name(condition.id) : setting_name(condition.id));
}

// "rule 89, because setting 2 video/resolution is 4K"
std::string reason(const zv::Removal &removal)
{
    return "rule " + std::to_string(removal.rule) + ", because " + zv::because(removal, condition_name);
}

void print_removals(const std::vector<zv::Removal> &removals)
{
    for (const zv::Removal &removal : removals) {
        print("%s%s\n", INDENT, reason(removal).c_str());
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
    const State state(DaemonLink().poll());
    const uint32_t setting = find_setting(arguments.words.at(0));
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
    const State state(DaemonLink().poll());
    const uint32_t setting = find_setting(arguments.words.at(0));
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

void forbid(uint32_t setting, uint32_t option, const std::vector<zv::Removal> &removals)
{
    std::string reasons;
    for (const zv::Removal &removal : removals) {
        reasons += "\n  " + reason(removal);
    }
    fail(FORBIDDEN, "%u %s: %s is not available now; --force sends it all the same%s", setting,
         setting_name(setting).c_str(), option_text(setting, option).c_str(), reasons.c_str());
}

// The state as soon as it shows the option, or after a second.
State state_with(DaemonLink &daemon, uint32_t setting, uint32_t option)
{
    for (int look = 1;; ++look) {
        const State state(daemon.poll());
        if (option_now(state, setting) == option || look == LOOKS) {
            return state;
        }
        nanosleep(&BETWEEN_LOOKS, nullptr);
    }
}

void set(const Arguments &arguments)
{
    DaemonLink daemon;
    const State before(daemon.poll());
    const uint32_t setting = find_setting(arguments.words.at(0));
    const std::string &text = arguments.words.at(1);
    const uint32_t option = setting == SETTING_SCHEDULED_CAPTURE ? parse_schedule(text, option_now(before, setting))
                                                                 : find_option(setting, text);
    if (!arguments.given("--force")) {
        const auto removals = removals_of(availability_in(before), setting, option);
        if (!removals.empty()) {
            forbid(setting, option, removals);
        }
    }
    Changes changes;
    changes.look(before);

    CameraLink camera;
    const settings_id_entry_t &row = setting_row(setting);
    const uint32_t value = getOptionValueById(camera_model(), setting, option);
    camera.check(camera_if_settings_set_value_int(camera, static_cast<int32_t>(setting), row.group_id, row.action_id,
                                                  value, row.value_size, &before.settings, &before.status),
                 "change the setting");
    const State after = state_with(daemon, setting, option);
    changes.look(after);
    if (changes.any() || arguments.given("--json")) {
        changes.show(arguments.given("--json"));
    } else {
        print("nothing changed\n");
    }
    if (const uint32_t now = option_now(after, setting); now != option) {
        fail(REFUSED, "the camera took the command and still shows %s", option_text(setting, now).c_str());
    }
}

constexpr Command COMMANDS[] = {
    {"settings",
     "",
     "the settings by number, name and option, with default and choices",
     settings,
     {JSON, {"--available", nullptr, "only what the camera's rules allow now"}}},
    {"get", "SETTING", "one setting and its options", get},
    {"set",
     "SETTING OPTION",
     "change a setting, and show what changed with it; the scheduled capture (168) takes a time of day or off",
     set,
     {{"--force", nullptr, "send it even where the rules forbid it"}, JSON}},
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
