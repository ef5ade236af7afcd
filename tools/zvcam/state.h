// The camera's state in words, and what changed in it.
#pragma once

#include "links.h"

#include <memory>
#include <zvservice/snapshot.h>

namespace zvcam {

// Status and settings as services serve them, or what changed in them, for a command's help.
inline constexpr char STATE_AS_JSON[] = R"({"status":{ID:VALUE,...},"settings":{ID:OPTION_ID,...}})";

// The camera's state as it is now; no answer ends the command.
std::unique_ptr<const zvservice::State> poll(Daemon &daemon);
std::unique_ptr<const zvservice::State> poll(); // on a link of its own

// A line for each member: id, name, value.
void print_status(const zvservice::State &state);

// What differs: as JSON, {"status":{...},"settings":{...}} with the changed members only; or in words, a line for each
// change with the old value and the new one. Without a `before` all of it, with the value alone.
void show_changes(const zvservice::State *before, const zvservice::State &after, bool json);

} // namespace zvcam
