#include "shipping/carriers/ExportModel.h"

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
    using enum base::Format;
    static const std::vector<base::Column> all{
        {u"出力"_s},     {u"発送ID"_s, Number}, {u"受付日"_s, Date}, {u"配達予定日"_s, Date},
        {u"お届け先"_s}, {u"品名"_s},           {u"発送方法"_s},     {u"代引金額"_s, Amount},
        {u"時間帯"_s},   {u"クール"_s},         {u"個数"_s, Number}, {u"出力日"_s, Date},
        {u"確認"_s}};
    return all;
}

QVariant dayOf(const QDate &day) { return day.isValid() ? QVariant(text::stored(day)) : QVariant(); }

} // namespace

void ExportModel::check(Row &row) const { row.findings = findingsOf(m_program, row.parcel, m_settings); }

bool ExportModel::isPreset(CarrierProgram program, const CarrierParcel &parcel)
{
    return !parcel.shipment.exported.isValid() && exportDoubt(program, parcel).isEmpty();
}

void ExportModel::set(std::vector<CarrierParcel> parcels, CarrierProgram program,
                      const CarrierSettings &settings)
{
    beginResetModel();
    std::vector<Row> before = std::exchange(m_rows, {});
    const CarrierProgram programBefore = std::exchange(m_program, program);
    m_settings = settings;
    for (CarrierParcel &parcel : parcels) {
        Row row{std::move(parcel)};
        row.ticked = isPreset(program, row.parcel);
        const auto known = std::find_if(before.begin(), before.end(), [&](const Row &other) {
            return other.parcel.shipment.id == row.parcel.shipment.id;
        });
        if (known != before.end()) {
            // For another carrier only those stay as they were that the clerk changed.
            if (program == programBefore || known->ticked != isPreset(programBefore, known->parcel))
                row.ticked = known->ticked;
            if (known->parcel.shipment.method == row.parcel.shipment.method)
                row.parcel.collected = known->parcel.collected;
        }
        check(row);
        m_rows.push_back(std::move(row));
    }
    endResetModel();
    emit choiceChanged();
}

void ExportModel::clear() { set({}, m_program, m_settings); }

void ExportModel::changed(int row)
{
    emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
    emit choiceChanged();
}

void ExportModel::toggle(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    m_rows[std::size_t(row)].ticked = !m_rows[std::size_t(row)].ticked;
    changed(row);
}

void ExportModel::tickAll(bool ticked)
{
    for (Row &row : m_rows)
        row.ticked = ticked;
    if (!m_rows.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    emit choiceChanged();
}

void ExportModel::toggleCollected(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    Row &one = m_rows[std::size_t(row)];
    one.parcel.collected = !one.parcel.collected;
    check(one);
    changed(row);
}

int ExportModel::rowOf(qint64 id) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [&](const Row &row) { return row.parcel.shipment.id == id; });
    return found == m_rows.end() ? -1 : int(found - m_rows.begin());
}

std::vector<CarrierParcel> ExportModel::ticked() const
{
    std::vector<CarrierParcel> parcels;
    for (const Row &row : m_rows) {
        if (row.ticked)
            parcels.push_back(row.parcel);
    }
    return parcels;
}

std::vector<CarrierFinding> ExportModel::findings() const
{
    std::vector<CarrierFinding> all;
    for (const Row &row : m_rows) {
        if (row.ticked)
            all.insert(all.end(), row.findings.begin(), row.findings.end());
    }
    return all;
}

int ExportModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int ExportModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant ExportModel::value(const Row &row, int column) const
{
    const Shipment &shipment = row.parcel.shipment;
    switch (column) {
    case Key:
        return shipment.id;
    case Accepted:
        return dayOf(shipment.accepted);
    case Delivery:
        return dayOf(shipment.delivery);
    case Consignee:
        return QStringList{shipment.consignee.name1, shipment.consignee.name2}.join(u'　').trimmed();
    case Goods:
        return shipment.goods;
    case Form:
        return shipment.method;
    case Collected:
        return row.parcel.collected ? QVariant(shipment.price.value_or(0)) : QVariant();
    case TimeSlot:
        return shipment.timeSlot;
    case Cooling:
        return shipment.cooling;
    case Parcels:
        return shipment.parcels;
    case Exported:
        return dayOf(shipment.exported);
    default:
        return stateOf(row);
    }
}

QString ExportModel::stateOf(const Row &row) const
{
    if (const QString doubt = exportDoubt(m_program, row.parcel); !doubt.isEmpty())
        return doubt;
    return row.findings.empty() ? u"よし"_s : u"%1 か所"_s.arg(row.findings.size());
}

QVariant ExportModel::data(const QModelIndex &index, int role) const
{
    const Row &row = m_rows[std::size_t(index.row())];
    if (index.column() == Ticked) {
        if (role == Qt::CheckStateRole)
            return row.ticked ? Qt::Checked : Qt::Unchecked;
        return role == Qt::AccessibleTextRole ? QVariant(row.ticked ? u"書き出す"_s : u"書き出さない"_s)
                                              : QVariant();
    }
    return ui::cellOf(columns()[std::size_t(index.column())], value(row, index.column()), role);
}

QVariant ExportModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    return ui::headingOf(columns()[std::size_t(section)], role);
}

} // namespace shipping
