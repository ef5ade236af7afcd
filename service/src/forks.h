// What has to hold in a child after a fork, where all other threads are gone, and the locks that they held stay taken.
#pragma once

#include <cstdint>
#include <mutex>

namespace zvservice {

// Makes forks take the lock below and count. Once per process is enough, more do no harm.
void watch_forks();

// Held over every fork, so that a child finds it free and what it guards whole. For a few instructions at a time.
extern constinit std::mutex held_over_forks;

// Another number in a child than in its parent.
uint32_t fork_generation() noexcept;

} // namespace zvservice
