#include "allocations.h"

#include <cstddef>

namespace {

uint64_t count = 0;

} // namespace

namespace bench {

uint64_t allocations()
{
    return count;
}

} // namespace bench

// The C library's own, under the names by which it lets itself be replaced.
extern "C" {

void *__libc_malloc(size_t size);
void *__libc_calloc(size_t number, size_t size);
void *__libc_realloc(void *memory, size_t size);

void *malloc(size_t size)
{
    ++count;
    return __libc_malloc(size);
}

void *calloc(size_t number, size_t size)
{
    ++count;
    return __libc_calloc(number, size);
}

void *realloc(void *memory, size_t size)
{
    ++count;
    return __libc_realloc(memory, size);
}

} // extern "C"
