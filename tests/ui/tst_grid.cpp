#include "db/recordset.h"
#include "support/fresh_shop.h"
#include "ui/grid.h"
#include "ui/slip_grid_model.h"

#include <QHeaderView>
#include <QMenu>
#include <QPaintEvent>
#include <QScrollBar>
#include <QStandardItemModel>
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

// Notes what of it is drawn.
class DrawnGrid : public ui::Grid
{
public:
    QRegion drawn;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        drawn += event->region();
        ui::Grid::paintEvent(event);
    }
};

} // namespace

class TestGrid : public QObject
{
    Q_OBJECT

private slots:
    // Though the scroll bars come and go while the columns are shown one by one.
    void columnsOfAWideGridHaveTheirOwnWidthsWhereNoRoomIsLeft()
    {
        FreshShop shop;
        for (int id = 1; id <= 40; ++id)
            shop.run(
                u"INSERT INTO 納品先 (納品先ID, 納品先名1, 住所1) VALUES (%1, '山田', '長野')"_s.arg(id));
        db::Recordset rows(shop.connection);
        ui::Grid grid;
        QList<ui::GridColumn> columns;
        for (const auto *name : {u"納品先ID", u"コード", u"納品先名1", u"納品先名2", u"フリガナ", u"区分ID",
                                 u"郵便番号", u"住所1", u"住所2", u"TEL1"})
            columns.push_back({QString::fromUtf16(name), 22});
        grid.setColumns(columns);
        grid.bind(rows, {});
        grid.setUp(shop.workspace, u"frmX/grid"_s);
        grid.resize(1240, 300);
        grid.show();
        const int width = 24 * grid.fontMetrics().horizontalAdvance(u'0');
        for (int opening = 0; opening < 2; ++opening) {
            QVERIFY(rows.open({.table = u"納品先"_s, .order = {u"納品先ID"_s}}));
            for (const ui::GridColumn &column : std::as_const(columns))
                QCOMPARE(grid.columnWidth(rows.columnOf(column.column)), width);
        }
    }

    void sortsByAClickOnTheHeading()
    {
        FreshShop shop;
        shop.run(
            u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (1, 'リンゴ', '1'), (2, 'あんず', '2'), "
            "(3, 'ｲﾁｺﾞ', '1'), (4, NULL, '2')"_s);
        db::Recordset rows(shop.connection);
        ui::Grid grid;
        grid.letSort();
        grid.bind(rows, {});
        QVERIFY(rows.open({.table = u"社員"_s, .order = {u"社員ID DESC"_s}}));
        grid.show();
        const auto clicked = [&](const QString &column) {
            QHeaderView *header = grid.horizontalHeader();
            const int section = rows.columnOf(column);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                              QPoint(header->sectionViewportPosition(section) + 9, header->height() / 2));
            QString keys;
            for (int row = 0; row < rows.count(); ++row)
                keys += QString::number(rows.keyAt(row));
            return keys;
        };
        QCOMPARE(clicked(u"社員名"_s), u"4231"_s);
        QCOMPARE(rows.currentKey(), 4);
        QCOMPARE(grid.horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
        QCOMPARE(clicked(u"社員名"_s), u"1324"_s);
        QCOMPARE(clicked(u"社員名"_s), u"4321"_s); // as it was opened
        QVERIFY(!grid.horizontalHeader()->isSortIndicatorShown());
        QCOMPARE(clicked(u"内線番号"_s), u"3142"_s); // among equals too
        // What is typed is saved first; where it cannot be, nothing moves.
        rows.setSaver([] { return base::Error{u"x"_s}; });
        rows.setValue(u"社員名"_s, u"別"_s);
        QCOMPARE(clicked(u"社員名"_s), u"3142"_s);
        QVERIFY(rows.isDirty());
        rows.setSaver({});
        QCOMPARE(clicked(u"社員ID"_s), u"1234"_s);
        QCOMPARE(shop.value(u"SELECT 社員名 FROM 社員 WHERE 社員ID = 3"_s).toString(), u"別"_s);
        QVERIFY(rows.open({.table = u"社員"_s}));
        QVERIFY(!grid.horizontalHeader()->isSortIndicatorShown());
    }

    void showsTheColumnsThatAreChosen()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (1, '木村')"_s);
        db::Recordset rows(shop.connection);
        {
            ui::Grid grid;
            grid.letChooseColumns();
            grid.setUp(shop.workspace, u"frmTest/grid"_s);
            grid.setColumns({{u"社員ID"_s, 8}, {u"社員名"_s, 20, u"名前"_s}, {u"内線番号"_s, 8}});
            grid.bind(rows, {});
            QVERIFY(rows.open({.table = u"社員"_s}));
            const auto toggle = [&](int place) {
                const std::unique_ptr<QMenu> menu(grid.columnMenu());
                menu->actions().constLast()->menu()->actions().at(place)->trigger();
            };
            grid.setColumnWidth(1, 123);
            toggle(0);
            toggle(2);
            QCOMPARE(shownColumns(grid), QStringList{u"名前"_s});
            QCOMPARE(grid.columnWidth(1), 123);
            toggle(1); // the last one stays
            QCOMPARE(shownColumns(grid), QStringList{u"名前"_s});
            toggle(2);
            grid.saveLayout(shop.workspace);
        }
        ui::Grid grid;
        grid.letChooseColumns();
        grid.setColumns({{u"社員ID"_s, 8}, {u"社員名"_s, 20, u"名前"_s}, {u"内線番号"_s, 8}});
        grid.bind(rows, {});
        grid.setUp(shop.workspace, u"frmTest/grid"_s);
        QCOMPARE(shownColumns(grid), QStringList({u"名前"_s, u"内線番号"_s}));
        QCOMPARE(grid.columnWidth(1), 123);
    }

    // By the keys, too, and of rows that are no record set's.
    void choosesColumnsOfAnyModel()
    {
        FreshShop shop;
        QStandardItemModel model(2, 4);
        model.setHorizontalHeaderLabels({u"対象"_s, u"ID"_s, u"名前"_s, u"内線"_s});
        const auto open = [&](ui::Grid &grid) {
            grid.setModel(&model);
            grid.setColumnHidden(3, true); // the screen's own doing
            grid.letSort();
            grid.letChooseColumns(1);
            grid.setUp(shop.workspace, u"frmTest/any"_s);
        };
        {
            ui::Grid grid;
            open(grid);
            grid.setCurrentIndex(model.index(0, 2));
            QList<int> sorted;
            connect(&grid, &ui::Grid::sortWanted, this, [&](int column) { sorted << column; });
            const std::unique_ptr<QMenu> menu(grid.columnMenu());
            menu->actions().constFirst()->trigger();
            QCOMPARE(sorted, QList<int>{2});
            const auto columns = menu->actions().constLast()->menu()->actions();
            QCOMPARE(columns.size(), 2);
            columns.at(0)->trigger();
            columns.at(1)->trigger(); // the last one stays
            QCOMPARE(shownColumns(grid), QStringList({u"対象"_s, u"名前"_s}));
            grid.saveLayout(shop.workspace);
        }
        ui::Grid grid;
        open(grid);
        QCOMPARE(shownColumns(grid), QStringList({u"対象"_s, u"名前"_s}));
    }

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

    // How values look is the grid's matter: the record set goes on holding what the file holds.
    void columnsShowHeadingsFormatsAndNames()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 相手先ID, 社員ID) VALUES (1, '2026-04-01', 7, 12), "
                 "(2, NULL, NULL, 13)"_s);
        db::Recordset rows(shop.connection);
        ui::Grid grid;
        grid.setColumns({{u"日付"_s, 10, {}, base::Format::Date},
                         {u"相手先ID"_s, 10},
                         {u"社員ID"_s, 10, u"担当者"_s, base::Format::Text, ui::namesFrom({{12, u"林"_s}})}});
        grid.bind(rows, {});
        QVERIFY(rows.open({.table = u"入出庫マスター"_s}));
        QCOMPARE(shownColumns(grid), (QStringList{u"日付"_s, u"相手先ID"_s, u"担当者"_s}));
        QCOMPARE(grid.selectedText(), u"2026/04/01\t7\t林"_s);
        QCOMPARE(rows.text(u"社員ID"_s), u"12"_s);
        const auto alignment = [&](const QString &column) {
            return grid.model()->index(0, rows.columnOf(column)).data(Qt::TextAlignmentRole).toInt();
        };
        QCOMPARE(alignment(u"相手先ID"_s), int(Qt::AlignRight | Qt::AlignVCenter));
        QCOMPARE(alignment(u"社員ID"_s), int(Qt::AlignLeft | Qt::AlignVCenter));
        // A number that has no name, and nothing at all.
        QVERIFY(rows.moveTo(1));
        QCOMPARE(grid.selectedText(), u"\t\t13"_s);
        grid.setNames(u"社員ID"_s, ui::namesFrom({{13, u"森"_s}}));
        QCOMPARE(grid.selectedText(), u"\t\t森"_s);
        // An edit shows before it is saved, and the look outlives the statement.
        rows.setValue(u"社員ID"_s, 12);
        QCOMPARE(grid.selectedText(), u"\t\t12"_s);
        QVERIFY(rows.open({.table = u"入出庫マスター"_s, .where = u"(ID = 2)"_s}));
        QCOMPARE(grid.selectedText(), u"\t\t森"_s);
        QCOMPARE(shownColumns(grid).constLast(), u"担当者"_s);
    }

    // The other rows need not be drawn again for a line that is added, unless it moves them.
    void anAppendedRowIsDrawnAlone()
    {
        ui::SlipGridModel lines({{u"商品名"_s}}, nullptr);
        DrawnGrid grid;
        grid.setModel(&lines);
        grid.resize(300, 200);
        grid.show();
        QVERIFY(QTest::qWaitForWindowExposed(&grid));
        const auto append = [&] {
            QCoreApplication::processEvents();
            grid.drawn = {};
            grid.showAppended([&] { lines.append({u"りんご"_s}); });
            QTRY_VERIFY(!grid.drawn.isEmpty());
        };
        append();
        append();
        const QRect strip(0, grid.rowViewportPosition(1), grid.viewport()->width(), grid.rowHeight(1));
        QCOMPARE(grid.drawn.boundingRect(), strip);
        while (grid.rowViewportPosition(lines.rowCount() - 1) + 2 * grid.rowHeight(0) <
               grid.viewport()->height())
            append();
        for (int i = 0; i < 3; ++i) {
            append();
            const int last = lines.rowCount() - 1;
            const QRect place(0, grid.rowViewportPosition(last), 1, grid.rowHeight(last));
            QVERIFY(grid.viewport()->rect().contains(place));
            QVERIFY(grid.drawn.boundingRect().contains(place));
        }
        QVERIFY(grid.verticalScrollBar()->value() > 0);
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

    // Ctrl+End before the rows above are known; as they come in, the rows that are seen stay where they are.
    void rowsComeInAboveTheShownOnes()
    {
        FreshShop shop;
        fill(shop, 600);
        db::Recordset rows(shop.connection, nullptr, slow);
        ui::Grid grid;
        grid.resize(400, 300);
        grid.bind(rows, {});
        QVERIFY(rows.open({.table = u"社員"_s}));
        grid.show();
        QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(rows.currentKey(), 600);
        QVERIFY(!rows.isComplete());
        const int seen = grid.rowAt(grid.viewport()->height() / 2);
        QVERIFY(seen >= 0);
        const qint64 inTheMiddle = rows.keyAt(seen);
        QTRY_VERIFY(rows.isComplete());
        QCOMPARE(rows.keyAt(grid.rowAt(grid.viewport()->height() / 2)), inTheMiddle);
        QCOMPARE(grid.currentIndex().row(), 599);
        QCOMPARE(grid.selectedText().section(u'\t', 0, 0), u"600"_s);
        QTest::keyClick(&grid, Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(rows.currentKey(), 1);
    }

    // A key pressed early goes as far as it would later.
    void earlyKeysGoAsFarAsLateOnes()
    {
        FreshShop shop;
        fill(shop, 600);
        qint64 early = 0;
        for (const db::Pace &pace : {slow, db::Pace{1000, 1000, std::chrono::minutes(1)}}) {
            db::Recordset rows(shop.connection, nullptr, pace);
            ui::Grid grid;
            grid.resize(400, 600);
            grid.bind(rows, {});
            QVERIFY(rows.open({.table = u"社員"_s}));
            QVERIFY(rows.moveToKey(300));
            grid.show();
            for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_Down, Qt::Key_PageUp})
                QTest::keyClick(&grid, key);
            if (early == 0) {
                QVERIFY(!rows.isComplete());
                early = rows.currentKey();
            } else {
                QVERIFY(rows.isComplete());
                QCOMPARE(early, rows.currentKey());
            }
        }
    }

    // What stands on the screen is what a drawing of everything would show.
    void appendedRowsAreAllOnTheScreen()
    {
        ui::SlipGridModel lines({{u"商品名"_s}, {u"数量"_s}}, nullptr);
        ui::Grid grid;
        grid.setModel(&lines);
        grid.resize(400, 205); // a part of a row below the whole ones
        grid.show();
        QVERIFY(QTest::qWaitForWindowExposed(&grid));
        for (int line = 1; line <= 25; ++line) {
            grid.showAppended([&] {
                for (int part = 0; part <= line % 2; ++part)
                    lines.append({u"品%1"_s.arg(line), part});
            });
            QTest::qWait(1);
            const QImage screen = grid.screen()->grabWindow(grid.winId()).toImage();
            QImage whole(screen.size(), screen.format());
            grid.render(&whole);
            QVERIFY2(screen == whole, qPrintable(u"line %1"_s.arg(line)));
        }
    }

    void namesGiveWayToAmounts()
    {
        ui::SlipGridModel lines({{u"商品名"_s}, {u"規格"_s}, {u"金額"_s}}, nullptr);
        ui::Grid grid;
        grid.setModel(&lines);
        grid.resize(500, 200);
        for (const auto &[column, width] : {std::pair(0, 200), std::pair(1, 150), std::pair(2, 100)})
            grid.setColumnWidth(column, width);
        grid.letGiveWay({{0, 120}, {1, 100}});
        grid.show();
        const auto widths = [&] {
            return QList{grid.columnWidth(0), grid.columnWidth(1), grid.columnWidth(2)};
        };
        const auto narrowTo = [&](int room) {
            grid.resize(room + grid.width() - grid.viewport()->width(), 200);
            QTest::qWait(1);
        };
        narrowTo(450);
        QCOMPARE(widths(), (QList{200, 150, 100}));
        narrowTo(400);
        QCOMPARE(widths(), (QList{150, 150, 100}));
        narrowTo(350);
        QCOMPARE(widths(), (QList{120, 130, 100}));
        narrowTo(300);
        QCOMPARE(widths(), (QList{120, 100, 100})); // and no further
        narrowTo(420);
        QCOMPARE(widths(), (QList{170, 150, 100}));
        grid.setColumnWidth(0, 180); // the clerk's own wish, from now on
        narrowTo(450);
        QCOMPARE(widths(), (QList{180, 150, 100}));
    }

private:
    static constexpr db::Pace slow{10, 20, std::chrono::minutes(1)};

    static void fill(FreshShop &shop, int count)
    {
        shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
                 "INSERT INTO 社員 (社員ID, 社員名) SELECT i, '社員' || i FROM n"_s,
                 {count});
    }
};

QTEST_MAIN(TestGrid)
#include "tst_grid.moc"
