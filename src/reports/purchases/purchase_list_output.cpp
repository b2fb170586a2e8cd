#include "reports/purchases/purchase_list_output.h"

#include "tables/table_writer.h"
#include "text/numbers.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr int columnCount = 10;
constexpr int firstAmount = 2;

QStringList headings()
{
    return {u"コード"_s,          u"仕入先"_s, u"前回仕入額"_s,      u"支払額"_s, u"繰越金額"_s,
            u"仕入金額（税別)"_s, u"消費税"_s, u"仕入金額（税込)"_s, u"残高"_s,   u"未計上（消費税）"_s};
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

QString shown(const QDate &day) { return day.toString(u"yyyy/MM/dd"_s); }

QStringList shown(const QVariantList &row)
{
    QStringList cells;
    for (int column = 0; column < columnCount; ++column) {
        const QVariant &value = row.at(column);
        cells << (column < firstAmount || value.isNull() ? value.toString()
                                                         : text::formatAmount(value.toDouble()));
    }
    return cells;
}

} // namespace

QString shownPeriod(const book::Period &period) { return shown(period.from) + u"～"_s + shown(period.to); }

printing::List printedList(const PurchaseList &list, const book::Period &period, const QDate &today)
{
    printing::List printed;
    printed.title = u"月別仕入一覧"_s;
    printed.remark = u"期間　"_s + shownPeriod(period);
    printed.date = shown(today);
    const QStringList names = headings();
    for (int column = 0; column < columnCount; ++column) {
        const bool isAmount = column >= firstAmount;
        printed.columns.push_back({names.at(column), isAmount ? 26.0 : 16.0,
                                   isAmount ? printing::Align::Right : printing::Align::Left, column == 1});
    }
    for (const SupplierPurchases &purchases : list.suppliers)
        printed.rows.push_back(shown(values(purchases.code, purchases.name(), purchases.sums)));
    printed.totals = shown(totals(list));
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
    const QStringList names = headings();
    for (int column = 0; column < columnCount; ++column)
        file.columns.push_back({names.at(column),
                                column < firstAmount ? tables::ColumnType::Text : tables::ColumnType::Number,
                                column == 1 ? 36 : 16});
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
