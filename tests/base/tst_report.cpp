#include "base/report.h"
#include "text/format_value.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using base::Report;
using base::RowKind;

namespace
{

// Two columns with sums, one of numbers that nobody adds up.
Report emptyReport()
{
    base::Column quantity{u"数量"_s, base::Format::Quantity};
    base::Column amount{u"金額"_s, base::Format::Amount};
    quantity.summed = amount.summed = true;
    Report report;
    report.columns = {{u"コード"_s},
                      {u"商品名"_s, base::Format::Text, 20, 40, true},
                      quantity,
                      {u"単価"_s, base::Format::Quantity},
                      amount};
    return report;
}

void add(Report &report, const QString &product, const QVariant &quantity, const QVariant &amount)
{
    report.rows.push_back({{u"A1"_s, product, quantity, 120, amount}});
}

QString shown(const Report &report, const QVariantList &values)
{
    QStringList cells;
    for (std::size_t i = 0; i < report.columns.size(); ++i)
        cells << text::formatValue(report.columns[i].format, values.at(qsizetype(i)));
    return cells.join(u'|');
}

} // namespace

class TestReport : public QObject
{
    Q_OBJECT

private slots:
    void groupsAddUp()
    {
        Report report = emptyReport();
        add(report, u"売上前"_s, 1, 5);
        beginGroup(report, u"東京商店"_s);
        for (int i = 0; i < 10; ++i)
            add(report, u"りんご"_s, 0.1, 1234567.1);
        endGroup(report, u"東京商店 計"_s);
        beginGroup(report, u"長野商店"_s);
        endGroup(report, u"長野商店 計"_s);
        beginGroup(report, u"返品"_s);
        add(report, u"みかん"_s, QVariant(), -345);
        endGroup(report, u"返品 計"_s);
        addTotals(report, u"合計"_s);

        QStringList others;
        for (const base::ReportRow &row : report.rows) {
            if (row.kind != RowKind::Plain)
                others << (row.kind == RowKind::Heading ? u"# "_s : u"= "_s) + shown(report, row.values);
        }
        QCOMPARE(others.join(u'\n'), u"# |東京商店|||\n= |東京商店 計|1||12,345,671\n"
                                     "# |長野商店|||\n= |長野商店 計|0||0\n# |返品|||\n= |返品 計|0||-345"_s);
        // Subtotals are no rows to add up once more; ten tenths are one.
        QCOMPARE(shown(report, report.totals), u"|合計|2||12,345,331"_s);
    }

    void groupsWithoutHeadings()
    {
        Report report = emptyReport();
        add(report, u"一"_s, 1, 10);
        endGroup(report, u"小計"_s);
        add(report, u"二"_s, 2, 20);
        endGroup(report, u"小計"_s);
        QCOMPARE(shown(report, report.rows[1].values), u"|小計|1||10"_s);
        QCOMPARE(shown(report, report.rows[3].values), u"|小計|2||20"_s);
    }

    void nothingAddsUpToNothing()
    {
        Report report = emptyReport();
        addTotals(report, u"合計"_s);
        QCOMPARE(shown(report, report.totals), u"|合計|0||0"_s);
        Report without;
        addTotals(without, u"合計"_s);
        QVERIFY(without.totals.isEmpty());
    }

    // A wrong sum is worse than none.
    void whatIsNoNumberLeavesNoSum_data()
    {
        QTest::addColumn<QVariant>("amount");
        QTest::newRow("text") << QVariant(u"三千"_s);
        QTest::newRow("text that reads as a number") << QVariant(u"3000"_s);
        QTest::newRow("not a number") << QVariant(std::nan(""));
        QTest::newRow("beyond counting") << QVariant(1e12);
    }

    void whatIsNoNumberLeavesNoSum()
    {
        QFETCH(QVariant, amount);
        Report report = emptyReport();
        beginGroup(report, u"壊れた伝票"_s);
        add(report, u"りんご"_s, 1, amount);
        endGroup(report, u"計"_s);
        beginGroup(report, u"正しい伝票"_s);
        add(report, u"りんご"_s, 2, 5);
        endGroup(report, u"計"_s);
        addTotals(report, u"合計"_s);
        QCOMPARE(shown(report, report.rows[2].values), u"|計|1||計算不能"_s);
        QCOMPARE(shown(report, report.rows[5].values), u"|計|2||5"_s);
        QCOMPARE(shown(report, report.totals), u"|合計|3||計算不能"_s);
    }
};

QTEST_GUILESS_MAIN(TestReport)
#include "tst_report.moc"
