#include "failing_new.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace test {

Allocations &allocations()
{
    static constinit Allocations all;
    return all;
}

} // namespace test

using test::allocations;

void *operator new(size_t size)
{
    if (allocations().until_failure != test::NEVER && allocations().until_failure-- == 0) {
        throw std::bad_alloc();
    }
    void *memory = malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    ++allocations().in_use;
    return memory;
}

void operator delete(void *memory) noexcept
{
    allocations().in_use -= memory != nullptr ? 1 : 0;
    free(memory);
}

void operator delete(void *memory, size_t) noexcept
{
    operator delete(memory);
}
