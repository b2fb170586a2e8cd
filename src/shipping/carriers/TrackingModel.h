#pragma once

#include "shipping/carriers/tracking_matches.h"

#include <QAbstractTableModel>

namespace shipping
{

/// The rows of a carrier's answer, each with a tick: whose number it is, and what speaks against taking it.
class TrackingModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Ticked, State, Management, Consignee, Accepted, Before, Number, Remark, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void set(std::vector<TrackingMatch> matches);
    [[nodiscard]] const std::vector<TrackingMatch> &matches() const { return m_matches; }
    [[nodiscard]] const TrackingMatch &at(int row) const { return m_matches[std::size_t(row)]; }
    /// Takes the ticks of other rows of the same shipment away.
    void setTicked(int row, bool ticked);
    [[nodiscard]] int tickedCount() const;
    [[nodiscard]] int countOf(TrackingState state) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] QVariant value(const TrackingMatch &match, int column) const;

    std::vector<TrackingMatch> m_matches;
};

} // namespace shipping
