#include "reports/ledgers/ledger_report.h"

#include "text/dates.h"
#include "text/format_value.h"

using namespace Qt::StringLiterals;
using base::Format;

namespace reports
{

namespace
{

QString shownPeriod(const book::Period &period)
{
    return text::formatDate(period.from) + u" ～ "_s + text::formatDate(period.to);
}

QVariant numberOrNothing(const std::optional<double> &number)
{
    return number ? QVariant(*number) : QVariant();
}

// An amount in the column of its movement alone.
QVariant amountIf(bool belongs, double amount) { return belongs ? QVariant(amount) : QVariant(); }

// A quantity in the column of its kind alone.
QVariant quantityIf(const GoodsLine &line, const book::SlipKind &kind)
{
    return line.kind == kind ? numberOrNothing(line.quantity) : QVariant();
}

base::Column summed(base::Column column)
{
    column.summed = true;
    return column;
}

// A file of it is called "売掛金元帳 山田商店 2026-04-01 ～ 2026-04-30".
base::Report headed(const QString &title, const QString &remark)
{
    QString name = title + u' ' + remark;
    return {title, remark, name.replace(u'/', u'-').replace(u"　　"_s, u" "_s)};
}

struct PartyWords
{
    const char16_t *ledger;
    const char16_t *balances;
    const char16_t *party;
    const char16_t *charged;
    const char16_t *settled;
    const char16_t *lastCharged;
    const char16_t *lastSettled;
};

constexpr PartyWords wordsOf(book::Party party)
{
    return party == book::Party::Customer
               ? PartyWords{u"売掛金元帳", u"売掛金残高一覧", u"納品先名",  u"納品金額",
                            u"入金額",     u"最終納品日",     u"最終入金日"}
               : PartyWords{u"買掛金元帳", u"買掛金残高一覧", u"仕入先名",  u"仕入金額",
                            u"支払額",     u"最終仕入日",     u"最終支払日"};
}

QString str(const char16_t *text) { return QString::fromUtf16(text); }

QVariantList rowOf(const LedgerLine &line)
{
    return {line.date,
            line.number,
            nameOf(line.kind),
            line.product,
            line.specification,
            numberOrNothing(line.quantity),
            line.unit,
            numberOrNothing(line.price),
            amountIf(line.movement == Movement::Carried, line.amount),
            amountIf(line.movement == Movement::Charged, line.amount),
            amountIf(line.movement == Movement::Settled, line.amount),
            line.balance};
}

} // namespace

base::Report ledgerReport(const Ledger &ledger, book::Party party, const QString &name,
                          const book::Period &period)
{
    const PartyWords words = wordsOf(party);
    base::Report report = headed(str(words.ledger), name + u"　　"_s + shownPeriod(period));
    report.columns = {{u"日付"_s, Format::Date, 11, 20},
                      {u"伝票番号"_s, Format::Text, 11, 22},
                      {u"種別"_s, Format::Text, 6, 12},
                      {u"商品名・適用"_s, Format::Text, 28, 40, true},
                      {u"規格・方法"_s, Format::Text, 16, 26},
                      {u"数量"_s, Format::Quantity, 11, 17},
                      {u"単位"_s, Format::Text, 8, 12},
                      {u"単価"_s, Format::Quantity, 10, 19},
                      {u"繰越額"_s, Format::Amount, 12, 23},
                      {str(words.charged), Format::Amount, 12, 23},
                      {str(words.settled), Format::Amount, 12, 23},
                      {u"残高"_s, Format::Amount, 13, 25}};
    report.rows.reserve(ledger.lines.size() + 1);
    const QVariant none;
    report.rows.push_back({{none, none, none, u"繰越残高"_s, none, none, none, none, ledger.brought, none,
                            none, ledger.brought}});
    for (const LedgerLine &line : ledger.lines)
        report.rows.push_back({rowOf(line), QVariant::fromValue(SlipTarget{line.slip, line.kind})});
    const LedgerTotals &totals = ledger.totals;
    report.totals = {none, none, none,           u"合計"_s,      none,           none,
                     none, none, totals.carried, totals.charged, totals.settled, totals.balance};
    report.sums = {{u"繰越額"_s, totals.carried},
                   {str(words.charged), totals.charged},
                   {u"(内 消費税)"_s, totals.tax + totals.included},
                   {str(words.settled), totals.settled},
                   {u"残高"_s, totals.balance}};
    return report;
}

base::Report balanceReport(const std::vector<CounterpartBalance> &balances, book::Party party,
                           const QDate &day, bool onlyOpen)
{
    const PartyWords words = wordsOf(party);
    base::Report report = headed(str(words.balances), text::formatDate(day) + u" 現在"_s);
    report.columns = {{u"コード"_s, Format::Text, 12, 26},
                      {str(words.party), Format::Text, 50, 70, true},
                      {str(words.lastCharged), Format::Date, 12, 22},
                      {str(words.lastSettled), Format::Date, 12, 22},
                      summed({u"残高"_s, Format::Amount, 16, 32})};
    for (const CounterpartBalance &balance : balances) {
        if (onlyOpen && balance.balance == 0)
            continue;
        report.rows.push_back(
            {{balance.code, balance.name, balance.lastCharged, balance.lastSettled, balance.balance},
             QVariant::fromValue(LedgerTarget{balance.counterpart})});
    }
    addTotals(report, u"合計"_s);
    report.sums = {{u"残高合計"_s, report.totals.last().toDouble()}};
    return report;
}

base::Report stockReport(const StockLedger &stock, const QDate &day, bool onlyInStock)
{
    base::Report report = headed(u"棚卸補助元帳"_s, text::formatDate(day) + u" 現在"_s);
    report.columns = {
        {u"商品名"_s, Format::Text, 28, 50, true}, {u"規格"_s, Format::Text, 18, 34},
        {u"単位"_s, Format::Text, 6, 14},          {u"棚卸日"_s, Format::Date, 11, 20},
        {u"棚卸数量"_s, Format::Quantity, 11, 20}, {u"仕入数量"_s, Format::Quantity, 11, 20},
        {u"納品数量"_s, Format::Quantity, 11, 20}, {u"在庫数量"_s, Format::Quantity, 11, 20},
        {u"単価"_s, Format::Quantity, 11, 20},     summed({u"在庫金額"_s, Format::Amount, 14, 26})};
    for (const StockLine &line : stock.lines) {
        if (onlyInStock && line.stock == 0)
            continue;
        const book::Goods goods{line.product, line.specification, line.unit};
        report.rows.push_back({{line.product, line.specification, line.unit, line.counted, line.stocktake,
                                line.in, line.out, line.stock, numberOrNothing(line.price), line.amount},
                               QVariant::fromValue(GoodsTarget{goods})});
    }
    addTotals(report, u"合計"_s);
    report.sums = {{u"在庫金額合計"_s, report.totals.last().toDouble()}};
    return report;
}

QString nameOf(const book::Goods &goods)
{
    QStringList parts{goods.product, goods.specification, goods.unit};
    parts.removeAll(QString());
    return parts.join(u'　');
}

base::Report goodsReport(const GoodsLedger &ledger, const book::Goods &goods, const book::Period &period)
{
    base::Report report = headed(u"棚卸補助元帳"_s, nameOf(goods) + u"　　"_s + shownPeriod(period));
    report.columns = {{u"日付"_s, Format::Date, 11, 20},         {u"伝票番号"_s, Format::Text, 11, 24},
                      {u"種別"_s, Format::Text, 6, 14},          {u"相手先名"_s, Format::Text, 30, 60, true},
                      {u"単価"_s, Format::Quantity, 11, 24},     {u"仕入数量"_s, Format::Quantity, 11, 26},
                      {u"納品数量"_s, Format::Quantity, 11, 26}, {u"棚卸数量"_s, Format::Quantity, 11, 26},
                      {u"在庫数量"_s, Format::Quantity, 11, 26}};
    const QVariant none;
    const QString last = text::formatValue(Format::Date, ledger.counted);
    const QString brought = last.isEmpty() ? u"繰越在庫"_s : u"繰越在庫（最終棚卸 %1）"_s.arg(last);
    report.rows.push_back({{none, none, none, brought, none, none, none, none, ledger.brought}});
    for (const GoodsLine &line : ledger.lines)
        report.rows.push_back({{line.date, line.number, nameOf(line.kind), line.counterpart,
                                numberOrNothing(line.price), quantityIf(line, book::purchase),
                                quantityIf(line, book::sale), quantityIf(line, book::stocktake), line.stock},
                               QVariant::fromValue(SlipTarget{line.slip, line.kind})});
    report.totals = {none, none, none, u"合計"_s, none, ledger.in, ledger.out, none, ledger.stock};
    report.sums = {{u"繰越在庫"_s, ledger.brought, Format::Quantity},
                   {u"仕入数量"_s, ledger.in, Format::Quantity},
                   {u"納品数量"_s, ledger.out, Format::Quantity},
                   {u"棚卸差異"_s, ledger.found, Format::Quantity},
                   {u"在庫数量"_s, ledger.stock, Format::Quantity}};
    return report;
}

} // namespace reports
