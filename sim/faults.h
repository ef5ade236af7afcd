// Faults by rule: which answers go wrong, and how.
//
//     KIND[:NAME=VALUE[,NAME=VALUE]...]
//
// such as `drop:link=daemon,every=3` or `refuse:group=2,action=27,code=2`. fault_help() lists all kinds and names. Most
// rules wait for requests; some kinds begin at once.
#pragma once

#include "message.h"
#include "request.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zv::sim {

struct FaultKind; // a row of the table of kinds

// Applies to requests that match all selectors: skips the first `skip`, then fires on every `every`-th, at most `count`
// times (0: no limit).
struct FaultRule {
    const FaultKind *kind = nullptr; // static; null until the rule is read
    std::optional<int32_t> amount;   // milliseconds, bytes, code or requests, as the kind has it

    std::optional<Link> link;
    std::optional<uint32_t> command;
    std::optional<uint32_t> group;
    std::optional<uint32_t> action;
    uint32_t every = 1;
    uint32_t skip = 0;
    uint32_t count = 0;
    bool selects = false; // it names one of these but the link

    uint32_t met = 0;   // requests so far
    uint32_t fired = 0; // of these
};

// Reads a rule. Returns an empty text, or what is wrong with it.
std::string parse_fault(const std::string &text, FaultRule &rule);

// All kinds and names, for people.
std::string fault_help();

// Whether the rule is an order that is carried out now, once, and waits for no request.
bool begins_at_once(const FaultRule &rule);

inline constexpr uint32_t CUT_TO_HALF = UINT32_MAX;

// What happens to one request: all rules that fire, together. Or, by an order, to a peer.
struct Effects {
    bool drop = false;
    bool foreign = false;
    bool wrong_key = false;
    bool switched_off = false;
    uint32_t copies = 1;
    uint32_t delay_ms = 0;
    uint32_t hold_requests = 0;
    uint32_t dead_ms = 0;
    uint32_t full_ms = 0;
    std::optional<uint32_t> restart_ms;
    bool both_links = false;           // the restart is that of both peers
    std::optional<uint32_t> freeze_ms; // 0: until it is thawed
    bool thaw = false;
    bool switched_on = false;
    std::optional<uint32_t> cut_to;
    uint32_t corrupt_bytes = 0;
    std::optional<int32_t> refusal;
    std::optional<int32_t> error;
};

// What an order does to the peer of this link: nothing, when it is about the other one.
Effects effects_of(const FaultRule &order, Link link);

// The rules that wait for requests.
class Faults {
  public:
    // A rule that parse_fault() read, and that does not begin at once.
    void add(const FaultRule &rule) { m_rules.push_back(rule); }
    void clear() { m_rules.clear(); }
    // On this link the camera is no longer switched off by any rule.
    void switch_on(Link link);
    // Counts the request with every rule that it matches.
    Effects meet(const Request &request);

  private:
    std::vector<FaultRule> m_rules;
};

} // namespace zv::sim
