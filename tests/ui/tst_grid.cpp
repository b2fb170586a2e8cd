#include "db/recordset.h"
#include "support/fresh_shop.h"
#include "ui/grid.h"

#include <QHeaderView>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

QStringList shownColumns(const ui::Grid &grid)
{
    QStringList names;
    for (int place = 0; place < grid.model()->columnCount(); ++place) {
        const int column = grid.horizontalHeader()->logicalIndex(place);
        if (!grid.isColumnHidden(column))
            names << grid.model()->headerData(column, Qt::Horizontal).toString();
    }
    return names;
}

} // namespace

class TestGrid : public QObject
{
    Q_OBJECT

private slots:
    void columnsOutliveTheStatement()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (1, '木村', '11'), (2, '林', '12')"_s);
        db::Recordset rows(shop.connection);
        ui::Grid grid;
        grid.setUp(shop.workspace, u"frmTest/grid"_s);
        grid.setColumns({{u"内線番号"_s, 8}, {u"社員名"_s, 20}});
        grid.bind(rows, {});
        const QStringList shown{u"内線番号"_s, u"社員名"_s};

        QVERIFY(rows.open({.table = u"社員"_s}));
        QCOMPARE(shownColumns(grid), shown);
        QCOMPARE(grid.selectedText(), u"11\t木村"_s);
        grid.setColumnWidth(1, 321);

        QVERIFY(rows.open({.table = u"社員"_s, .where = u"(社員ID = ?)"_s, .values = {2}}));
        QCOMPARE(shownColumns(grid), shown);
        QCOMPARE(grid.columnWidth(1), 321);

        grid.saveLayout(shop.workspace);
        ui::Grid another;
        another.setUp(shop.workspace, u"frmTest/grid"_s);
        another.setColumns({{u"内線番号"_s, 8}, {u"社員名"_s, 20}});
        another.bind(rows, {});
        QCOMPARE(shownColumns(another), shown);
        QCOMPARE(another.columnWidth(1), 321);
    }

    void arrowKeysMoveBesideAHiddenColumn()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (1, '木村', '11'), (2, '林', '12')"_s);
        db::Recordset rows(shop.connection);
        QVERIFY(rows.open({.table = u"社員"_s, .where = u"社員ID = 0"_s}));
        ui::Grid grid;
        grid.bind(rows, {});
        grid.setColumnHidden(0, true);
        QVERIFY(rows.open({.columns = u"社員ID, 社員名, 内線番号"_s, .table = u"社員"_s}));
        QTest::keyClick(&grid, Qt::Key_Down);
        QCOMPARE(rows.currentRow(), 1);
        // Ctrl on the shown row does not take its mark off.
        QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(grid.selectedText(), u"林\t12"_s);
    }
};

QTEST_MAIN(TestGrid)
#include "tst_grid.moc"
