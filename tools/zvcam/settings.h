// Settings in words, for the commands that show them.
#pragma once

#include "state.h"

namespace zvcam {

// A line for each setting: number, name, option, default.
void print_settings(const State &state);

} // namespace zvcam
