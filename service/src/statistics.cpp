#include "statistics.h"

#include "catalogue.h"
#include "enumerator_name.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <map>
#include <numeric>
#include <utility>

namespace zvservice {

namespace {

using OutcomeName = std::array<char, 16>; // as a C string

constexpr std::array<OutcomeName, OUTCOME_COUNT> OUTCOME_NAMES = [] {
    constexpr auto ENUMERATORS = zv::enumerator_names<Outcome, OUTCOME_COUNT>();
    std::array<OutcomeName, OUTCOME_COUNT> names = {};
    for (size_t outcome = 0; outcome < OUTCOME_COUNT; ++outcome) {
        for (size_t i = 0; i < ENUMERATORS[outcome].size(); ++i) {
            const char c = ENUMERATORS[outcome][i];
            names.at(outcome).at(i) = c == '_' ? c : static_cast<char>(c - 'A' + 'a');
        }
    }
    return names;
}();

constexpr std::string_view SECONDS = "seconds";

// With a point or an exponent: the bounds of buckets have to be the same text everywhere.
std::string number(double value)
{
    char text[32];
    const char *end = std::to_chars(text, std::end(text), value, std::chars_format::general).ptr;
    std::string written(static_cast<const char *>(text), end);
    return written.find_first_of(".e") == std::string::npos ? written + ".0" : written;
}

std::string escaped(std::string_view text)
{
    std::string written;
    for (const char c : text) {
        if (c == '"' || c == '\\' || c == '\n') {
            written += '\\';
        }
        written += c == '\n' ? 'n' : c;
    }
    return written;
}

// `name="value"`
std::string label(std::string_view name, std::string_view value)
{
    return std::string(name) + "=\"" + std::string(value) + '"';
}

void write_outcomes(MetricsText &text, const OutcomeCounts &counts)
{
    for (size_t i = 0; i < OUTCOME_COUNT; ++i) {
        if (const auto outcome = static_cast<Outcome>(i); is_exchange(outcome)) {
            text.sample(label("outcome", outcome_name(outcome)), counts[i]);
        }
    }
}

void write_link(MetricsText &text, LinkState link)
{
    constexpr char NAME[] = "zv_link";
    text.family(NAME, "stateset", "The link to the camera: stale values are the last known ones.");
    for (const LinkState state : {LinkState::UP, LinkState::STALE, LinkState::DOWN}) {
        text.sample(label(NAME, link_state_name(state)), uint64_t{state == link ? 1U : 0U});
    }
}

// The statuses that are numbers: a family for each name, also for the one that two of them have.
void write_statuses(MetricsText &text, const State &state)
{
    std::multimap<std::string_view, const Member *> by_name;
    for (const Member &member : state.status_members()) {
        if (!member.text.starts_with('"')) {
            by_name.emplace(status_name(member.id), &member);
        }
    }
    std::string_view family;
    for (const auto &[name, member] : by_name) {
        if (name != family) {
            text.family("zv_status_" + std::string(name), "gauge", "A status, as the camera publishes it.");
            family = name;
        }
        int64_t value = 0;
        std::from_chars(member->text.data(), member->text.data() + member->text.size(), value);
        const std::string status = label("status", std::to_string(member->id));
        if (value < 0) {
            text.sample(status, static_cast<double>(value));
        } else {
            text.sample(status, static_cast<uint64_t>(value));
        }
    }
}

} // namespace

void Histogram::add(std::chrono::steady_clock::duration time) noexcept
{
    const double seconds = std::chrono::duration<double>(time).count();
    const auto bound = std::lower_bound(BOUNDS.begin(), BOUNDS.end(), seconds);
    ++counts[static_cast<size_t>(bound - BOUNDS.begin())];
    sum += seconds;
}

bool is_exchange(Outcome outcome)
{
    return outcome < Outcome::FORBIDDEN || outcome == Outcome::SYSTEM_LIMIT;
}

const char *outcome_name(Outcome outcome)
{
    return OUTCOME_NAMES[static_cast<size_t>(outcome)].data();
}

void MetricsText::family(std::string_view name, std::string_view type, std::string_view help)
{
    m_family = name;
    m_suffix = type == "counter" ? "_total" : type == "info" ? "_info" : "";
    describe("TYPE", type);
    if (name.ends_with("_" + std::string(SECONDS))) {
        describe("UNIT", SECONDS);
    }
    describe("HELP", escaped(help));
}

void MetricsText::sample(std::string_view labels, uint64_t value)
{
    line(m_suffix, labels, std::to_string(value));
}

void MetricsText::sample(std::string_view labels, double value)
{
    line(m_suffix, labels, number(value));
}

void MetricsText::sample(std::string_view labels, const Histogram &histogram)
{
    const std::string others = labels.empty() ? "" : std::string(labels) + ',';
    uint64_t count = 0;
    for (size_t i = 0; i < histogram.counts.size(); ++i) {
        count += histogram.counts[i];
        const std::string bound = i < Histogram::BOUNDS.size() ? number(Histogram::BOUNDS[i]) : "+Inf";
        line("_bucket", others + label("le", bound), std::to_string(count));
    }
    line("_count", labels, std::to_string(count));
    line("_sum", labels, number(histogram.sum));
}

std::string MetricsText::end()
{
    return std::move(m_text) + "# EOF\n";
}

void MetricsText::describe(std::string_view what, std::string_view text)
{
    m_text.append("# ").append(what).append(" ").append(m_family).append(" ").append(text).append("\n");
}

void MetricsText::line(std::string_view suffix, std::string_view labels, std::string_view value)
{
    m_text.append(m_family).append(suffix);
    if (!labels.empty()) {
        m_text.append("{").append(labels).append("}");
    }
    m_text.append(" ").append(value).append("\n");
}

void write_metrics(MetricsText &text, const Snapshot &snapshot, const Statistics &statistics)
{
    text.family("zv_polls", "counter", "Polls of the camera's state, by outcome.");
    write_outcomes(text, statistics.polls);
    text.family("zv_poll_seconds", "histogram", "How long the answered polls took.");
    text.sample({}, statistics.poll_time);
    text.family("zv_calls", "counter", "Operations of the camera, by outcome.");
    write_outcomes(text, statistics.calls);
    text.family("zv_call_seconds", "histogram", "How long the operations took, waiting for others included.");
    text.sample({}, statistics.call_time);
    write_link(text, snapshot.link);
    text.family("zv_revision", "gauge", "How often the camera's published values have changed.");
    text.sample({}, snapshot.revision);
    if (snapshot.state != nullptr) {
        text.family("zv_state_age_seconds", "gauge", "How long ago the camera told its state.");
        text.sample({}, std::chrono::duration<double>(snapshot.age()).count());
        write_statuses(text, *snapshot.state);
    }
}

} // namespace zvservice
