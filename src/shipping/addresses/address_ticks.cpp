#include "shipping/addresses/address_ticks.h"

#include "text/postal_code.h"

#include <array>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

// The remark is in sight on a small display, too.
enum Column { TickColumn, NameColumn, ZipColumn, PrintedColumn, RemarkColumn, AddressColumn };

struct Caption
{
    const char16_t *text;
    int width; // half-width characters
};

constexpr std::array<Caption, 6> captions{{
    {u"対象", 5},
    {u"宛名", 28},
    {u"郵便番号", 10},
    {u"印刷済", 11},
    {u"備考", 24},
    {u"住所", 38},
}};

} // namespace

AddressTicks::AddressTicks(QObject *parent)
    : QAbstractTableModel(parent)
{}

void AddressTicks::setRows(std::vector<AddressRow> rows, const QHash<qint64, QDate> &printed)
{
    m_entries.clear();
    for (AddressRow &row : rows) {
        Entry entry;
        entry.printed = printed.value(row.id);
        entry.row = std::move(row);
        address(entry);
        entry.ticked = entry.lack.isEmpty();
        m_entries.push_back(std::move(entry));
    }
    show();
}

void AddressTicks::address(Entry &entry) const
{
    entry.addressee = addresseeOf(entry.row, m_withContact);
    entry.lack = addressLack(entry.addressee);
    entry.ticked = entry.ticked && entry.lack.isEmpty();
}

void AddressTicks::setWithContact(bool withContact)
{
    m_withContact = withContact;
    for (Entry &each : m_entries)
        address(each);
    changed();
}

void AddressTicks::leaveOutSince(const QDate &day)
{
    m_since = day;
    show();
}

void AddressTicks::show()
{
    beginResetModel();
    m_shown.clear();
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const QDate &printed = m_entries[i].printed;
        if (!m_since.isValid() || !printed.isValid() || printed < m_since)
            m_shown.push_back(i);
    }
    endResetModel();
    emit choiceChanged();
}

void AddressTicks::changed()
{
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    emit choiceChanged();
}

void AddressTicks::tickAll(bool ticked)
{
    for (int row = 0; row < rowCount(); ++row)
        entry(row).ticked = ticked && entry(row).lack.isEmpty();
    changed();
}

void AddressTicks::toggle(int row)
{
    if (row < 0 || row >= rowCount() || !entry(row).lack.isEmpty())
        return;
    entry(row).ticked = !entry(row).ticked;
    emit dataChanged(index(row, TickColumn), index(row, TickColumn));
    emit choiceChanged();
}

void AddressTicks::setPrinted(std::size_t count, const QDate &today)
{
    for (int row = 0; row < rowCount() && count > 0; ++row) {
        if (!entry(row).ticked)
            continue;
        entry(row).ticked = false;
        if (entry(row).row.id != 0)
            entry(row).printed = today; // nobody else's day is kept
        --count;
    }
    changed();
}

std::vector<Addressee> AddressTicks::ticked() const
{
    std::vector<Addressee> addressees;
    for (int row = 0; row < rowCount(); ++row) {
        if (entry(row).ticked)
            addressees.push_back(at(row));
    }
    return addressees;
}

QStringList AddressTicks::lacking() const
{
    QStringList lacking;
    for (int row = 0; row < rowCount(); ++row) {
        const Entry &each = entry(row);
        const QString name = addresseeInWords(each.addressee);
        if (!each.lack.isEmpty())
            lacking << (name.isEmpty() ? u"ID %1"_s.arg(each.row.id) : name) + u"："_s + each.lack;
    }
    return lacking;
}

int AddressTicks::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_shown.size());
}

int AddressTicks::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(captions.size());
}

QString AddressTicks::remark(const Entry &entry)
{
    if (!entry.lack.isEmpty())
        return entry.lack;
    QStringList remarks{addressDoubt(entry.addressee),
                        entry.row.id == 0 ? u"登録の納品先ではないため、印刷済は残りません"_s : QString()};
    remarks.removeAll(QString());
    return remarks.join(u'、');
}

QStringList AddressTicks::remarks() const
{
    QStringList remarks;
    for (int row = 0; row < rowCount(); ++row) {
        const Entry &each = entry(row);
        if (each.ticked && !remark(each).isEmpty())
            remarks << addresseeInWords(each.addressee) + u"："_s + remark(each);
    }
    return remarks;
}

QString AddressTicks::shown(const Entry &entry, int column) const
{
    switch (column) {
    case NameColumn:
        return addresseeInWords(entry.addressee);
    case ZipColumn:
        return text::shownPostalCode(entry.addressee.zip);
    case AddressColumn:
        return (entry.addressee.address1 + u'　' + entry.addressee.address2).trimmed();
    case PrintedColumn:
        return entry.printed.isValid() ? entry.printed.toString(u"yyyy/MM/dd"_s) : QString();
    case RemarkColumn:
        return remark(entry);
    default:
        return {};
    }
}

QVariant AddressTicks::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Entry &each = entry(index.row());
    if (role == Qt::CheckStateRole && index.column() == TickColumn)
        return int(each.ticked ? Qt::Checked : Qt::Unchecked);
    return role == Qt::DisplayRole ? QVariant(shown(each, index.column())) : QVariant();
}

bool AddressTicks::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != TickColumn || !entry(index.row()).lack.isEmpty())
        return false;
    if (entry(index.row()).ticked != (value.toInt() == Qt::Checked))
        toggle(index.row());
    return true;
}

// Who cannot be printed shows grey.
Qt::ItemFlags AddressTicks::flags(const QModelIndex &index) const
{
    if (!index.isValid() || !entry(index.row()).lack.isEmpty())
        return Qt::ItemIsSelectable;
    const Qt::ItemFlags row = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.column() == TickColumn ? row | Qt::ItemIsUserCheckable : row;
}

QVariant AddressTicks::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return QString::fromUtf16(captions[std::size_t(section)].text);
}

int AddressTicks::width(int column) { return captions[std::size_t(column)].width; }

} // namespace shipping
