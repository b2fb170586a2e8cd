#pragma once

#include "registers/import/import_table.h"

#include <array>
#include <optional>

namespace shipping
{

/// What is taken from a carrier's answer: お客様管理番号, 送り状番号, お届け先, which is only compared.
enum class TrackingField { Management, Number, Consignee };

inline constexpr int trackingFieldCount = 3;

QString nameOf(TrackingField field);

/// Which column each comes from; -1 for none.
struct TrackingColumns
{
    std::array<qsizetype, trackingFieldCount> columns{-1, -1, -1};
    std::size_t firstRow = 0; // of the parcels, below preamble and headings

    [[nodiscard]] qsizetype of(TrackingField field) const { return columns[std::size_t(field)]; }
    /// What is missing to take numbers by them, in words; empty when nothing is.
    [[nodiscard]] QString lack() const;

    friend bool operator==(const TrackingColumns &, const TrackingColumns &) = default;
};

/// The columns of \a table by the first row that has the headings; nothing where a person has to say which
/// they are.
std::optional<TrackingColumns> trackingColumnsByHeadings(const registers::ImportTable &table);

/// \a stored, with \a columns put in front for the next file of the form of \a table; forms that were not
/// met for long go.
QString withStoredColumns(const QString &stored, const TrackingColumns &columns,
                          const registers::ImportTable &table);
/// What is stored for a file of the form of \a table.
std::optional<TrackingColumns> columnsFromStored(const QString &stored, const registers::ImportTable &table);

} // namespace shipping
