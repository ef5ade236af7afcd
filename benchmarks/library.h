// What the library costs before and beside its calls.
#pragma once

namespace bench {

// Its size and memory, and what the first caller of the filter rules pays: one line each.
void print_library();

} // namespace bench
