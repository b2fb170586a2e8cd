#include "reports/bills/receipts/payment_columns.h"

#include "registers/import/import_fields.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr std::size_t mostPreamble = 20; // rows before the headings

// The field's own name first; then what banks and other cash books call it.
const std::array<QStringList, paymentFieldCount> headings{
    QStringList{u"日付"_s, u"取引日"_s, u"お取引日"_s, u"入金日"_s, u"年月日"_s, u"勘定日"_s, u"取引年月日"_s,
                u"お取扱日"_s, u"取扱日付"_s, u"操作日"_s, u"起算日"_s},
    QStringList{u"入金額"_s, u"入金"_s, u"入金金額"_s, u"入金金額（円）"_s, u"お預り金額"_s, u"お預入額"_s,
                u"お預け入れ"_s, u"預入金額"_s, u"収入金額"_s, u"収入"_s, u"受取金額"_s, u"振込金額"_s,
                u"取引金額"_s, u"金額"_s},
    QStringList{u"相手先"_s, u"振込依頼人名"_s, u"依頼人名"_s, u"振込人名"_s, u"振込人"_s, u"依頼人"_s,
                u"取引先"_s, u"取引先名"_s, u"お客様名"_s, u"顧客名"_s, u"名義"_s, u"名義人"_s, u"氏名"_s},
    QStringList{u"摘要"_s, u"お取引内容"_s, u"取引内容"_s, u"内容"_s, u"明細"_s, u"お取り扱い内容"_s,
                u"備考"_s},
    QStringList{u"口座"_s, u"口座名"_s, u"口座番号"_s, u"科目"_s}};

// The column with the first of \a names that there is; others of the same name are passed over.
qsizetype columnNamed(const QStringList &cells, const QStringList &names)
{
    QStringList folded;
    for (const QString &cell : cells)
        folded << registers::foldedHeading(cell);
    for (const QString &name : names) {
        if (const qsizetype found = folded.indexOf(registers::foldedHeading(name)); found >= 0)
            return found;
    }
    return -1;
}

PaymentColumns columnsIn(const QStringList &cells)
{
    PaymentColumns columns;
    for (std::size_t field = 0; field < headings.size(); ++field)
        columns.columns[field] = columnNamed(cells, headings[field]);
    return columns;
}

QString headingsOf(const PaymentTable &table, std::size_t firstRow)
{
    const QStringList cells = table.isCashBook                                ? table.columns
                              : firstRow > 0 && firstRow <= table.rows.size() ? table.rows[firstRow - 1].cells
                                                                              : QStringList();
    QStringList folded;
    for (const QString &cell : cells)
        folded << registers::foldedHeading(cell.left(40));
    return folded.join(u',');
}

} // namespace

QString nameOf(PaymentField field) { return headings[std::size_t(field)].front(); }

QString PaymentColumns::lack() const
{
    for (const PaymentField field : {PaymentField::Date, PaymentField::Amount}) {
        if (of(field) < 0)
            return u"「%1」にする列を指定してください。"_s.arg(nameOf(field));
    }
    if (of(PaymentField::Payer) < 0 && of(PaymentField::Text) < 0)
        return u"「相手先」か「摘要」にする列を指定してください。"_s;
    for (std::size_t one = 0; one < columns.size(); ++one) {
        for (std::size_t other = one + 1; other < columns.size(); ++other) {
            if (columns[one] >= 0 && columns[one] == columns[other])
                return u"「%1」と「%2」に同じ列が指定されています。"_s.arg(nameOf(PaymentField(one)),
                                                                           nameOf(PaymentField(other)));
        }
    }
    return {};
}

std::optional<PaymentColumns> columnsByHeadings(const PaymentTable &table)
{
    if (table.isCashBook) {
        PaymentColumns columns = columnsIn(table.columns);
        return columns.lack().isEmpty() ? std::optional(columns) : std::nullopt;
    }
    for (std::size_t row = 0; row < std::min(mostPreamble, table.rows.size()); ++row) {
        PaymentColumns columns = columnsIn(table.rows[row].cells);
        columns.firstRow = row + 1;
        if (columns.lack().isEmpty())
            return columns;
    }
    return std::nullopt;
}

QString storedColumns(const PaymentColumns &columns, const PaymentTable &table)
{
    QStringList parts{QString::number(table.width), QString::number(columns.firstRow)};
    for (const qsizetype column : columns.columns)
        parts << QString::number(column);
    return parts.join(u' ') + u'|' + headingsOf(table, columns.firstRow);
}

std::optional<PaymentColumns> columnsFromStored(const QString &stored, const PaymentTable &table)
{
    QList<qsizetype> numbers;
    for (const QString &part : stored.section(u'|', 0, 0).split(u' ')) {
        bool isNumber = false;
        numbers << part.toLongLong(&isNumber);
        if (!isNumber)
            return std::nullopt;
    }
    if (numbers.size() != 2 + paymentFieldCount || numbers.at(0) != table.width || numbers.at(1) < 0 ||
        numbers.at(1) > qsizetype(table.rows.size()))
        return std::nullopt;
    PaymentColumns columns;
    columns.firstRow = std::size_t(numbers.at(1));
    for (std::size_t field = 0; field < columns.columns.size(); ++field)
        columns.columns[field] = std::clamp<qsizetype>(numbers.at(2 + qsizetype(field)), -1, table.width - 1);
    const bool fits = stored.section(u'|', 1) == headingsOf(table, columns.firstRow);
    return fits && columns.lack().isEmpty() ? std::optional(columns) : std::nullopt;
}

} // namespace reports
