#include "forks.h"

#include <atomic>
#include <new>
#include <pthread.h>

namespace zvservice {

constinit std::mutex held_over_forks;

namespace {

constinit std::atomic<uint32_t> generation = 0;

void before_fork()
{
    held_over_forks.lock();
}

void after_fork_in_parent()
{
    held_over_forks.unlock();
}

void after_fork_in_child()
{
    ++generation;
    held_over_forks.unlock();
}

} // namespace

void watch_forks()
{
    static const int error = pthread_atfork(before_fork, after_fork_in_parent, after_fork_in_child);
    if (error != 0) {
        throw std::bad_alloc(); // its only error
    }
}

uint32_t fork_generation() noexcept
{
    return generation.load(std::memory_order_relaxed);
}

} // namespace zvservice
