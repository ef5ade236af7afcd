// The rows of the table of the bridge to a broker.
#pragma once

namespace bench {

// Its size and memory, where one of its rows was measured, and which rows are left out: one line each.
void print_mqtt();

} // namespace bench
