// The test program's own operator new, which fails when a test says so.
#pragma once

#include <cstdint>

namespace test {

constexpr int64_t NEVER = -1;

struct Allocations {
    int64_t until_failure = NEVER; // allocations that succeed before one fails; NEVER once it has
    int64_t in_use = 0;
};

Allocations &allocations();

} // namespace test
