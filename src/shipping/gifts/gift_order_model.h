#pragma once

#include "shipping/gifts/gift_cells.h"

#include <QAbstractTableModel>

namespace shipping
{

/// The lines of a gift order sheet as a grid edits them, with an empty one at the end that becomes a line of
/// its own once something is typed into it. What the sheet says for all of them shows grey. Each change can
/// be taken back until slips are issued. Lines whose slips are out are not edited any more.
class GiftOrderModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit GiftOrderModel(QObject *parent = nullptr);

    [[nodiscard]] const GiftOrder &order() const { return m_order; }
    /// Replaces all, lines included; nothing can be taken back then.
    void setOrder(GiftOrder order);
    /// Replaces what is said of all lines.
    void setHead(const GiftOrder &head);

    /// Adds \a rows at the end. \return the place of the first one
    int append(const std::vector<GiftRow> &rows);
    /// Takes the lines at \a places away, except for those whose slips are out.
    void remove(const std::vector<int> &places);
    void tickAll(bool ticked);
    void toggle(int row);
    /// Lets the ticked lines go by the sheet in all that it says.
    void followCommon();
    /// Types \a text, cells as a spreadsheet copies them or a CSV file has them, into the grid from a cell
    /// on, all of it or nothing; see pastedCells(). \return why nothing was typed
    base::Status paste(int row, int column, const QString &text);

    [[nodiscard]] bool canTakeBack() const { return !m_before.empty(); }
    /// Undoes the last change.
    void takeBack();

    /// Says what became of lines: their slips are out, or not, and why. Nothing before is taken back any
    /// more.
    void setIssued(const std::vector<std::size_t> &rows, const QString &state);
    void setState(std::size_t row, const QString &state);
    /// Takes from all lines whose slips are not out what was said of them.
    void clearStates();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    /// What was typed or pasted is not taken.
    void refused(const QString &reason);
    /// A cell was typed into.
    void entered(int row, shipping::GiftColumn column);
    /// Anything of the sheet is other than before.
    void changed();

private:
    [[nodiscard]] bool isLine(int row) const { return row >= 0 && row < int(m_order.rows.size()); }
    void remember();
    void replaceRows(std::vector<GiftRow> rows);
    void shown();

    GiftOrder m_order;
    std::vector<std::vector<GiftRow>> m_before; // the lines as they were, the last ones at the end
};

} // namespace shipping
