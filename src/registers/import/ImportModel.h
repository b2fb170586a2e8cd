#pragma once

#include "registers/import/customer_import.h"

#include <QAbstractTableModel>

#include <array>
#include <vector>

namespace registers
{

/// The candidates of an import as rows of a grid: whether they are taken, their line, what is to be said
/// about them, and the fields that the table gives or that are filled in; the names stand in the vertical
/// heading too, which stays when the fields are scrolled. Holds no cell twice, so that 100,000 rows cost
/// nothing.
class ImportModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Which rows are shown, in the order of the captions of the drop-down.
    enum Filter { All, Ready, Duplicates, Refused, Updates, Same };
    using State = ImportCandidate::State;

    using QAbstractTableModel::QAbstractTableModel;

    void set(const ImportAssignment &assignment, std::vector<ImportCandidate> candidates);
    void show(Filter filter);
    /// Takes the stored rows out, with those that went into them.
    void removeTaken(const std::vector<const ImportCandidate *> &stored);
    /// Takes the rows, or leaves them out when all of them are taken. Refused ones stay out.
    void toggle(const QModelIndexList &rows);
    /// Takes of the rows shown these alone.
    void takeOnly(const QModelIndexList &rows);
    /// How many of the rows shown are taken, as new customers and as updates.
    struct TakenRows
    {
        std::size_t added = 0, updated = 0;
    };
    [[nodiscard]] TakenRows taken() const;
    /// Takes what \a before took of the same table, and nothing else of what it left.
    void takeAsIn(const std::vector<ImportCandidate> &before);

    [[nodiscard]] std::size_t count(State state) const { return m_counts[static_cast<std::size_t>(state)]; }
    [[nodiscard]] const std::vector<ImportCandidate> &candidates() const { return m_candidates; }
    /// The lines of the rows that repeat the key or code of an earlier one, in the order of the table.
    [[nodiscard]] QList<int> repeatingLines() const;
    /// The candidates in the rows shown.
    [[nodiscard]] std::vector<const ImportCandidate *> shown() const;
    [[nodiscard]] const ImportCandidate &candidate(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

    enum Column { Taken, Line, Remark, FirstField };

private:
    [[nodiscard]] bool isShown(const ImportCandidate &candidate) const;
    [[nodiscard]] QString text(const ImportCandidate &candidate, int column) const;
    void arrange();
    void take(std::size_t candidate, bool taken);

    std::vector<ImportCandidate> m_candidates;
    QList<int> m_fields;              // that the table gives, in its order, and those filled in
    std::vector<std::size_t> m_shown; // candidates, row by row
    std::array<std::size_t, 6> m_counts{};
    Filter m_filter = All;
};

} // namespace registers
