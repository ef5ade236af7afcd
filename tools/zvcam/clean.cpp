// The queues that ended processes left behind.

#include "command.h"
#include "failure.h"
#include "json.h"

#include <cstdio>
#include <string>
#include <vector>
#include <zvservice/links.h>

namespace zvcam {

namespace {

void clean(const Arguments &arguments)
{
    std::vector<std::string> removed;
    check(zvservice::remove_leftover_queues(removed));
    show(arguments, [&removed](Json *json) {
        if (json != nullptr) {
            json->key("removed").open('[');
            for (const std::string &name : removed) {
                json->value(name);
            }
            json->close();
            return;
        }
        for (const std::string &name : removed) {
            printf("removed %s\n", name.c_str());
        }
        if (removed.empty()) {
            printf("no queues were left behind\n");
        }
    });
}

constexpr Command COMMANDS[] = {
    {"clean", "", "remove the message queues that ended processes left behind", clean, {}, R"({"removed":[TEXT,...]})"},
};

} // namespace

constinit const Commands CLEAN_COMMANDS = COMMANDS;

} // namespace zvcam
