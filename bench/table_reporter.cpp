#include "table_reporter.h"

#include <cstdio>

namespace bench
{

void TableReporter::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
            m_medians[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
}

// Milliseconds.
double TableReporter::mostOf(const Row &row) const
{
    const auto other = row.over ? m_medians.find(std::to_string(*row.over) + "/ours") : m_medians.end();
    return row.most + (other == m_medians.end() ? 0 : other->second);
}

void TableReporter::Finalize()
{
    std::printf("| operation | size | ours ms | bare ms | ratio | allowed |\n|---|---|---|---|---|---|\n");
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const Row &row = m_rows[i];
        const auto ours = m_medians.find(std::to_string(i) + "/ours");
        const auto bare = m_medians.find(std::to_string(i) + "/bare");
        if (ours == m_medians.end())
            continue; // filtered away on the command line
        std::printf("| %s | %s | %.3f | ", row.operation.c_str(), row.size.c_str(), ours->second);
        if (bare == m_medians.end()) {
            const bool slow = row.most != 0 && ours->second > mostOf(row);
            m_kept = m_kept && !slow;
            row.most == 0 ? std::printf("– | – | – |\n")
                          : std::printf("– | – | %.1f ms%s |\n", mostOf(row), slow ? " !" : "");
            continue;
        }
        const double ratio = ours->second / bare->second;
        m_kept = m_kept && (row.allowed == 0 || ratio <= row.allowed);
        std::printf("%.3f | %.2f | ", bare->second, ratio);
        row.allowed == 0 ? std::printf("– |\n")
                         : std::printf("%.1f%s |\n", row.allowed, ratio > row.allowed ? " !" : "");
    }
}

} // namespace bench
