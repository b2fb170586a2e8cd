#include "reports/daily/day_report_rows.h"

#include "reports/ledgers/ledger_report.h"
#include "reports/purchases/purchase_report.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

using base::Format;

QString str(const char16_t *text) { return QString::fromUtf16(text); }

QVariant orNothing(std::optional<double> number) { return number ? QVariant(*number) : QVariant(); }

base::Column summed(base::Column column)
{
    column.summed = true;
    return column;
}

std::vector<base::Column> columnsOf(const DayReportDescription &description)
{
    std::vector<base::Column> columns{{u"日付"_s, Format::Date, 10},
                                      {u"伝票番号"_s, Format::Text, 10},
                                      {u"相手先ID"_s, Format::Number, 7},
                                      {str(description.counterpart), Format::Text, 24, 20, true},
                                      {str(description.item), Format::Text, 24}};
    if (description.hasGoods)
        columns.insert(columns.end(), {{u"規格"_s, Format::Text, 12},
                                       {u"数量"_s, Format::Quantity, 8},
                                       {u"単位"_s, Format::Text, 5},
                                       {u"単価"_s, Format::Quantity, 9}});
    columns.push_back(summed({str(description.amount), Format::Amount, 12}));
    columns.push_back({u"備考"_s, Format::Text, description.hasGoods ? 16 : 30});
    return columns;
}

QVariantList valuesOf(const DayLine &each, bool hasGoods)
{
    const book::Movement &line = each.line;
    QVariantList values{line.date, line.number, line.counterpart ? QVariant(*line.counterpart) : QVariant(),
                        each.counterpart, line.product};
    if (hasGoods)
        values << line.specification << orNothing(line.quantity) << line.unit << orNothing(line.price);
    return values << line.amount << each.remark;
}

// In the counterpart's column, where there is room for words.
base::ReportRow rowBelow(const base::Report &rows, const QString &text)
{
    constexpr qsizetype counterpart = 3;
    QVariantList values(static_cast<qsizetype>(rows.columns.size()));
    values[counterpart] = text;
    return {values, {}, base::RowKind::Subtotal};
}

void addRates(base::Report &rows, const DayReport &report)
{
    for (const DayRate &rate : report.rates) {
        base::ReportRow row = rowBelow(rows, rate.name);
        const qsizetype last = row.values.size() - 1;
        row.values[last - 1] = rate.amount;
        row.values[last] = taxInWords(rate);
        rows.rows.push_back(std::move(row));
    }
}

void addNotes(base::Report &rows, const DayReport &report)
{
    const QStringList notes = notesOn(report);
    for (const QString &note : notes)
        rows.rows.push_back(rowBelow(rows, note));
    if (report.undatedLines > 0)
        rows.rows.back().link =
            QVariant::fromValue(SlipTarget{report.firstUndated, descriptionOf(report.kind).slips});
}

} // namespace

base::Report rowsOf(const DayReport &report)
{
    const DayReportDescription &description = descriptionOf(report.kind);
    const QString name = str(description.name);
    const QString days = shownPeriod(report.period);
    base::Report rows{name, u"期間　"_s + days, name + u' ' + QString(days).replace(u'/', u'-'),
                      columnsOf(description)};
    for (std::size_t i = 0; i < report.lines.size(); ++i) {
        const book::Movement &line = report.lines[i].line;
        rows.rows.push_back({valuesOf(report.lines[i], description.hasGoods),
                             QVariant::fromValue(SlipTarget{line.slip, line.kind})});
        if (i + 1 == report.lines.size() || report.lines[i + 1].line.date != line.date)
            base::endGroup(rows, u"小計"_s);
    }
    if (!report.lines.empty())
        base::addTotals(rows, u"合計"_s);
    addRates(rows, report);
    addNotes(rows, report);
    return rows;
}

} // namespace reports
