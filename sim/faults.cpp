#include "faults.h"

#include "find_row.h"
#include "message.h"

#include <charconv>
#include <cstddef>
#include <cstdio>

#include <zvctrl/zvDbg.h>

namespace zv::sim {

enum class Begin : uint8_t {
    AT_REQUESTS, // that the rule selects
    AT_ONCE,     // and once; nothing is selected
    EITHER,      // at once, unless the rule selects requests
};

struct FaultKind {
    const char *name;
    const char *help;
    const char *amount;      // the name of the kind's own number, or null
    int32_t usual;           // that number where the rule has none
    int32_t usual_of_daemon; // the same on the daemon link
    void (*apply)(Effects &effects, int32_t amount);
    bool of_both_links = false; // without link=, whichever link the request came on
    Begin begin = Begin::AT_REQUESTS;
};

namespace {

constexpr char MILLISECONDS[] = "ms";
constexpr char BYTES[] = "bytes";
constexpr char CODE[] = "code";
constexpr char REQUESTS[] = "requests";

constexpr int32_t DELAY_MS = 15000; // longer than a client waits
constexpr int32_t OUTAGE_MS = 3000;
constexpr int32_t UNTIL_THAWED = 0;
constexpr int32_t CORRUPT_BYTES = 4;
constexpr auto HALF = static_cast<int32_t>(CUT_TO_HALF);

constexpr FaultKind KINDS[] = {
    {"drop", "the request is carried out, its answer is lost", nullptr, 0, 0,
     [](Effects &effects, int32_t) { effects.drop = true; }},
    {"delay", "the answer is late, the daemon's next ones wait behind it (ms=15000)", MILLISECONDS, DELAY_MS, DELAY_MS,
     [](Effects &effects, int32_t amount) { effects.delay_ms += static_cast<uint32_t>(amount); }},
    {"hold", "the answer comes just before that to the Nth request after it (requests=1)", REQUESTS, 1, 1,
     [](Effects &effects, int32_t amount) { effects.hold_requests = static_cast<uint32_t>(amount); }},
    {"foreign", "the answer to another request comes first; with drop, in its place", nullptr, 0, 0,
     [](Effects &effects, int32_t) { effects.foreign = true; }},
    {"double", "the answer comes twice", nullptr, 0, 0, [](Effects &effects, int32_t) { ++effects.copies; }},
    {"truncate", "the answer is cut to this many bytes (half of it)", BYTES, HALF, HALF,
     [](Effects &effects, int32_t amount) { effects.cut_to = static_cast<uint32_t>(amount); }},
    {"corrupt", "this many bytes of the answer are overwritten at random (bytes=4)", BYTES, CORRUPT_BYTES,
     CORRUPT_BYTES, [](Effects &effects, int32_t amount) { effects.corrupt_bytes += static_cast<uint32_t>(amount); }},
    {"key", "a resynchronisation is answered with another key", nullptr, 0, 0,
     [](Effects &effects, int32_t) { effects.wrong_key = true; }},
    {"refuse", "refused, with this acknowledge byte or return code (code=1; daemon -101)", CODE, NAK, ZV_ERR_NAK,
     [](Effects &effects, int32_t amount) { effects.refusal = amount; }},
    {"error", "the firmware's error, or the daemon's return code (code=1; daemon -1)", CODE, FIRMWARE_BUSY, ZV_ERR,
     [](Effects &effects, int32_t amount) { effects.error = amount; }},
    {"off", "the camera answers that it is switched off", nullptr, 0, 0,
     [](Effects &effects, int32_t) { effects.switched_off = true; }},
    {"on", "ends every off", nullptr, 0, 0, [](Effects &effects, int32_t) { effects.switched_on = true; }, true,
     Begin::AT_ONCE},
    {"die", "nothing is answered, and what came meanwhile is forgotten (ms=3000)", MILLISECONDS, OUTAGE_MS, OUTAGE_MS,
     [](Effects &effects, int32_t amount) { effects.dead_ms = static_cast<uint32_t>(amount); }},
    {"restart", "the queue is removed, and made anew later; without link both (ms=3000)", MILLISECONDS, OUTAGE_MS,
     OUTAGE_MS, [](Effects &effects, int32_t amount) { effects.restart_ms = static_cast<uint32_t>(amount); }, true,
     Begin::EITHER},
    {"full", "nothing is read, and the queue is full (ms=3000)", MILLISECONDS, OUTAGE_MS, OUTAGE_MS,
     [](Effects &effects, int32_t amount) { effects.full_ms = static_cast<uint32_t>(amount); }},
    {"freeze", "nothing is read or answered, all waits for the end (ms=0: until thaw)", MILLISECONDS, UNTIL_THAWED,
     UNTIL_THAWED, [](Effects &effects, int32_t amount) { effects.freeze_ms = static_cast<uint32_t>(amount); }, true,
     Begin::AT_ONCE},
    {"thaw", "ends freeze", nullptr, 0, 0, [](Effects &effects, int32_t) { effects.thaw = true; }, true,
     Begin::AT_ONCE},
};

struct Selector {
    const char *name;
    std::optional<uint32_t> FaultRule::*value;
    const char *help;
};
constexpr Selector SELECTORS[] = {
    {"command", &FaultRule::command, "the daemon's command number"},
    {"group", &FaultRule::group, "group of the remote API"},
    {"action", &FaultRule::action, "action of the remote API"},
};

struct Counter {
    const char *name;
    uint32_t FaultRule::*value;
    const char *help;
};
constexpr Counter COUNTERS[] = {
    {"every", &FaultRule::every, "only every Nth request that is selected (1)"},
    {"skip", &FaultRule::skip, "not the first N of them (0)"},
    {"count", &FaultRule::count, "no more than N times (0: without end)"},
};

template <class Row, size_t Count>
const Row *find(const Row (&rows)[Count], const std::string &name)
{
    return find_row(rows, [&](const Row &row) { return name == row.name; });
}

bool read_number(const std::string &text, int32_t &number)
{
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && rest == end;
}

bool read_link(const std::string &text, std::optional<Link> &chosen)
{
    for (const Link link : {Link::DAEMON, Link::RELAY}) {
        if (text == link_name(link)) {
            chosen = link;
            return true;
        }
    }
    return false;
}

std::string read_option(const std::string &name, const std::string &value, const FaultKind &kind, FaultRule &rule)
{
    if (name == "link") {
        return read_link(value, rule.link) ? "" : "link is daemon or camera, not '" + value + "'";
    }
    const bool is_amount = kind.amount != nullptr && name == kind.amount;
    const Selector *selector = find(SELECTORS, name);
    const Counter *counter = find(COUNTERS, name);
    if (!is_amount && selector == nullptr && counter == nullptr) {
        return std::string(kind.name) + " has no option '" + name + "'";
    }
    if (!is_amount && kind.begin == Begin::AT_ONCE) {
        return std::string(kind.name) + " begins at once and selects no requests: it has no '" + name + "'";
    }
    int32_t number = 0;
    if (!read_number(value, number)) {
        return name + " takes a number, not '" + value + "'";
    }
    if (number < 0 && !(is_amount && kind.amount == CODE)) {
        return name + " cannot be negative";
    }
    if (is_amount) {
        rule.amount = number;
    } else if (selector != nullptr) {
        rule.*selector->value = static_cast<uint32_t>(number);
    } else {
        rule.*counter->value = static_cast<uint32_t>(number);
    }
    rule.selects = rule.selects || !is_amount;
    return rule.every > 0 ? "" : "every is 1 or more";
}

bool selects(const FaultRule &rule, const Request &request)
{
    if (rule.link && *rule.link != request.link) {
        return false;
    }
    if (request.link == Link::DAEMON) {
        return !rule.group && !rule.action && (!rule.command || *rule.command == request.command);
    }
    return !rule.command && (!rule.group || *rule.group == request.group) &&
           (!rule.action || *rule.action == request.action);
}

void apply(const FaultRule &rule, Link link, Effects &effects)
{
    const int32_t usual = link == Link::DAEMON ? rule.kind->usual_of_daemon : rule.kind->usual;
    rule.kind->apply(effects, rule.amount.value_or(usual));
    effects.both_links = effects.both_links || (rule.kind->of_both_links && !rule.link);
}

std::string begin_text(Begin begin)
{
    switch (begin) {
    case Begin::AT_ONCE:
        return "; at once";
    case Begin::EITHER:
        return "; at once, unless it selects requests";
    default:
        return {};
    }
}

std::string help_line(const char *name, const char *value, const std::string &help)
{
    char line[160];
    snprintf(line, sizeof line, "  %-16s%s\n", (std::string(name) + value).c_str(), help.c_str());
    return line;
}

} // namespace

std::string parse_fault(const std::string &text, FaultRule &rule)
{
    const size_t colon = text.find(':');
    const std::string name = text.substr(0, colon);
    const FaultKind *kind = find(KINDS, name);
    if (kind == nullptr) {
        std::string known;
        for (const FaultKind &row : KINDS) {
            known.append(known.empty() ? "" : ", ").append(row.name);
        }
        return "unknown fault '" + name + "'; known are " + known;
    }
    FaultRule read;
    read.kind = kind;
    for (size_t start = colon; start != std::string::npos;) {
        const size_t comma = text.find(',', start + 1);
        const std::string option = text.substr(start + 1, comma == std::string::npos ? comma : comma - start - 1);
        const size_t equals = option.find('=');
        if (equals == std::string::npos) {
            return "'" + option + "' is no NAME=VALUE";
        }
        if (std::string wrong = read_option(option.substr(0, equals), option.substr(equals + 1), *kind, read);
            !wrong.empty()) {
            return wrong;
        }
        start = comma;
    }
    rule = read;
    return {};
}

std::string fault_help()
{
    std::string help = "A fault rule is KIND[:NAME=VALUE[,NAME=VALUE]...], such as drop:link=daemon,every=3.\nKinds:\n";
    for (const FaultKind &kind : KINDS) {
        help += help_line(kind.name, "", kind.help + begin_text(kind.begin));
    }
    help += "Names, besides a kind's own; all but link select requests:\n";
    help += help_line("link", "=LINK", "daemon or camera");
    for (const Selector &selector : SELECTORS) {
        help += help_line(selector.name, "=N", selector.help);
    }
    for (const Counter &counter : COUNTERS) {
        help += help_line(counter.name, "=N", counter.help);
    }
    return help;
}

bool begins_at_once(const FaultRule &rule)
{
    return rule.kind->begin == Begin::AT_ONCE || (rule.kind->begin == Begin::EITHER && !rule.selects);
}

Effects effects_of(const FaultRule &order, Link link)
{
    Effects effects;
    if (order.link.value_or(link) == link) {
        apply(order, link, effects);
    }
    return effects;
}

void Faults::switch_on(Link link)
{
    const auto is_off = [=](const FaultRule &rule) { return effects_of(rule, link).switched_off; };
    std::erase_if(m_rules, [=](const FaultRule &rule) { return is_off(rule) && rule.link; });
    for (FaultRule &rule : m_rules) {
        if (is_off(rule)) { // of both links: the other one's is left
            rule.link = link == Link::DAEMON ? Link::RELAY : Link::DAEMON;
        }
    }
}

Effects Faults::meet(const Request &request)
{
    Effects effects;
    for (FaultRule &rule : m_rules) {
        if (!selects(rule, request)) {
            continue;
        }
        ++rule.met;
        if (rule.met <= rule.skip || (rule.met - rule.skip) % rule.every != 0 ||
            (rule.count != 0 && rule.fired == rule.count)) {
            continue;
        }
        ++rule.fired;
        apply(rule, request.link, effects);
    }
    return effects;
}

} // namespace zv::sim
