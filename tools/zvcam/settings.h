// Settings in words, for the commands that show them.
#pragma once

#include <zvservice/snapshot.h>

namespace zvcam {

// A line for each setting: number, name, option, default.
void print_settings(const zvservice::State &state);

} // namespace zvcam
