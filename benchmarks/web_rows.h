// The web front-end's rows of the table.
#pragma once

namespace bench {

// Its size and memory, and how long it takes to serve, where one of its rows was measured: one line each.
void print_web();

} // namespace bench
