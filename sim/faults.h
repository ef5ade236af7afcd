// Faults by rule: which answers go wrong, and how.
//
//     KIND[:NAME=VALUE[,NAME=VALUE]...]
//
//     drop                the request is carried out, its answer is lost
//     delay               the answer comes `ms` milliseconds late (15000: longer than a client waits), and behind it
//                         what the daemon answers meanwhile
//     double              the answer comes twice
//     truncate            the answer is cut to `bytes` bytes (half of it)
//     corrupt             `bytes` bytes of the answer are overwritten at random (4)
//     key                 the answer to a resynchronisation carries another key
//     refuse              the request is refused, with the acknowledge byte or return code `code` (1; daemon: -101)
//     error               the firmware reports the error `code` (1; daemon: return code -1)
//     off                 the camera answers that it is switched off
//     die                 nothing is answered for `ms` milliseconds, and what came meanwhile is forgotten (3000)
//     full                the queue is full for `ms` milliseconds (3000)
//
// A rule meets every request, or those that all of its selectors name:
//
//     link=daemon|camera  the link
//     command=N           the daemon's command number
//     group=N, action=N   the remote API command
//     every=N             only every Nth of them (1)
//     skip=N              not the first N (0)
//     count=N             no more than N times (0: without end)
//
// For example `drop:link=daemon,every=3` or `refuse:group=2,action=27,code=2`.
#pragma once

#include "request.h"

namespace zv::sim {

enum class FaultKind : uint8_t { DROP, DELAY, DOUBLE, TRUNCATE, CORRUPT, KEY, REFUSE, ERROR, OFF, DIE, FULL };

struct FaultRule {
    FaultKind kind = FaultKind::DROP;
    std::optional<Link> link;
    std::optional<uint32_t> command;
    std::optional<uint32_t> group;
    std::optional<uint32_t> action;
    uint32_t every = 1;
    uint32_t skip = 0;
    uint32_t count = 0;
    std::optional<int32_t> amount; // milliseconds, bytes or code, as the kind has it

    uint32_t met = 0;   // requests that the selectors named
    uint32_t fired = 0; // those that went wrong
};

// Reads a rule. Returns an empty text, or what is wrong with it.
std::string parse_fault(const std::string &text, FaultRule &rule);

inline constexpr uint32_t CUT_TO_HALF = UINT32_MAX;

// What happens to one request: all rules that fire, together.
struct Effects {
    bool drop = false;
    bool wrong_key = false;
    bool switched_off = false;
    uint32_t copies = 1;
    uint32_t delay_ms = 0;
    uint32_t dead_ms = 0;
    uint32_t full_ms = 0;
    std::optional<uint32_t> cut_to;
    uint32_t corrupt_bytes = 0;
    std::optional<int32_t> refusal;
    std::optional<int32_t> error;
};

class Faults {
  public:
    void add(const FaultRule &rule) { m_rules.push_back(rule); }
    void clear() { m_rules.clear(); }
    Effects meet(const Request &request);

  private:
    std::vector<FaultRule> m_rules;
};

} // namespace zv::sim
