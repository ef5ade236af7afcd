#include "links.h"
#include "queue_names.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <mqueue.h>
#include <string_view>

namespace zvservice {

namespace {

constexpr char FOLDER[] = "/dev/mqueue";

// The names of clients' queues: a prefix, a process id and, where a process has many, a dot and a count.
struct NameForm {
    const char *prefix;
    bool counted;
};
constexpr NameForm FORMS[] = {
    {zv::RESPONSE_QUEUE_PREFIX, false},
    {zv::REPLY_QUEUE_PREFIX, true},
    {"/to_zvcam", false}, // of a command line tool before it used the links
};

// Takes a decimal number off the beginning of a text; 0 where there is none.
pid_t take_number(std::string_view &text)
{
    pid_t number = 0;
    const char *rest = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
    text.remove_prefix(static_cast<size_t>(rest - text.data()));
    return number;
}

// The process that a queue of this name belongs to, or 0 where the name tells none.
pid_t owner_of(std::string_view name)
{
    for (const NameForm &form : FORMS) {
        const std::string_view prefix = form.prefix;
        if (name.substr(0, prefix.size()) != prefix) {
            continue;
        }
        std::string_view rest = name.substr(prefix.size());
        const pid_t owner = take_number(rest);
        if (form.counted && !rest.empty() && rest.front() == '.') {
            rest.remove_prefix(1);
            take_number(rest);
        }
        return owner > 0 && rest.empty() ? owner : 0;
    }
    return 0;
}

bool has_ended(pid_t process)
{
    return kill(process, 0) != 0 && errno == ESRCH;
}

} // namespace

Result remove_leftover_queues(std::vector<std::string> &removed)
{
    removed.clear();
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(opendir(FOLDER), closedir);
    if (folder == nullptr) {
        return {Outcome::FAILED, std::string("cannot list the message queues in ") + FOLDER + ": " + strerror(errno) +
                                     "; as root: mkdir -p " + FOLDER + " && mount -t mqueue none " + FOLDER};
    }
    while (const dirent *entry = readdir(folder.get())) { // NOLINT(concurrency-mt-unsafe): a stream of its own
        const std::string name = std::string("/") + entry->d_name;
        const pid_t owner = owner_of(name);
        if (owner != 0 && has_ended(owner) && mq_unlink(name.c_str()) == 0) {
            removed.push_back(name);
        }
    }
    return {};
}

} // namespace zvservice
