#include "report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace bench {

void Figures::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        if (run.error_occurred) {
            fprintf(stderr, "%s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
            m_failed = true;
        } else if (run.run_type == Run::RT_Iteration) {
            const bool waits = !run.run_name.time_type.empty();
            m_repetitions[run.run_name.function_name].push_back(waits ? run.GetAdjustedRealTime()
                                                                      : run.GetAdjustedCPUTime());
        }
    }
}

double Figures::median(const std::string &benchmark) const
{
    const auto found = m_repetitions.find(benchmark);
    if (found == m_repetitions.end()) {
        return 0;
    }
    std::vector<double> times = found->second;
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

void print(std::span<const Comparison> comparisons, const Figures &figures)
{
    printf("%-26s %12s  %-28s %12s %7s %6s\n", "library", "ns", "beside", "ns", "ratio", "goal");
    for (const Comparison &row : comparisons) {
        const double library = figures.median(row.library);
        const double peer = figures.median(row.peer);
        if (library == 0 || peer == 0) {
            continue;
        }
        const double ratio = std::round(100 * library / peer) / 100;
        printf("%-26s %12.1f  %-28s %12.1f %7.2f", row.library, library, row.peer, peer, ratio);
        if (row.goal != 0) {
            printf(" %6.2f%s", row.goal, ratio > row.goal ? "  missed" : "");
        }
        printf("\n");
    }
}

} // namespace bench
