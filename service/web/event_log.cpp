#include "event_log.h"

#include <algorithm>
#include <utility>

namespace zvweb {

void EventLog::publish(Kind kind, uint64_t revision, std::string text)
{
    const std::lock_guard lock(m_mutex);
    m_bytes += text.size();
    m_events.push_back({kind, revision, std::make_shared<const std::string>(std::move(text))});
    m_revision = revision;
    if (kind == Kind::WHOLE) {
        m_journal_from = revision;
    }
    forget_oldest();
    for (Reader *reader : m_readers) {
        if (reader->m_next < m_first) {
            reader->cut_off();
        }
        wake(*reader);
    }
}

// Keeps as many bytes as may wait: who has not read what falls out has more than that before him.
void EventLog::forget_oldest()
{
    while (m_bytes - m_events.front().text->size() >= WAITING_MAX) {
        const Event &oldest = m_events.front();
        if (oldest.kind == Kind::CHANGE) {
            m_journal_from = std::max(m_journal_from, oldest.revision);
        }
        m_bytes -= oldest.text->size();
        m_events.pop_front();
        ++m_first;
    }
}

void EventLog::join(Reader &reader, std::string greeting)
{
    const std::lock_guard lock(m_mutex);
    reader.m_text = std::make_shared<const std::string>(std::move(greeting));
    reader.m_next = end_number();
    m_readers.push_back(&reader);
}

bool EventLog::join_after(Reader &reader, uint64_t revision)
{
    const std::lock_guard lock(m_mutex);
    if (revision < m_journal_from || revision > m_revision) {
        return false;
    }
    const auto first = std::ranges::find_if(
        m_events, [=](const Event &event) { return event.kind == Kind::CHANGE && event.revision > revision; });
    reader.m_next = m_first + static_cast<uint64_t>(first - m_events.begin());
    reader.m_replay_until = end_number();
    m_readers.push_back(&reader);
    return true;
}

void EventLog::leave(Reader &reader)
{
    const std::lock_guard lock(m_mutex);
    m_readers.remove(&reader);
}

ptrdiff_t EventLog::read(Reader &reader, char *buffer, size_t size)
{
    const std::lock_guard lock(m_mutex);
    size_t copied = 0;
    while (copied < size) {
        if (reader.m_text == nullptr || reader.m_offset == reader.m_text->size()) {
            reader.m_text = next_text(reader);
            reader.m_offset = 0;
        }
        if (reader.m_text == nullptr) {
            break;
        }
        const size_t part = reader.m_text->copy(buffer + copied, size - copied, reader.m_offset);
        reader.m_offset += part;
        copied += part;
    }
    if (copied > 0) {
        return static_cast<ptrdiff_t>(copied);
    }
    if (reader.m_next < m_first) {
        return CUT_OFF;
    }
    if (m_ended) {
        return ENDED;
    }
    reader.m_sleeping = true;
    reader.sleep();
    return SLEEPS;
}

void EventLog::end()
{
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    for (Reader *reader : m_readers) {
        wake(*reader);
    }
}

size_t EventLog::readers() const
{
    const std::lock_guard lock(m_mutex);
    return m_readers.size();
}

void EventLog::wake(Reader &reader)
{
    if (reader.m_sleeping) {
        reader.m_sleeping = false;
        reader.wake();
    }
}

// Null when there is none, or when it is forgotten already.
std::shared_ptr<const std::string> EventLog::next_text(Reader &reader) const
{
    while (reader.m_next >= m_first && reader.m_next < end_number()) {
        const Event &event = m_events[reader.m_next - m_first];
        ++reader.m_next;
        if (reader.m_next > reader.m_replay_until || event.kind == Kind::CHANGE) {
            return event.text;
        }
    }
    return nullptr;
}

} // namespace zvweb
