#include "support/fresh_shop.h"
#include "ui/report_grid.h"

#include <QHeaderView>
#include <QtTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

struct Slip
{
    int key = 0;

    bool operator==(const Slip &) const = default;
};

std::vector<base::Column> columns()
{
    return {{u"日付"_s, base::Format::Date, 11},
            {u"商品名"_s, base::Format::Text, 20, 20, true},
            {u"金額"_s, base::Format::Amount, 12}};
}

// A row for each key; 0 leads nowhere.
base::Report reportOf(const std::vector<int> &keys)
{
    base::Report report;
    report.columns = columns();
    for (const int key : keys)
        report.rows.push_back({{u"2026-04-01"_s, u"伝票%1"_s.arg(key), key * 1000.0},
                               key ? QVariant::fromValue(Slip{key}) : QVariant()});
    return report;
}

} // namespace

class TestReportGrid : public QObject
{
    Q_OBJECT

private slots:
    void showsValuesAsTheirColumnsSay()
    {
        ui::ReportGrid grid;
        grid.showColumns(columns());
        base::Report report = reportOf({1});
        beginGroup(report, u"組"_s);
        grid.setReport(report);
        const QAbstractItemModel &model = *grid.model();
        QCOMPARE(grid.selectedText(), u"2026/04/01\t伝票1\t1,000"_s);
        QVERIFY(Qt::Alignment(model.index(0, 2).data(Qt::TextAlignmentRole).toInt()) & Qt::AlignRight);
        QVERIFY(Qt::Alignment(model.index(0, 1).data(Qt::TextAlignmentRole).toInt()) & Qt::AlignLeft);
        QVERIFY(!model.index(0, 1).data(Qt::FontRole).isValid());
        QVERIFY(model.index(1, 1).data(Qt::FontRole).value<QFont>().bold());
    }

    void keepsThePlace_data()
    {
        QTest::addColumn<std::vector<int>>("before");
        QTest::addColumn<int>("row");
        QTest::addColumn<std::vector<int>>("after");
        QTest::addColumn<int>("expected");
        using Keys = std::vector<int>;
        QTest::newRow("first read") << Keys{} << -1 << Keys{1, 2} << 0;
        QTest::newRow("moved") << Keys{1, 2, 3} << 2 << Keys{3, 1, 2} << 0;
        QTest::newRow("deleted") << Keys{1, 2, 3} << 1 << Keys{1, 3} << 1;
        QTest::newRow("the last one deleted") << Keys{1, 2, 3} << 2 << Keys{1, 2} << 1;
        QTest::newRow("another line of the slip") << Keys{1, 2, 2} << 2 << Keys{1, 2, 2} << 2;
        QTest::newRow("leads nowhere") << Keys{1, 0, 3} << 1 << Keys{0, 3, 1} << 1;
        QTest::newRow("nothing left") << Keys{1} << 0 << Keys{} << -1;
    }

    void keepsThePlace()
    {
        QFETCH(std::vector<int>, before);
        QFETCH(int, row);
        QFETCH(std::vector<int>, after);
        ui::ReportGrid grid;
        grid.showColumns(columns());
        grid.setReport(reportOf(before));
        grid.setCurrentIndex(grid.model()->index(row, 0));
        grid.setReport(reportOf(after));
        QTEST(grid.currentIndex().row(), "expected");
    }

    // What is printed and written goes by it too; another day's rows come in the same order.
    void sortsItsRows()
    {
        ui::ReportGrid grid;
        grid.showColumns(columns());
        grid.letSortRows();
        const auto report = [](std::initializer_list<std::pair<QString, QVariant>> rows) {
            base::Report made{.columns = columns()};
            for (const auto &[name, amount] : rows)
                made.rows.push_back({{u"2026-04-01"_s, name, amount}, name});
            return made;
        };
        const auto names = [&grid] {
            QStringList shown;
            for (const base::ReportRow &row : grid.report().rows)
                shown << row.values.at(1).toString();
            return shown.join(u' ');
        };
        const auto click = [&grid](int column) { emit grid.horizontalHeader()->sectionClicked(column); };
        const QVariant none(std::numeric_limits<double>::quiet_NaN());
        grid.setReport(
            report({{u"リンゴ"_s, 900.0}, {u"あんず"_s, 10000.0}, {u"ﾅｼ"_s, none}, {u"ガク"_s, -5.0}}));
        grid.setCurrentIndex(grid.model()->index(1, 0));
        click(2);
        QCOMPARE(names(), u"ﾅｼ ガク リンゴ あんず"_s);
        QCOMPARE(grid.currentLink(), u"あんず"_s);
        click(2);
        QCOMPARE(names(), u"あんず リンゴ ガク ﾅｼ"_s);
        click(1);
        QCOMPARE(names(), u"あんず ガク ﾅｼ リンゴ"_s);
        grid.setReport(report({{u"ワサビ"_s, 1.0}, {u"イモ"_s, 2.0}}));
        QCOMPARE(names(), u"イモ ワサビ"_s);
        click(1);
        click(1); // as they were given
        QCOMPARE(names(), u"ワサビ イモ"_s);
        QVERIFY(!grid.horizontalHeader()->isSortIndicatorShown());
        base::Report groups = report({{u"ワサビ"_s, 1.0}, {u"イモ"_s, 2.0}});
        beginGroup(groups, u"組"_s);
        grid.setReport(std::move(groups));
        click(1);
        QCOMPARE(names(), u"ワサビ イモ 組"_s);
    }

    // The widths that the clerk set outlive the rows and the screen.
    void widthsStay()
    {
        FreshShop shop;
        ui::ReportGrid grid;
        grid.setUp(shop.workspace, u"frmTest/grid"_s);
        grid.showColumns(columns());
        grid.setColumnWidth(0, 234);
        grid.clear();
        grid.setReport(reportOf({1, 2}));
        QCOMPARE(grid.columnWidth(0), 234);
        grid.saveLayout(shop.workspace);
        ui::ReportGrid another;
        another.showColumns(columns());
        another.setUp(shop.workspace, u"frmTest/grid"_s);
        QCOMPARE(another.columnWidth(0), 234);
    }

    // What it is given is moved, not copied: the rows are where they were.
    void longListsAreNotCopied()
    {
        ui::ReportGrid grid;
        grid.showColumns(columns());
        base::Report report = reportOf(std::vector<int>(100000, 7));
        const base::ReportRow *rows = report.rows.data();
        grid.setReport(std::move(report));
        QCOMPARE(static_cast<const void *>(grid.report().rows.data()), static_cast<const void *>(rows));
        QCOMPARE(grid.rowCount(), 100000);
    }
};

QTEST_MAIN(TestReportGrid)
#include "tst_report_grid.moc"
