#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bench
{

/// One line of the table that bench/run prints.
struct Row
{
    std::string operation;
    std::string size;
    double allowed = 0; // times the bare figure; 0: nothing is demanded
    double most = 0;    // milliseconds, where there is no bare figure; 0: nothing is demanded
    std::optional<std::size_t> over = {}; // `most` is what it may take more than this row
};

/// Collects the medians of the benchmarks named "<row>/ours" and "<row>/bare" and prints them as one table:
/// operation, size, ours, bare, ratio, allowed.
class TableReporter : public benchmark::BenchmarkReporter
{
public:
    explicit TableReporter(std::vector<Row> rows)
        : m_rows(std::move(rows))
    {}

    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

    /// Whether every row that has a limit kept it.
    [[nodiscard]] bool kept() const { return m_kept; }

private:
    [[nodiscard]] double mostOf(const Row &row) const;

    std::vector<Row> m_rows;
    std::map<std::string, double> m_medians; // milliseconds, by benchmark name
    bool m_kept = true;
};

} // namespace bench
