#include "reports/charts/chart_data.h"

#include "base/exact_sum.h"
#include "book/movement_sums.h"
#include "book/movements.h"
#include "db/transaction.h"
#include "reports/purchases/purchase_report.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr int months = 12;

/// What is charted of customers and of suppliers.
struct PartyWords
{
    book::SlipKind charged;
    book::SlipKind settled;
    const char16_t *party;
    const char16_t *charge;
    const char16_t *settlement;
};

PartyWords wordsOf(book::Party party)
{
    if (party == book::Party::Customer)
        return {book::sale, book::receipt, u"納品先", u"売上", u"入金"};
    return {book::purchase, book::payment, u"仕入先", u"仕入", u"支払"};
}

QString str(const char16_t *text) { return QString::fromUtf16(text); }

struct Reading
{
    db::Connection &connection;
    const ChartQuery &query;
    const base::Progress &progress;

    [[nodiscard]] book::Selection selection(const book::SlipKind &kind, const book::Period &period) const
    {
        book::Selection selected{.kinds = {kind}, .days = book::Days::within(period)};
        selected.counterpart = query.counterpart;
        return selected;
    }

    [[nodiscard]] book::Period month(int index) const
    {
        const QDate first = monthsOf(query).from.addMonths(index);
        return {first, first.addMonths(1).addDays(-1)};
    }

    [[nodiscard]] base::Status goOn(int done, int all) const
    {
        return progress(done, all) ? base::Status() : base::cancelled();
    }
};

// The sums of \a kind for twelve months, the first of them \a index months after the query's.
base::Result<std::vector<double>> byMonth(const Reading &reading, const book::SlipKind &kind, int index)
{
    std::vector<double> sums;
    for (int i = 0; i < months; ++i) {
        if (const base::Status goesOn = reading.goOn(i, months); !goesOn)
            return goesOn.error();
        base::ExactSum sum;
        const base::Status read = book::sumMovements(
            reading.connection, reading.selection(kind, reading.month(index + i)), {}, base::unwatched,
            [&sum](const book::MovementSum &part) { sum.add(part.amount); });
        if (!read)
            return read.error();
        sums.push_back(sum.value());
    }
    return sums;
}

base::Result<ChartData> monthly(const Reading &reading)
{
    ChartData data;
    for (int i = 0; i < months; ++i)
        data.categories << reading.month(i).from.toString(u"yyyy/MM"_s);
    const PartyWords words = wordsOf(reading.query.party);
    const bool yearBeside = reading.query.kind == ChartKind::YearBeside;
    const auto charged = byMonth(reading, words.charged, 0);
    if (!charged)
        return charged.error();
    const auto beside =
        yearBeside ? byMonth(reading, words.charged, -months) : byMonth(reading, words.settled, 0);
    if (!beside)
        return beside.error();
    const QString charge = str(words.charge);
    if (yearBeside) // the older one stands left
        data.series = {{u"前年同月の"_s + charge, *beside}, {charge, *charged}};
    else
        data.series = {{charge, *charged}, {str(words.settlement), *beside}};
    return data;
}

// --- Who and what ---

struct Named
{
    QString name;
    double amount = 0;
};

// The greatest first, the rest together; what is no number is shown before all.
ChartData topOf(const QString &series, std::vector<Named> all)
{
    std::ranges::stable_sort(all, [](const Named &one, const Named &other) {
        if (std::isnan(one.amount) || std::isnan(other.amount))
            return std::isnan(one.amount) && !std::isnan(other.amount);
        return one.amount > other.amount || (one.amount == other.amount && one.name < other.name);
    });
    ChartData data;
    data.lying = true;
    data.series = {{series}};
    base::ExactSum rest;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i >= mostNames) {
            rest.add(all[i].amount);
            continue;
        }
        data.categories << all[i].name;
        data.series[0].values.push_back(all[i].amount);
    }
    if (all.size() > mostNames) {
        data.categories << u"その他（%1）"_s.arg(all.size() - mostNames);
        data.series[0].values.push_back(rest.value());
    }
    return data;
}

base::Result<ChartData> topCounterparts(const Reading &reading)
{
    const PartyWords words = wordsOf(reading.query.party);
    std::unordered_map<book::CounterpartKey, base::ExactSum> sums;
    for (int i = 0; i < months; ++i) {
        if (const base::Status goesOn = reading.goOn(i, months); !goesOn)
            return goesOn.error();
        const base::Status read = book::sumMovements(
            reading.connection, reading.selection(words.charged, reading.month(i)), {.byCounterpart = true},
            base::unwatched,
            [&sums](const book::MovementSum &part) { sums[part.counterpart].add(part.amount); });
        if (!read)
            return read.error();
    }
    std::vector<Named> named;
    for (const auto &[counterpart, sum] : sums) {
        const auto name = book::nameOfCounterpart(reading.connection, reading.query.party, counterpart);
        if (!name)
            return name.error();
        named.push_back({*name, sum.value()});
    }
    return topOf(str(words.charge), std::move(named));
}

// Goods of one name, whatever their size and unit: what they came to can be added.
base::Result<ChartData> topGoods(const Reading &reading)
{
    const PartyWords words = wordsOf(reading.query.party);
    std::unordered_map<QString, base::ExactSum> sums;
    for (int i = 0; i < months; ++i) {
        if (const base::Status goesOn = reading.goOn(i, months); !goesOn)
            return goesOn.error();
        book::Selection selection = reading.selection(words.charged, reading.month(i));
        selection.lines = book::LinesOf::Goods;
        const auto movements = book::movements(reading.connection, selection);
        if (!movements)
            return movements.error();
        for (const book::Movement &movement : *movements)
            sums[movement.product].add(movement.amount);
    }
    std::vector<Named> named;
    for (const auto &[product, sum] : sums)
        named.push_back({product.trimmed().isEmpty() ? u"(商品名なし)"_s : product, sum.value()});
    return topOf(str(words.charge), std::move(named));
}

base::Result<ChartData> figures(const Reading &reading)
{
    switch (reading.query.kind) {
    case ChartKind::ByMonth:
    case ChartKind::YearBeside:
        return monthly(reading);
    case ChartKind::TopCounterparts:
        return topCounterparts(reading);
    case ChartKind::TopGoods:
        return topGoods(reading);
    }
    Q_UNREACHABLE();
}

} // namespace

QString nameOf(ChartKind kind, book::Party party)
{
    const PartyWords words = wordsOf(party);
    const QString charge = str(words.charge);
    switch (kind) {
    case ChartKind::ByMonth:
        return charge + u'と' + str(words.settlement) + u"（月別）"_s;
    case ChartKind::YearBeside:
        return charge + u"の前年との比較（月別）"_s;
    case ChartKind::TopCounterparts:
        return charge + u"の多い"_s + str(words.party);
    case ChartKind::TopGoods:
        return charge + u"の多い商品（消費税の行を除く）"_s;
    }
    Q_UNREACHABLE();
}

bool ChartData::isEmpty() const
{
    return std::ranges::all_of(series, [](const ChartSeries &each) {
        return std::ranges::all_of(each.values, [](double value) { return value == 0; });
    });
}

book::Period monthsOf(const ChartQuery &query)
{
    const QDate last(query.until.year(), query.until.month(), 1);
    return {last.addMonths(1 - months), last.addMonths(1).addDays(-1)};
}

base::Result<ChartData> readChart(db::Connection &connection, const ChartQuery &query,
                                  const base::Progress &progress)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    auto data = figures({connection, query, progress});
    if (!data)
        return data;
    QString whose = u"全"_s + str(wordsOf(query.party).party);
    if (query.counterpart) {
        const auto name = book::nameOfCounterpart(connection, query.party, *query.counterpart);
        if (!name)
            return name.error();
        whose = *name;
    }
    data->title = nameOf(query.kind, query.party);
    data->remark = whose + u"　　"_s + shownPeriod(monthsOf(query));
    return data;
}

base::Report tableOf(const ChartData &data)
{
    base::Report table{data.title,
                       data.remark,
                       data.title + u' ' +
                           QString(data.remark).replace(u'/', u'-').replace(u"　　"_s, u" "_s),
                       {{data.lying ? u"名前"_s : u"月"_s, base::Format::Text, 30, 60, true}}};
    for (const ChartSeries &series : data.series)
        table.columns.push_back({series.name, base::Format::Amount, 16, 36, false, true});
    for (qsizetype row = 0; row < data.categories.size(); ++row) {
        QVariantList values{data.categories.at(row)};
        for (const ChartSeries &series : data.series)
            values << series.values.at(static_cast<std::size_t>(row));
        table.rows.push_back({values});
    }
    addTotals(table, u"合計"_s);
    return table;
}

} // namespace reports
