#include "shipping/carriers/TrackingModel.h"

#include "base/column.h"
#include "text/dates.h"
#include "ui/column_cells.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const std::vector<base::Column> &columns()
{
    static const std::vector<base::Column> all{{u"取込"_s},
                                               {u"判定"_s},
                                               {u"お客様管理番号"_s},
                                               {u"お届け先"_s},
                                               {u"受付日"_s, base::Format::Date},
                                               {u"今の送り状番号"_s},
                                               {u"新しい送り状番号"_s},
                                               {u"備考"_s}};
    return all;
}

} // namespace

void TrackingModel::set(std::vector<TrackingMatch> matches)
{
    beginResetModel();
    m_matches = std::move(matches);
    endResetModel();
}

void TrackingModel::setTicked(int row, bool ticked)
{
    TrackingMatch &chosen = m_matches[std::size_t(row)];
    if (!chosen.canBeTaken())
        return;
    for (TrackingMatch &match : m_matches) {
        if (match.shipment && match.shipment->id == chosen.shipment->id)
            match.ticked = false;
    }
    chosen.ticked = ticked;
    emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

int TrackingModel::tickedCount() const
{
    return int(std::count_if(m_matches.begin(), m_matches.end(),
                             [](const TrackingMatch &match) { return match.ticked; }));
}

int TrackingModel::countOf(TrackingState state) const
{
    return int(std::count_if(m_matches.begin(), m_matches.end(),
                             [&](const TrackingMatch &match) { return match.state == state; }));
}

int TrackingModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_matches.size());
}

int TrackingModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant TrackingModel::value(const TrackingMatch &match, int column) const
{
    switch (column) {
    case State:
        return nameOf(match.state);
    case Management:
        return match.management;
    case Number:
        return match.number;
    case Remark:
        return match.remark;
    default:
        break;
    }
    if (!match.shipment)
        return column == Consignee ? QVariant(match.consignee) : QVariant();
    const Shipment &shipment = *match.shipment;
    if (column == Consignee)
        return QStringList{shipment.consignee.name1, shipment.consignee.name2}.join(u'　').trimmed();
    if (column == Accepted)
        return shipment.accepted.isValid() ? QVariant(text::stored(shipment.accepted)) : QVariant();
    return shipment.trackingNumber;
}

QVariant TrackingModel::data(const QModelIndex &index, int role) const
{
    const TrackingMatch &match = at(index.row());
    if (index.column() == Ticked) {
        if (role == Qt::CheckStateRole && match.canBeTaken())
            return match.ticked ? Qt::Checked : Qt::Unchecked;
        return role == Qt::AccessibleTextRole ? QVariant(match.ticked ? u"取り込む"_s : u"取り込まない"_s)
                                              : QVariant();
    }
    if (role == Qt::ToolTipRole && index.column() == Remark)
        return match.remark; // longer than its column
    return ui::cellOf(columns()[std::size_t(index.column())], value(match, index.column()), role);
}

QVariant TrackingModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    return ui::headingOf(columns()[std::size_t(section)], role);
}

} // namespace shipping
