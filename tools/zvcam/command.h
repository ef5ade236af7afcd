// A command of the tool is a row: its name, what it takes, a line of help, and a function. Each noun has a source of
// its own with a table of such rows; main.cpp turns the tables into the option parser's words.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace zvcam {

struct Option {
    const char *name = nullptr;    // "--json"
    const char *operand = nullptr; // what follows it; null for a flag
    const char *help = nullptr;
};

// What was said.
struct Arguments {
    const char *command = "";                   // its name
    std::vector<std::string> words;             // operands, in order
    std::map<std::string, std::string> options; // those that were given

    bool given(const char *option) const { return options.count(option) != 0; }

    // Whether to print JSON. Every command can.
    bool json() const { return given("--json"); }

    // An option's number between the limits, or `otherwise` when it was not given.
    int64_t number(const char *option, int64_t otherwise, int64_t low, int64_t high) const;
};

// A number between the limits, decimal or 0x and hexadecimal. Anything else is wrong usage, and `what` names it.
int64_t parse_number(const std::string &text, const char *what, int64_t low, int64_t high);

// What a command prints with --json that only does something.
inline constexpr char DONE_AS_JSON[] = R"({"done":COMMAND})";

struct Command {
    const char *name;     // "status"; "media tag" is a command of the group "media", whose row comes before it
    const char *operands; // "NAME [OPTION]"; the last one may take many: "[HEX...]"
    const char *help;
    void (*run)(const Arguments &); // throws Failure
    Option options[4] = {};
    const char *json = DONE_AS_JSON; // what it prints with --json, for its help
};

using Commands = std::span<const Command>;

extern const Commands STATUS_COMMANDS;
extern const Commands SETTINGS_COMMANDS;
extern const Commands CAMERA_COMMANDS;
extern const Commands MEDIA_COMMANDS;
extern const Commands BROADCAST_COMMANDS;
extern const Commands FIRMWARE_COMMANDS;
extern const Commands MESSAGE_COMMANDS;
extern const Commands CLEAN_COMMANDS;

constexpr Option YES = {"--yes", nullptr, "do not ask"};

// Asks on the terminal before something that cannot be undone, unless --yes was given. No is the answer of whoever
// cannot be asked, and ends the command.
void confirm(const Arguments &arguments, const char *question);

} // namespace zvcam
