#include "report.h"

#include "measure.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>

namespace bench {

namespace {

// The last part of the benchmarks' names.
std::span<const char *const> names_of(Conditions conditions)
{
    static constexpr const char *regimes[] = {"/steady", "/moving", "/random", "/cold"};
    static constexpr const char *cores[] = {"/two_cores", "/same_core"};
    static constexpr const char *connections[] = {"/1", "/16"};
    static constexpr const char *clients[] = {"/1", "/100", "/1000"};
    static constexpr const char *cameras[] = {"/1", "/10", "/50"};
    static constexpr const char *once[] = {""};
    switch (conditions) {
    case Conditions::REGIMES:
        return regimes;
    case Conditions::CORES:
        return cores;
    case Conditions::CONNECTIONS:
        return connections;
    case Conditions::CLIENTS:
        return clients;
    case Conditions::CAMERAS:
        return cameras;
    case Conditions::ONCE:
        break;
    }
    return once;
}

void print_count(bool is_known, double count, int width)
{
    if (is_known) {
        printf(" %*.0f", width, count);
    } else {
        printf(" %*s", width, "");
    }
}

void print_goal(double figure, double goal, const char *format)
{
    char text[32] = "";
    if (goal != 0) {
        const int length = snprintf(text, sizeof text, format, goal);
        snprintf(text + length, sizeof text - static_cast<size_t>(length), "%s", figure > goal ? " missed" : "");
    }
    printf(" %-17s", text);
}

void print_line(const std::string &name, const Figure &library, const char *peer_name, const Figure &peer,
                double ratio_goal, double goal)
{
    const double time = library.nanoseconds();
    printf("%-32s %11.1f", name.c_str(), time);
    print_goal(time, goal, "%.0f ns");
    if (peer_name != nullptr) {
        const double ratio = std::round(100 * time / peer.nanoseconds()) / 100;
        printf(" %-24s %11.1f %6.2f", peer_name, peer.nanoseconds(), ratio);
        print_goal(ratio, ratio_goal, "%.2f");
    } else {
        printf(" %-24s %11s %6s %-17s", "", "", "", "");
    }
    print_count(library.allocations.has_value(), library.allocations.value_or(0), 6);
    print_count(library.instructions != 0, library.instructions, 9);
    print_count(peer.instructions != 0, peer.instructions, 9);
    printf("\n");
}

} // namespace

double Figure::nanoseconds() const
{
    return times.empty() ? 0 : median(times);
}

Figures::Figures(const char *instructions)
{
    std::ifstream file(instructions != nullptr ? instructions : "");
    std::string name;
    double number = 0;
    while (file >> name >> number) {
        m_figures[name].instructions = number / COUNTED_CALLS;
    }
}

void Figures::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        const std::string &name = run.run_name.function_name;
        if (run.error_occurred) {
            fprintf(stderr, "%s: %s\n", name.c_str(), run.error_message.c_str());
            m_failed = true;
        } else if (run.run_type == Run::RT_Iteration) {
            const bool waits = !run.run_name.time_type.empty();
            Figure &figure = m_figures[name];
            figure.times.push_back(waits ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime());
            if (const auto found = run.counters.find(ALLOCATIONS); found != run.counters.end()) {
                figure.allocations = found->second.value;
            }
            dump_instructions(name);
        }
    }
}

const Figure &Figures::of(const std::string &benchmark) const
{
    static const Figure none;
    const auto found = m_figures.find(benchmark);
    return found != m_figures.end() ? found->second : none;
}

std::map<long, double> Figures::series(const std::string &name) const
{
    std::map<long, double> found;
    for (const auto &[benchmark, figure] : m_figures) {
        if (benchmark.starts_with(name + '/') && !figure.times.empty()) {
            found[strtol(benchmark.c_str() + name.size() + 1, nullptr, 10)] = figure.nanoseconds();
        }
    }
    return found;
}

void print(std::span<const Series> all, const Figures &figures)
{
    const char *title = "\nns of one call, by number\n";
    for (const Series &series : all) {
        const std::map<long, double> times = figures.series(series.name);
        if (times.empty()) {
            continue;
        }
        printf("%s", title);
        title = "";
        printf("%-17s %-48s", series.name, series.number);
        for (const auto &[number, nanoseconds] : times) {
            printf(" %5ld: %-9.0f", number, nanoseconds);
        }
        printf("\n");
    }
}

void print(std::span<const Row> rows, const Figures &figures)
{
    printf("%-32s %11s %-17s %-24s %11s %6s %-17s %6s %9s %9s\n", "library", "ns", "goal", "beside", "ns", "ratio",
           "goal", "alloc.", "instr.", "peer's");
    std::set<std::string> printed; // alone once, and not at all beside lines with a peer
    for (const Row &row : rows) {
        const auto names = names_of(row.conditions);
        for (size_t i = 0; i < names.size(); ++i) {
            const std::string work = row.work;
            const Figure &library = figures.of(work + "/library" + names[i]);
            const Figure &peer = row.peer != nullptr ? figures.of(work + '/' + row.peer + names[i]) : figures.of("");
            const bool is_alone = peer.times.empty();
            if (!library.times.empty() && (!is_alone || printed.insert(work + names[i]).second)) {
                print_line(work + names[i], library, is_alone ? nullptr : row.peer, peer, row.ratios[i],
                           row.nanoseconds[i]);
                printed.insert(work + names[i]);
            }
        }
    }
}

} // namespace bench
