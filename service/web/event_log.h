// The events that went out last: each a text that all clients share, as Server-Sent Events have it. It is the queue of
// every client, and the journal from which one that comes back gets what it missed. Any thread may call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace zvweb {

class EventLog {
  public:
    // A client that more than this waits for, in bytes, is cut off; a journal of more forgets its oldest events.
    static constexpr size_t WAITING_MAX = 262144;

    enum class Kind : uint8_t {
        CHANGE, // which a client that comes back gets
        WHOLE,  // what was before can't be made up for by changes
        OTHER,
    };

    // A client: where it has got to, and how it is woken. It belongs to the log from join() to leave().
    class Reader {
      public:
        virtual ~Reader() = default;

      protected:
        // All three are called under the log's lock, and return at once. After a sleep() there is one wake() at most.
        virtual void sleep() = 0;
        virtual void wake() = 0;
        virtual void cut_off() = 0;

      private:
        friend class EventLog;
        std::shared_ptr<const std::string> m_text; // that goes out now, from the offset on
        size_t m_offset = 0;
        uint64_t m_next = 0;         // event's number
        uint64_t m_replay_until = 0; // of the events before it, changes only
        bool m_sleeping = false;
    };

    // What read() may return besides a number of bytes.
    static constexpr ptrdiff_t SLEEPS = 0;
    static constexpr ptrdiff_t ENDED = -1;
    static constexpr ptrdiff_t CUT_OFF = -2;

    // Adds an event. `revision` is the one that it belongs to.
    void publish(Kind kind, uint64_t revision, std::string text);

    // The reader gets `greeting` and then what is published from now on.
    void join(Reader &reader, std::string greeting);

    // The reader gets the changes after `revision` and then what is published from now on. False where the log does not
    // have them, or not any more: the reader did not join.
    bool join_after(Reader &reader, uint64_t revision);

    void leave(Reader &reader);

    // Copies what waits for the reader, up to `size` bytes. Without any the reader sleeps until there is more.
    ptrdiff_t read(Reader &reader, char *buffer, size_t size);

    // All readers come to their end when they have read everything.
    void end();

    size_t readers() const;

  private:
    struct Event {
        Kind kind;
        uint64_t revision;
        std::shared_ptr<const std::string> text;
    };

    void forget_oldest();
    std::shared_ptr<const std::string> next_text(Reader &reader) const;
    uint64_t end_number() const { return m_first + m_events.size(); }
    static void wake(Reader &reader);

    mutable std::mutex m_mutex;
    std::deque<Event> m_events;
    uint64_t m_first = 0; // the number of the oldest event
    size_t m_bytes = 0;
    uint64_t m_journal_from = 0; // the log has every change after this revision
    uint64_t m_revision = 0;     // of the newest event
    std::list<Reader *> m_readers;
    bool m_ended = false;
};

} // namespace zvweb
