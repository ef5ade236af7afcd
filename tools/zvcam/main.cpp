// zvcam: look at a camera and command it, from a terminal or a script.

#include "command.h"
#include "failure.h"
#include "json.h"
#include "links.h"
#include "output.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>
#include <syslog.h>
#include <zvctrl/zvDbg.h>

namespace {

using namespace zvcam;

constexpr char DESCRIPTION[] = "Look at a camera and command it.\n"
                               "A SETTING or an OPTION is given by its number, its name or its key.";

const Commands ALL_COMMANDS[] = {STATUS_COMMANDS,    SETTINGS_COMMANDS, CAMERA_COMMANDS, MEDIA_COMMANDS,
                                 BROADCAST_COMMANDS, FIRMWARE_COMMANDS, MESSAGE_COMMANDS};

constexpr char OUTPUT_LOST[] = "cannot write standard output";

constexpr Option VERBOSE = {"-v,--verbose", nullptr, "show the library's log on standard error; twice for all of it"};
constexpr Option JSON = {"--json", nullptr, "print JSON; COMMAND --help says which"};
constexpr Option WAIT = {"--wait", nullptr, "wait up to 12 seconds for the camera's side to come up"};

struct Chosen {
    const Command *command = nullptr;
    const CLI::App *words = nullptr;
};

// "[HEX...]" is the operand HEX, which may be missing and may be many.
void add_operand(CLI::App &app, std::string word)
{
    const bool optional = word.front() == '[';
    if (optional) {
        word = word.substr(1, word.size() - 2);
    }
    const bool many = word.size() > 3 && word.ends_with("...");
    CLI::Option *operand = app.add_option(many ? word.substr(0, word.size() - 3) : word);
    operand->required(!optional);
    if (many) {
        operand->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args();
    }
}

CLI::Option *add_option(CLI::App &app, const Option &option)
{
    if (option.operand == nullptr) {
        return app.add_flag(option.name, option.help);
    }
    return app.add_option(option.name, option.help)->type_name(option.operand);
}

void add_command(CLI::App &root, const Command &command, Chosen &chosen)
{
    CLI::App *parent = &root;
    std::string name = command.name;
    if (const size_t blank = name.find(' '); blank != std::string::npos) {
        parent = root.get_subcommand(name.substr(0, blank));
        name = name.substr(blank + 1);
    }
    CLI::App *app = parent->add_subcommand(name, command.help);
    if (command.run == nullptr) {
        app->require_subcommand(1);
    } else {
        app->footer(std::string("With --json, in the words of zvcam --help:\n  ") + command.json);
    }
    for (const std::string &operand : CLI::detail::split(command.operands, ' ')) {
        if (!operand.empty()) {
            add_operand(*app, operand);
        }
    }
    for (const Option &option : command.options) {
        if (option.name != nullptr) {
            add_option(*app, option);
        }
    }
    app->parse_complete_callback([&chosen, &command, app] {
        if (app->get_subcommands().empty()) {
            chosen = {&command, app};
        }
    });
}

Arguments arguments_of(const Chosen &chosen, const CLI::Option *json)
{
    Arguments arguments;
    arguments.command = chosen.command->name;
    if (json->count() > 0) {
        arguments.options[json->get_name()] = {};
    }
    for (const CLI::Option *option : chosen.words->get_options()) {
        if (option->get_positional()) {
            arguments.words.insert(arguments.words.end(), option->results().begin(), option->results().end());
        } else if (option->count() > 0) {
            arguments.options[option->get_name()] = option->results().back();
        }
    }
    return arguments;
}

void set_up_log(int64_t verbosity)
{
    openlog("zvcam", verbosity > 0 ? LOG_PERROR : 0, LOG_USER);
    zvUtilSetLogLevel(static_cast<int32_t>(std::min<int64_t>(ZV_LOG_ERROR + 2 * verbosity, ZV_LOG_TRACE)));
}

int run(int argc, char **argv)
{
    CLI::App app(DESCRIPTION, "zvcam");
    app.footer(std::string(JSON_WORDS) + "\n" + EXIT_CODES);
    app.require_subcommand(1, 1);
    app.fallthrough();
    app.set_version_flag("--version", ZVCAM_VERSION);
    const CLI::Option *verbose = add_option(app, VERBOSE);
    const CLI::Option *json = add_option(app, JSON);
    const CLI::Option *wait = add_option(app, WAIT);

    Chosen chosen;
    for (const Commands &commands : ALL_COMMANDS) {
        for (const Command &command : commands) {
            add_command(app, command, chosen);
        }
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? DONE : WRONG_USAGE;
    }

    const auto verbosity = static_cast<int64_t>(verbose->count());
    take_standard_output(verbosity > 0);
    set_up_log(verbosity);
    wait_for_peers(wait->count() > 0);
    remove_queues_at_signals();
    chosen.command->run(arguments_of(chosen, json));
    if (!flush_output()) {
        fail(FAILED, "%s", OUTPUT_LOST);
    }
    return DONE;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run(argc, argv);
    } catch (const Failure &failure) {
        const bool flushed = flush_output();
        if (!failure.message.empty()) {
            fprintf(stderr, "zvcam: %s\n", failure.message.c_str());
        } else if (!flushed) {
            fprintf(stderr, "zvcam: %s\n", OUTPUT_LOST);
        }
        return failure.code;
    } catch (const std::exception &error) {
        fprintf(stderr, "zvcam: %s\n", error.what());
        return FAILED;
    }
}
