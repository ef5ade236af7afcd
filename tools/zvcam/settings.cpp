// The camera's settings: settings, get, set, why.

#include "settings.h"

#include "command.h"
#include "failure.h"
#include "json.h"
#include "links.h"
#include "options.h"
#include "state.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>
#include <zvservice/availability.h>
#include <zvservice/permission.h>
#include <zvservice/snapshot.h>

namespace zvcam {

using zvservice::Availability;
using zvservice::Member;
using zvservice::MetCondition;
using zvservice::Outcome;
using zvservice::Removal;
using zvservice::Result;
using zvservice::State;

namespace {

constexpr size_t LINE_WIDTH = 100;
constexpr char INDENT[] = "      ";
constexpr char NOT_AVAILABLE[] = "  (not available now)";

// How long a changed setting may take to show.
constexpr int LOOKS = 10;
constexpr timespec BETWEEN_LOOKS = {0, 100000000};

Availability availability_in(const State &state)
{
    return Availability(state.values(), state.model());
}

void print_setting(uint32_t setting, uint32_t option, const char *mark = "")
{
    printf("%3u %-34s ", setting, catalogue().name(setting).c_str());
    const std::string now = catalogue().option_text(setting, option) + mark;
    if (uint32_t id = 0; catalogue().default_option(setting, id)) {
        printf("%-28s default %s\n", now.c_str(), catalogue().option_text(setting, id).c_str());
    } else {
        printf("%s\n", now.c_str());
    }
}

// Keys with their ids, as many per line as fit.
void print_choices(const std::vector<const option_t *> &options)
{
    std::string line;
    for (const option_t *option : options) {
        const std::string choice = std::string(option->key) + " " + std::to_string(option->id);
        if (!line.empty() && line.size() + choice.size() + 2 > LINE_WIDTH) {
            printf("%s%s,\n", INDENT, line.c_str());
            line.clear();
        }
        line += (line.empty() ? "" : ", ") + choice;
    }
    if (!line.empty()) {
        printf("%s%s\n", INDENT, line.c_str());
    }
}

void print_removals(const std::vector<Removal> &removals)
{
    for (const Removal &removal : removals) {
        printf("%s%s\n", INDENT, catalogue().reason(removal).c_str());
    }
}

void write_condition(Json &json, const MetCondition &met)
{
    const uint32_t id = met.condition->id;
    json.open('{');
    if (met.condition->type == FILTER_INFO_STATUS) {
        json.member("status", id).member("name", zvservice::status_name(id));
        json.member("is", strtoul(met.current.c_str(), nullptr, 10));
    } else {
        json.member("setting", id).member("name", catalogue().name(id)).member("is", met.current);
    }
    json.close();
}

void write_removals(Json &json, const std::vector<Removal> &removals)
{
    json.key("rules").open('[');
    for (const Removal &removal : removals) {
        json.open('{').member("rule", removal.rule).key("because").open('[');
        for (const MetCondition &met : removal.conditions) {
            write_condition(json, met);
        }
        json.close().close();
    }
    json.close();
}

bool is_available(const Availability &availability, uint32_t setting, uint32_t option)
{
    return availability.against(setting, option).empty();
}

// The members of a setting, whose present option is `now`.
void write_setting(Json &json, const Availability &availability, uint32_t setting, uint32_t now)
{
    json.member("setting", setting).member("name", catalogue().name(setting));
    json.member("available", availability.has_choice(setting));
    write_option(json.key("present").open('{'), setting, now);
    json.member("available", is_available(availability, setting, now)).close();
}

void write_default(Json &json, uint32_t setting)
{
    if (uint32_t id = 0; catalogue().default_option(setting, id)) {
        write_option(json.key("default").open('{'), setting, id);
        json.close();
    }
}

// Whether "settings --available" lists it: no rule takes it away as a whole.
bool is_listed(const Availability &availability, uint32_t setting)
{
    return availability.offers(setting) || catalogue().options(setting).empty();
}

void write_available(Json &json, const Availability &availability, uint32_t setting, uint32_t now)
{
    json.open('{');
    write_setting(json, availability, setting, now);
    write_default(json, setting);
    json.key("options").open('[');
    for (const option_t *option : availability.options(setting)) {
        write_option(json.open('{'), setting, option->id);
        json.close();
    }
    json.close().close();
}

void print_available(const Availability &availability, uint32_t setting, uint32_t now)
{
    print_setting(setting, now, is_available(availability, setting, now) ? "" : NOT_AVAILABLE);
    if (availability.has_choice(setting)) {
        print_choices(availability.options(setting));
    } else {
        printf("%sno option is left\n", INDENT);
    }
}

void show_available(const Arguments &arguments, const State &state)
{
    const Availability availability = availability_in(state);
    show(arguments, [&](Json *json) {
        if (json != nullptr) {
            json->key("available").open('[');
        }
        for (const Member &member : state.settings_members()) {
            const uint32_t now = state.option(member.id);
            if (!is_listed(availability, member.id)) {
                continue;
            }
            if (json != nullptr) {
                write_available(*json, availability, member.id, now);
            } else {
                print_available(availability, member.id, now);
            }
        }
        if (json != nullptr) {
            json->close();
        }
    });
}

void settings(const Arguments &arguments)
{
    const auto state = poll();
    if (arguments.given("--available")) {
        show_available(arguments, *state);
    } else if (arguments.json()) {
        printf("{%s}\n", state->settings_document().c_str());
    } else {
        for (const Member &member : state->settings_members()) {
            const auto &options = catalogue().options(member.id);
            print_setting(member.id, state->option(member.id));
            print_choices({options.begin(), options.end()});
        }
    }
}

void get(const Arguments &arguments)
{
    const auto state = poll();
    const uint32_t setting = find_setting(arguments.words.at(0));
    const Availability availability = availability_in(*state);
    const uint32_t now = state->option(setting);
    show(arguments, [&](Json *json) {
        if (json == nullptr) {
            print_setting(setting, now);
            for (const option_t *option : catalogue().options(setting)) {
                printf("%s%c %7u %-34s %s%s\n", INDENT, option->id == now ? '*' : ' ', option->id, option->key,
                       option->name, availability.offers(setting, option->id) ? "" : NOT_AVAILABLE);
            }
            return;
        }
        write_setting(*json, availability, setting, now);
        write_default(*json, setting);
        json->key("options").open('[');
        for (const option_t *option : catalogue().options(setting)) {
            write_option(json->open('{'), setting, option->id);
            json->member("available", availability.offers(setting, option->id)).close();
        }
        json->close();
    });
}

// "240, the present option,"
std::string option_or_present(uint32_t setting, uint32_t option, uint32_t now)
{
    return catalogue().option_text(setting, option) + (option == now ? ", the present option," : "");
}

void print_why(const Availability &availability, uint32_t setting, uint32_t now)
{
    const auto whole = availability.why(setting);
    const std::string name = catalogue().name(setting);
    const bool left = availability.has_choice(setting);
    if (whole.empty() && !left) {
        printf("%u %s is not available: no option is left\n", setting, name.c_str());
    } else {
        printf("%u %s is %savailable\n", setting, name.c_str(), left ? "" : "not ");
    }
    print_removals(whole);
    for (const option_t *option : catalogue().options(setting)) {
        if (whole.empty() && !availability.offers(setting, option->id)) {
            printf("  %s is not available\n", option_or_present(setting, option->id, now).c_str());
            print_removals(availability.why(setting, option->id));
        }
    }
}

void write_why(Json &json, const Availability &availability, uint32_t setting, uint32_t now)
{
    write_setting(json, availability, setting, now);
    write_removals(json, availability.why(setting));
    json.key("options").open('[');
    for (const option_t *option : catalogue().options(setting)) {
        write_option(json.open('{'), setting, option->id);
        json.member("available", availability.offers(setting, option->id));
        write_removals(json, availability.why(setting, option->id));
        json.close();
    }
    json.close();
}

void show_why(const Arguments &arguments, const Availability &availability, uint32_t setting, uint32_t now)
{
    show(arguments, [&](Json *json) {
        if (json != nullptr) {
            write_why(*json, availability, setting, now);
        } else {
            print_why(availability, setting, now);
        }
    });
    if (!availability.has_choice(setting)) {
        answer_no();
    }
}

void show_why_option(const Arguments &arguments, const Availability &availability, uint32_t setting, uint32_t now)
{
    const uint32_t option = find_option(setting, arguments.words[1], now);
    const auto removals = availability.against(setting, option);
    show(arguments, [&](Json *json) {
        if (json == nullptr) {
            printf("%u %s: %s is %savailable\n", setting, catalogue().name(setting).c_str(),
                   removals.empty() ? catalogue().option_text(setting, option).c_str()
                                    : option_or_present(setting, option, now).c_str(),
                   removals.empty() ? "" : "not ");
            print_removals(removals);
            return;
        }
        write_setting(*json, availability, setting, now);
        write_option(json->key("option").open('{'), setting, option);
        json->member("available", removals.empty());
        write_removals(*json, removals);
        json->close();
    });
    if (!removals.empty()) {
        answer_no();
    }
}

void why(const Arguments &arguments)
{
    const auto state = poll();
    const uint32_t setting = find_setting(arguments.words.at(0));
    const auto show_answer = arguments.words.size() > 1 ? show_why_option : show_why;
    show_answer(arguments, availability_in(*state), setting, state->option(setting));
}

// The state as soon as it shows the option, or after a second.
std::unique_ptr<const State> state_with(Daemon &daemon, uint32_t setting, uint32_t option)
{
    for (int look = 1;; ++look) {
        auto state = poll(daemon);
        if (state->option(setting) == option || look == LOOKS) {
            return state;
        }
        nanosleep(&BETWEEN_LOOKS, nullptr);
    }
}

void set(const Arguments &arguments)
{
    Daemon daemon;
    const auto before = poll(daemon);
    const uint32_t setting = find_setting(arguments.words.at(0));
    const uint32_t option = find_option(setting, arguments.words.at(1), before->option(setting));
    if (!arguments.given("--force")) {
        check(permission(*before, setting, option), "--force sends it all the same");
    }
    Camera camera;
    check(camera.set(*before, setting, option));
    const auto after = state_with(daemon, setting, option);
    if (arguments.json() || !zvservice::difference(before.get(), *after).empty()) {
        show_changes(before.get(), *after, arguments.json());
    } else {
        printf("nothing changed\n");
    }
    if (const uint32_t now = after->option(setting); now != option) {
        check(Result(Outcome::REFUSED,
                     "the camera took the command and still shows " + catalogue().option_text(setting, now)));
    }
}

constexpr Command COMMANDS[] = {
    {"settings",
     "",
     "the settings by number, name and option, with default and choices",
     settings,
     {{"--available", nullptr, "only what the camera's rules allow now"}},
     R"({"settings":{ID:OPTION_ID,...}}
  --available: {"available":[{SETTING,"default":{OPTION},"options":[{OPTION},...]},...]})"},
    {"get",
     "SETTING",
     "one setting and its options",
     get,
     {},
     R"({SETTING,"default":{OPTION},"options":[{OPTION,"available":BOOL},...]})"},
    {"set",
     "SETTING OPTION",
     "change a setting, and show what changed with it; the scheduled capture (168) takes a time of day or off",
     set,
     {{"--force", nullptr, "send it even where the rules forbid it"}},
     STATE_AS_JSON},
    {"why",
     "SETTING [OPTION]",
     "whether a setting or an option is available now, and which rules take it away; exit code 1 when it is not",
     why,
     {},
     R"({SETTING,"rules":RULES,"options":[{OPTION,"available":BOOL,"rules":RULES},...]}
  with an option: {SETTING,"option":{OPTION,"available":BOOL,"rules":RULES}})"},
};

} // namespace

constinit const Commands SETTINGS_COMMANDS = COMMANDS;

void print_settings(const State &state)
{
    for (const Member &member : state.settings_members()) {
        print_setting(member.id, state.option(member.id));
    }
}

} // namespace zvcam
