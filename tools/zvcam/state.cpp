#include "state.h"

#include "failure.h"
#include "options.h"
#include "output.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace zvcam {

using zvservice::ChangedMember;
using zvservice::Member;
using zvservice::State;

namespace {

// A value without the quotes of a text.
std::string plain(std::string_view text)
{
    const bool quoted = text.size() >= 2 && text.front() == '"';
    return printable(quoted ? text.substr(1, text.size() - 2) : text);
}

std::vector<ChangedMember> changes(const State *before, const State &after,
                                   const std::vector<Member> &(State::*members)() const)
{
    return zvservice::changed_members(before != nullptr ? (before->*members)() : std::vector<Member>(),
                                      (after.*members)());
}

void print_changes(const State *before, const State &after)
{
    for (const ChangedMember &member : changes(before, after, &State::status_members)) {
        printf("status  %3u %-42s ", member.id, zvservice::status_name(member.id));
        if (!member.before.empty()) {
            printf("%s -> ", plain(member.before).c_str());
        }
        printf("%s\n", plain(member.now).c_str());
    }
    for (const ChangedMember &member : changes(before, after, &State::settings_members)) {
        printf("setting %3u %-42s ", member.id, catalogue().name(member.id).c_str());
        if (before != nullptr) {
            printf("%s -> ", catalogue().option_text(member.id, before->option(member.id)).c_str());
        }
        printf("%s\n", catalogue().option_text(member.id, after.option(member.id)).c_str());
    }
}

} // namespace

std::unique_ptr<const State> poll(Daemon &daemon)
{
    all_status_settings_t record;
    check(daemon.poll(record));
    return std::make_unique<const State>(record, catalogue().model());
}

std::unique_ptr<const State> poll()
{
    Daemon daemon;
    return poll(daemon);
}

void print_status(const State &state)
{
    for (const Member &member : state.status_members()) {
        printf("%3u %-42s %s\n", member.id, zvservice::status_name(member.id), plain(member.text).c_str());
    }
}

void show_changes(const State *before, const State &after, bool json)
{
    if (json) {
        const zvservice::Change change = zvservice::difference(before, after);
        printf("{\"status\":{%s},\"settings\":{%s}}\n", change.status.c_str(), change.settings.c_str());
    } else {
        print_changes(before, after);
    }
}

} // namespace zvcam
