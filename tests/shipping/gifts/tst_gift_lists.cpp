// The gift lists: who sent what, to the yen, on the screen and on paper; the gift order sheet.
#include "gift_season.h"

#include "printing/forms/form_files.h"
#include "shipping/gifts/DialogAppList1.h"
#include "shipping/gifts/DialogAppList2.h"
#include "shipping/gifts/frmKuroneko6.h"
#include "shipping/gifts/frmKuroneko7.h"
#include "shipping/gifts/gift_sheet.h"
#include "shipping/gifts/gift_sheet_print.h"
#include "slips/documents/placed_texts.h"
#include "support/fake_printers.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

const GiftListQuery spring{QDate(2026, 1, 1), QDate(2026, 4, 1)};

// Three of one shop, written in two ways, with odd yen; one of another, without amounts told.
class Spring : public GiftSeason
{
public:
    Spring()
    {
        const Party shop = person(u"髙橋商店"_s, u"100-0001"_s, u"千代田1"_s);
        const Party again = person(u"高橋　商店"_s, u"100-0001"_s, u"千代田1"_s);
        send({2026, 3, 1}, shop, 7, person(u"井上"_s, u"430-0926"_s, u"浜松市1"_s), u"みかん"_s, 3980, 880);
        send({2026, 3, 2}, person(u"青木"_s, u"1"_s, u"町1"_s), 0, person(u"原"_s, u"1"_s, u"町2"_s), u"柿"_s,
             1001, 333);
        send({2026, 3, 3}, again, 0, person(u"森"_s, u"1"_s, u"町3"_s), u"りんご"_s, 4321, 770);
        send({2026, 3, 4}, shop, 7, person(u"林"_s, u"1"_s, u"町4"_s), u"ぶどう"_s, 1, 0.0, u"お中元"_s);
        run(u"UPDATE 発送マスター SET 価格 = NULL, 送料 = NULL, 送り状番号 = '1234-5678-9012' WHERE 発送ID = 4"_s);
    }
};

QStringList rowsOf(const base::Report &report, qsizetype amounts)
{
    QStringList rows;
    for (const base::ReportRow &row : report.rows)
        rows << row.values.at(0).toString() + u' ' + row.values.at(amounts).toString() + u' ' +
                    row.values.at(amounts + 1).toString();
    return rows;
}

// All that stands on a document's pages.
QStringList textsOn(const printing::Sheets &sheets)
{
    QStringList texts;
    for (const printing::Sheet &sheet : sheets)
        texts << textsOf(sheet);
    return texts;
}

template <class Screen>
struct Desk
{
    Desk()
    {
        printing::keepPrintSystem(shop.workspace, printers);
        screen = std::make_unique<Screen>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
    }
    ui::ReportGrid &grid() { return driver->the<ui::ReportGrid>("MSFlexGrid1"); }

    /// What \a look makes of the window that \a button opens; it is closed then.
    template <class Look>
    void inNext(const char *button, const Look &look)
    {
        QTimer::singleShot(0, screen.get(), [look] {
            QWidget *opened = QApplication::activeModalWidget();
            look(*opened);
            opened->close();
        });
        driver->press(button);
    }

    Spring shop;
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    std::unique_ptr<Screen> screen;
    std::unique_ptr<ScreenDriver> driver;
};

/// Notes what it would print.
class NotedList : public frmKuroneko7
{
public:
    using frmKuroneko7::frmKuroneko7;
    QString goods;

protected:
    void print(const std::vector<Shipment> &shipments, const GiftListQuery &) override
    {
        for (const Shipment &shipment : shipments)
            goods += (goods.isEmpty() ? u""_s : u" "_s) + shipment.goods;
    }
};

} // namespace

class TestGiftLists : public ScriptedTest
{
    Q_OBJECT

private slots:
    void sumsBySenderToTheYen()
    {
        Spring shop;
        const auto shipments = listedShipments(shop.connection, spring);
        QVERIFY(shipments);
        const base::Report report = senderList(*shipments, spring);
        QCOMPARE(rowsOf(report, 4), QStringList({u"髙橋商店  "_s, u"井上 3980 880"_s, u"森 4321 770"_s,
                                                 u"林  "_s, u"小計　3 件 8301 1650"_s, u"青木  "_s,
                                                 u"原 1001 333"_s, u"小計　1 件 1001 333"_s}));
        QCOMPARE(report.totals.at(4).toDouble(), 9302);
        QCOMPARE(report.totals.at(5).toDouble(), 1983);
        QCOMPARE(report.sums.front().value, 4);
        const base::Report flat = shipmentList(*shipments, spring);
        QCOMPARE(flat.totals.at(6).toDouble(), 9302);
        QCOMPARE(flat.rows.back().values.last().toString(), u"1234-5678-9012"_s);
        // Without amounts no figure of them is left anywhere.
        const base::Report quiet = senderList(*shipments, spring, true);
        QVERIFY(!rowsOf(quiet, 4).join(u' ').contains(u"4321"_s));
        QCOMPARE(quiet.columns.size(), report.columns.size() - 2);
        QCOMPARE(quiet.sums.size(), 1);
    }

    void whatIsListed_data()
    {
        QTest::addColumn<QString>("category");
        QTest::addColumn<QString>("sender");
        QTest::addColumn<int>("count");
        QTest::newRow("all") << u""_s << u""_s << 4;
        QTest::newRow("a category") << u"お中元"_s << u""_s << 1;
        QTest::newRow("a sender, typed otherwise") << u""_s << u"高橋"_s << 3;
        QTest::newRow("both") << u"お歳暮"_s << u" 髙橋 "_s << 2;
        QTest::newRow("nobody") << u""_s << u"%"_s << 0;
    }

    void whatIsListed()
    {
        QFETCH(QString, category);
        QFETCH(QString, sender);
        QFETCH(int, count);
        Spring shop;
        const auto found = listedShipments(shop.connection, {spring.from, spring.to, category, sender});
        QVERIFY(found);
        QCOMPARE(int(found->size()), count);
        QVERIFY(!listedShipments(shop.connection, {spring.to, spring.from, category, sender}));
    }

    void pagesFollowTheirOptions()
    {
        Spring shop;
        const auto shipments = listedShipments(shop.connection, spring);
        const auto pages = [&](const GiftListLook &look) {
            return senderPages(*shipments, spring, u"2026/04/01"_s, look);
        };
        GiftListLook look;
        QCOMPARE(pages(look).size(), 1);
        const printing::Sheet plain = pages(look).front();
        QVERIFY(plain.paperWidth < plain.paperHeight && !plain.turned);
        look.offset = QPoint(567, 1134);
        const printing::Sheet moved = pages(look).front();
        QCOMPARE(qRound(moved.texts.front().x - plain.texts.front().x), 567);
        QCOMPARE(qRound(moved.lines.back().y2 - plain.lines.back().y2), 1134);
        QCOMPARE(qRound(moved.boxes.front().y - plain.boxes.front().y), 1134);
        look.paper = giftListPapers().back();
        QVERIFY(pages(look).front().turned);
        look.pageEach = true;
        const printing::Sheets each = pages(look);
        QCOMPARE(each.size(), 2);
        QVERIFY(!textsOf(each[0]).contains(u"青木"_s));
        QVERIFY(textsOf(each[1]).contains(u"青木"_s) && !textsOf(each[1]).contains(u"森"_s));
        QVERIFY(textsOn(each).contains(u"4,321"_s));
        QVERIFY(textsOn(each).contains(u"浜松市1"_s) && textsOn(each).contains(u"小計　3 件"_s));
        look.leftOut = {u"住所"_s, u"お届け先"_s}; // but what names the groups stays
        QVERIFY(!textsOn(pages(look)).contains(u"浜松市1"_s));
        QVERIFY(textsOn(pages(look)).contains(u"小計　3 件"_s) && textsOn(pages(look)).contains(u"4,321"_s));
        look.hidesAmounts = true;
        QVERIFY(!textsOn(pages(look)).contains(u"4,321"_s));
    }

    void theOrderSheetSaysWhatIsSigned()
    {
        Spring shop;
        shop.run(u"INSERT INTO 自社情報 (会社ID, 会社名1, TEL1) VALUES (1, 'かんばん堂', '026-1')"_s);
        auto shipments = listedShipments(shop.connection, {spring.from, spring.to, {}, u"高橋"_s});
        QVERIFY(shipments);
        for (int i = 0; i < 20; ++i)
            shipments->push_back(shipments->front());
        shop.settings.write(workspace::keys::stOffsetAppX, 10);
        const auto document = giftSheetDocument(shop.workspace, *shipments);
        QVERIFY(document);
        QCOMPARE(document->sheets.size(), 2);
        const printing::Sheet first = document->sheets.front();
        const QStringList texts = textsOn(document->sheets);
        for (const QString &text : {u"髙橋商店 御中"_s, u"かんばん堂"_s, u"森 様"_s, u"¥87,901"_s,
                                    u"¥107,151"_s, u"お届け先　23 件"_s, u"ご署名"_s})
            QVERIFY2(texts.contains(text), qPrintable(text));
        QVERIFY(!textsOf(first).contains(u"¥87,901"_s)); // once, on the last page
        QCOMPARE(placeOf(*itemWith(first, u"贈答品承り票"_s)), QPointF(25, 13));
        for (const printing::Sheet &sheet : document->sheets)
            QCOMPARE(misplaced(sheet, {10, 5, 287, 200}).join(u'\n'), QString());
    }

    void theScreenListsWhatItsBoxesSay()
    {
        Desk<frmKuroneko6> desk;
        ScreenDriver &driver = *desk.driver;
        QVERIFY(!driver.the("Command2").isEnabled());
        driver.press("cmdList");
        QCOMPARE(desk.grid().rowCount(), 8);
        QCOMPARE(driver.box("txtSum2").text(), u"9,302"_s);
        QCOMPARE(driver.cursor(), u"MSFlexGrid1"_s);
        driver.choose("dbcKubun", u"お中元"_s);
        QVERIFY(driver.the<QLabel>("lblMessage").text().startsWith(u"条件が変わりました"_s));
        driver.type("txtKey1", u"青木"_s);
        ui::prompts::expectInform(u"該当するデータは見つかりませんでした。"_s);
        driver.leave("txtKey1"); // Enter lists
        QCOMPARE(desk.grid().rowCount(), 0);
        QVERIFY(!driver.the("Command4").isEnabled());
        driver.the<QDateEdit>("DTPicker1").setDate({2027, 1, 1});
        ui::prompts::expectInform(
            u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s);
        driver.press("cmdList");
    }

    // Below the last line of a sender too, where his sums stand.
    void theOrderSheetIsTheSendersOfTheRow()
    {
        Desk<frmKuroneko6> desk;
        desk.driver->press("cmdList");
        for (const auto &[row, name] : std::initializer_list<std::pair<int, QString>>{
                 {0, u"髙橋商店"_s}, {4, u"髙橋商店"_s}, {5, u"青木"_s}, {7, u"青木"_s}}) {
            desk.grid().selectRow(row);
            QString title;
            desk.inNext("Command4", [&title](QWidget &preview) { title = preview.windowTitle(); });
            QVERIFY2(title.contains(u"贈答品承り票 "_s + name), qPrintable(title));
        }
    }

    void whatTheDialogsKeep()
    {
        Desk<frmKuroneko6> desk;
        desk.driver->press("cmdList");
        desk.inNext("Command2", [](QWidget &dialog) {
            QCOMPARE(dialog.objectName(), u"DialogAppList1"_s);
            ScreenDriver hands(&dialog);
            QCOMPARE(hands.list("Combo1").currentText(), u"A4無地"_s);
            hands.choose("Combo1", u"A4無地 横"_s);
            hands.choose("Combo2", u"DOT"_s);
            hands.press("Check1");
            hands.press("Check4");
            hands.press("chkColumn10"); // 住所
            hands.type("Text1", u"3"_s);
            hands.type("Text3", u"-2"_s);
        });
        namespace keys = workspace::keys;
        const workspace::Settings &kept = desk.shop.settings;
        QCOMPARE(kept.text(keys::appList2Combo1) + kept.text(keys::appList1) + kept.text(keys::appList4),
                 u"A4無地 横11"_s);
        QCOMPARE(kept.text(keys::motoPrinterName), u"DOT"_s);
        QCOMPARE(kept.text(keys::stOffsetAppX) + kept.text(keys::stOffsetAppY), u"3-2"_s);
        QCOMPARE(kept.text(keys::giftColumns), QString(9, u'1') + u'0' + QString(12, u'1'));
        // The list of shipments has neither senders' pages nor offsets, and leaves theirs alone.
        DialogAppList2 other(desk.shop.workspace, {}, spring);
        ScreenDriver hands(&other);
        hands.show();
        QVERIFY(!hands.the("Check4").isVisible() && !hands.the("frameOffset").isVisible());
        QVERIFY(hands.the<QCheckBox>("Check1").isChecked());
        hands.press("Check1");
        hands.press("chkColumn2");
        other.close();
        QCOMPARE(kept.text(keys::giftColumns), QString(9, u'1') + u"0110"_s + QString(9, u'1'));
        QCOMPARE(kept.text(keys::appList1) + kept.text(keys::appList4) + kept.text(keys::stOffsetAppX),
                 u"013"_s);
    }

    void theListOfShipmentsPrintsInItsOrder()
    {
        Desk<NotedList> desk;
        desk.driver->press("cmdList");
        QVERIFY(!desk.driver->the("Command4").isVisible());
        emit desk.grid().sortWanted(4); // 品名
        desk.driver->press("Command2");
        QCOMPARE(desk.screen->goods, u"ぶどう みかん りんご 柿"_s);
    }
};

QTEST_MAIN(TestGiftLists)
#include "tst_gift_lists.moc"
