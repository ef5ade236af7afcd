// zvcam: look at a camera and command it, from a terminal or a script.

#include "command.h"
#include "failure.h"
#include "json.h"
#include "links.h"
#include "output.h"
#include "signals.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <span>
#include <string>
#include <string_view>
#include <syslog.h>
#include <zvctrl/zvDbg.h>

namespace {

using namespace zvcam;

constexpr char DESCRIPTION[] = "Look at a camera and command it.\n"
                               "A SETTING or an OPTION is given by its number, its name or its key.";

const Commands ALL_COMMANDS[] = {STATUS_COMMANDS,    SETTINGS_COMMANDS, CAMERA_COMMANDS,  MEDIA_COMMANDS,
                                 BROADCAST_COMMANDS, FIRMWARE_COMMANDS, MESSAGE_COMMANDS, CLEAN_COMMANDS};

constexpr char OUTPUT_LOST[] = "cannot write standard output";

constexpr Option VERBOSE = {"-v,--verbose", nullptr, "show the library's log on standard error; twice for all of it"};
constexpr Option JSON = {"--json", nullptr, "print JSON; COMMAND --help says which"};
constexpr Option WAIT = {"--wait", nullptr, "wait up to 12 seconds for the camera's side to come up and to answer"};

// The words of the command line. A parser for these alone knows the commands that are among them, which is all that it
// can come across in what it understands, and one for no words knows all.
using Words = std::span<char *const>;

bool may_be_called(std::string_view command, Words words)
{
    return words.empty() || std::find(words.begin(), words.end(), command) != words.end();
}

struct Chosen {
    const Command *command = nullptr;
    const CLI::App *words = nullptr;
};

struct Parser {
    explicit Parser(Words words);

    CLI::App app{DESCRIPTION, "zvcam"};
    const CLI::Option *verbose;
    const CLI::Option *json;
    const CLI::Option *wait;
    Chosen chosen; // after parsing
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

void add_command(CLI::App &root, const Command &command, Words words, Chosen &chosen)
{
    CLI::App *parent = &root;
    std::string name = command.name;
    if (const size_t blank = name.find(' '); blank != std::string::npos) {
        const std::string group = name.substr(0, blank);
        if (!may_be_called(group, words)) {
            return;
        }
        parent = root.get_subcommand(group);
        name = name.substr(blank + 1);
    }
    if (!may_be_called(name, words)) {
        return;
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

Parser::Parser(Words words)
{
    app.footer(std::string(JSON_WORDS) + "\n" + EXIT_CODES);
    app.require_subcommand(1, 1);
    app.fallthrough();
    app.set_version_flag("--version", ZVCAM_VERSION);
    verbose = add_option(app, VERBOSE);
    json = add_option(app, JSON);
    wait = add_option(app, WAIT);
    for (const Commands &commands : ALL_COMMANDS) {
        for (const Command &command : commands) {
            add_command(app, command, words, chosen);
        }
    }
}

Arguments arguments_of(const Parser &parser)
{
    Arguments arguments;
    arguments.command = parser.chosen.command->name;
    if (parser.json->count() > 0) {
        arguments.options[parser.json->get_name()] = {};
    }
    for (const CLI::Option *option : parser.chosen.words->get_options()) {
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

int call(const Parser &parser)
{
    const auto verbosity = static_cast<int64_t>(parser.verbose->count());
    set_up_log(verbosity);
    if (parser.wait->count() > 0) {
        wait_for_camera();
    }
    remove_queues_at_signals();
    parser.chosen.command->run(arguments_of(parser));
    if (!flush_output()) {
        fail(EXIT_FAILED, "%s", OUTPUT_LOST);
    }
    return EXIT_DONE;
}

// Help and complaints may speak of every command.
int call_or_explain(int argc, char **argv)
{
    Parser parser({});
    try {
        parser.app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return parser.app.exit(error) == 0 ? EXIT_DONE : EXIT_WRONG_USAGE;
    }
    return call(parser);
}

// To make all commands known takes longer than most of them run, so that it is left for when it matters.
int run(int argc, char **argv)
{
    Parser parser(Words(argv, static_cast<size_t>(argc)));
    try {
        parser.app.parse(argc, argv);
    } catch (const CLI::ParseError &) {
        return call_or_explain(argc, argv);
    }
    return call(parser);
}

} // namespace

int main(int argc, char **argv)
{
    zvUtilTellCounterFailures(false); // they would go to standard output
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
        return EXIT_FAILED;
    }
}
