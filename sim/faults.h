// Faults by rule: which answers go wrong, and how.
//
//     KIND[:NAME=VALUE[,NAME=VALUE]...]
//
// such as `drop:link=daemon,every=3` or `refuse:group=2,action=27,code=2`. fault_help() tells all kinds and names.
#pragma once

#include "request.h"

namespace zv::sim {

enum class FaultKind : uint8_t { DROP, DELAY, DOUBLE, TRUNCATE, CORRUPT, KEY, REFUSE, ERROR, OFF, DIE, FULL };

// It meets the requests that all of its selectors name. Of those it lets `skip` pass, and then every `every`th one goes
// wrong, `count` of them, or without end with 0.
struct FaultRule {
    FaultKind kind = FaultKind::DROP;
    std::optional<int32_t> amount; // milliseconds, bytes or code, as the kind has it

    std::optional<Link> link;
    std::optional<uint32_t> command;
    std::optional<uint32_t> group;
    std::optional<uint32_t> action;
    uint32_t every = 1;
    uint32_t skip = 0;
    uint32_t count = 0;

    uint32_t met = 0;
    uint32_t fired = 0;
};

// Reads a rule. Returns an empty text, or what is wrong with it.
std::string parse_fault(const std::string &text, FaultRule &rule);

// All kinds and names, for people.
std::string fault_help();

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
