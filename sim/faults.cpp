#include "faults.h"

#include <charconv>
#include <cstring>

#include <zvctrl/zvDbg.h>

namespace zv::sim {

namespace {

struct KindRow {
    const char *name;
    FaultKind kind;
    const char *amount; // the name of the kind's own number, or null
};

constexpr KindRow KINDS[] = {
    {"drop", FaultKind::DROP, nullptr},       {"delay", FaultKind::DELAY, "ms"},
    {"double", FaultKind::DOUBLE, nullptr},   {"truncate", FaultKind::TRUNCATE, "bytes"},
    {"corrupt", FaultKind::CORRUPT, "bytes"}, {"key", FaultKind::KEY, nullptr},
    {"refuse", FaultKind::REFUSE, "code"},    {"error", FaultKind::ERROR, "code"},
    {"off", FaultKind::OFF, nullptr},         {"die", FaultKind::DIE, "ms"},
    {"full", FaultKind::FULL, "ms"},
};

constexpr int32_t DELAY_MS = 15000;
constexpr int32_t OUTAGE_MS = 3000;
constexpr int32_t CORRUPT_BYTES = 4;

const KindRow *find_kind(const std::string &name)
{
    for (const KindRow &row : KINDS) {
        if (name == row.name) {
            return &row;
        }
    }
    return nullptr;
}

bool read_number(const std::string &text, int32_t &number)
{
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && rest == end;
}

std::string read_option(const std::string &name, const std::string &value, const KindRow &kind, FaultRule &rule)
{
    if (name == "link") {
        for (const Link link : {Link::DAEMON, Link::RELAY}) {
            if (value == link_name(link)) {
                rule.link = link;
                return {};
            }
        }
        return "link is daemon or camera, not '" + value + "'";
    }
    int32_t number = 0;
    if (!read_number(value, number)) {
        return name + " takes a number, not '" + value + "'";
    }
    const bool is_code = kind.amount != nullptr && strcmp(kind.amount, "code") == 0 && name == "code";
    if (number < 0 && !is_code) {
        return name + " cannot be negative";
    }
    const auto natural = static_cast<uint32_t>(number);
    if (kind.amount != nullptr && name == kind.amount) {
        rule.amount = number;
    } else if (name == "command") {
        rule.command = natural;
    } else if (name == "group") {
        rule.group = natural;
    } else if (name == "action") {
        rule.action = natural;
    } else if (name == "skip") {
        rule.skip = natural;
    } else if (name == "count") {
        rule.count = natural;
    } else if (name == "every") {
        if (natural == 0) {
            return "every is 1 or more";
        }
        rule.every = natural;
    } else {
        return std::string(kind.name) + " has no option '" + name + "'";
    }
    return {};
}

bool names(const FaultRule &rule, const Request &request)
{
    return (!rule.link || *rule.link == request.link) &&
           (!rule.command || (request.link == Link::DAEMON && *rule.command == request.command)) &&
           (!rule.group || (request.link == Link::RELAY && *rule.group == request.group)) &&
           (!rule.action || (request.link == Link::RELAY && *rule.action == request.action));
}

void apply(const FaultRule &rule, Link link, Effects &effects)
{
    const auto natural = [&](int32_t usual) { return static_cast<uint32_t>(rule.amount.value_or(usual)); };
    const bool daemon = link == Link::DAEMON;
    switch (rule.kind) {
    case FaultKind::DROP:
        effects.drop = true;
        break;
    case FaultKind::DELAY:
        effects.delay_ms += natural(DELAY_MS);
        break;
    case FaultKind::DOUBLE:
        ++effects.copies;
        break;
    case FaultKind::TRUNCATE:
        effects.cut_to = rule.amount ? natural(0) : CUT_TO_HALF;
        break;
    case FaultKind::CORRUPT:
        effects.corrupt_bytes += natural(CORRUPT_BYTES);
        break;
    case FaultKind::KEY:
        effects.wrong_key = true;
        break;
    case FaultKind::REFUSE:
        effects.refusal = rule.amount.value_or(daemon ? ZV_ERR_NAK : 1);
        break;
    case FaultKind::ERROR:
        effects.error = rule.amount.value_or(daemon ? ZV_ERR : 1);
        break;
    case FaultKind::OFF:
        effects.switched_off = true;
        break;
    case FaultKind::DIE:
        effects.dead_ms = natural(OUTAGE_MS);
        break;
    case FaultKind::FULL:
        effects.full_ms = natural(OUTAGE_MS);
        break;
    }
}

} // namespace

std::string parse_fault(const std::string &text, FaultRule &rule)
{
    const size_t colon = text.find(':');
    const std::string name = text.substr(0, colon);
    const KindRow *kind = find_kind(name);
    if (kind == nullptr) {
        std::string known;
        for (const KindRow &row : KINDS) {
            known += known.empty() ? "" : ", ";
            known += row.name;
        }
        return "unknown fault '" + name + "'; known are " + known;
    }
    FaultRule read;
    read.kind = kind->kind;
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

Effects Faults::meet(const Request &request)
{
    Effects effects;
    for (FaultRule &rule : m_rules) {
        if (!names(rule, request)) {
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
