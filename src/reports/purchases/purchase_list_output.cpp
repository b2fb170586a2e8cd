#include "reports/purchases/purchase_list_output.h"

#include "tables/table_writer.h"
#include "text/dates.h"
#include "text/format_value.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

std::vector<base::Column> columns()
{
    const auto amount = [](const QString &heading) {
        return base::Column{heading, base::Format::Amount, 16, 26};
    };
    return {{u"コード"_s, base::Format::Text, 16, 16},
            {u"仕入先"_s, base::Format::Text, 36, 16, true},
            amount(u"前回仕入額"_s),
            amount(u"支払額"_s),
            amount(u"繰越金額"_s),
            amount(u"仕入金額（税別)"_s),
            amount(u"消費税"_s),
            amount(u"仕入金額（税込)"_s),
            amount(u"残高"_s),
            amount(u"未計上（消費税）"_s)};
}

// In the order of the headings.
QVariantList values(const QString &code, const QString &name, const PurchaseSums &sums)
{
    return {code,           name,
            sums.previous,  sums.payments,
            sums.carried(), sums.untaxed(),
            sums.tax,       sums.purchases,
            sums.balance(), sums.unbooked ? QVariant(*sums.unbooked) : QVariant()};
}

QVariantList totals(const PurchaseList &list) { return values({}, u"合計"_s, list.totals); }

QStringList shown(const std::vector<base::Column> &columns, const QVariantList &row)
{
    QStringList cells;
    for (std::size_t column = 0; column < columns.size(); ++column)
        cells << text::formatValue(columns[column].format, row.at(static_cast<qsizetype>(column)));
    return cells;
}

} // namespace

QString shownPeriod(const book::Period &period)
{
    return text::formatDate(period.from) + u"～"_s + text::formatDate(period.to);
}

printing::List printedList(const PurchaseList &list, const book::Period &period, const QDate &today)
{
    printing::List printed;
    printed.title = u"月別仕入一覧"_s;
    printed.remark = u"期間　"_s + shownPeriod(period);
    printed.date = text::formatDate(today);
    printed.columns = columns();
    for (const SupplierPurchases &purchases : list.suppliers)
        printed.rows.push_back(
            shown(printed.columns, values(purchases.code, purchases.name(), purchases.sums)));
    printed.totals = shown(printed.columns, totals(list));
    std::swap(printed.paperWidth, printed.paperHeight);
    return printed;
}

QString fileTitle(const book::Period &period)
{
    return u"月別仕入一覧 "_s + shownPeriod(period).replace(u'/', u'-');
}

base::Status checkPurchaseExport(const PurchaseList &list, const QString &fileName)
{
    return tables::checkTarget(fileName, static_cast<qint64>(list.suppliers.size()) + 1);
}

base::Status exportPurchases(const PurchaseList &list, const QString &fileName,
                             const base::Progress &progress)
{
    tables::Table file;
    file.columns = columns();
    file.rowCount = static_cast<qint64>(list.suppliers.size()) + 1;
    std::size_t at = 0;
    file.next = [&list, at](QVariantList &row) mutable -> base::Result<bool> {
        if (at > list.suppliers.size())
            return false;
        if (at == list.suppliers.size()) {
            row = totals(list);
        } else {
            const SupplierPurchases &purchases = list.suppliers[at];
            row = values(purchases.code, purchases.name(), purchases.sums);
        }
        ++at;
        return true;
    };
    return tables::writeTable(fileName, file, progress);
}

} // namespace reports
