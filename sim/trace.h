// Trace files: one message per line, as docs/trace.md says. Uses nothing of the library.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

enum class TraceDirection : uint8_t { CLIENT_TO_DAEMON, DAEMON_TO_CLIENT, CLIENT_TO_CAMERA, CAMERA_TO_CLIENT };

// "client>daemon" and the like; static text.
const char *trace_direction_name(TraceDirection direction);

struct TraceMessage {
    uint64_t microseconds = 0; // since the trace began
    TraceDirection direction = TraceDirection::CLIENT_TO_DAEMON;
    std::vector<uint8_t> bytes; // at most 65535
};

// Appends one line, with its line feed, in one write.
void write_trace(std::ostream &out, const TraceMessage &message);

// Reads pairs of hexadecimal digits, with blanks anywhere between pairs. False for anything else; `bytes` then holds
// the pairs before it.
bool read_hex(std::string_view text, std::vector<uint8_t> &bytes);

// Reads the messages of a trace one by one. The stream outlives the reader.
class TraceReader {
  public:
    explicit TraceReader(std::istream &in) : m_in(in) {}

    // The next message. False at the end of the trace, and at a line that is no message, after which nothing is read.
    bool next(TraceMessage &message);

    // What is wrong with that line, such as "line 3: unknown direction"; empty at the end of a good trace.
    const std::string &problem() const { return m_problem; }

    // The line that was read last, counted from 1.
    int line() const { return m_line; }

  private:
    std::istream &m_in;
    int m_line = 0;
    std::string m_problem;
};

} // namespace zv
