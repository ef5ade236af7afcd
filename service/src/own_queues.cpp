#include "own_queues.h"

#include "links.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <mqueue.h>
#include <unistd.h>
#include <utility>

namespace zvservice {

namespace {

constexpr pid_t NOBODY = 0;
constexpr pid_t BEING_WRITTEN = -1;

// A signal handler reads it, so that there is no lock. A child after a fork has a copy, where its parent's entries are
// as good as free.
struct Entry {
    std::atomic<pid_t> owner;
    char name[32];
};
constinit Entry entries[64] = {};

// Makes an entry this process's own to write.
bool claim(Entry &entry, pid_t process)
{
    pid_t owner = entry.owner.load();
    return owner != process && owner != BEING_WRITTEN && entry.owner.compare_exchange_strong(owner, BEING_WRITTEN);
}

} // namespace

OwnQueueName::OwnQueueName(std::string text) : m_text(std::move(text)), m_owner(getpid())
{
    for (int place = 0; place < static_cast<int>(std::size(entries)); ++place) {
        Entry &entry = entries[place];
        if (claim(entry, m_owner)) {
            m_text.copy(entry.name, sizeof entry.name - 1);
            entry.name[std::min(m_text.size(), sizeof entry.name - 1)] = '\0';
            entry.owner.store(m_owner);
            m_place = place;
            return;
        }
    }
}

OwnQueueName::~OwnQueueName()
{
    if (m_place >= 0) {
        pid_t owner = m_owner; // in a child the entry may be another's by now
        entries[m_place].owner.compare_exchange_strong(owner, NOBODY);
    }
}

void remove_own_queues() noexcept
{
    const int error = errno;
    const pid_t process = getpid();
    for (const Entry &entry : entries) {
        if (entry.owner.load() == process) {
            mq_unlink(entry.name); // one system call each
        }
    }
    errno = error;
}

} // namespace zvservice
