#include "printing/frmPreview.h"
#include "slips/frmOut.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

// A shop with three customers, one of each tax class, and the sales screen open.
struct Desk
{
    explicit Desk(bool automaticNumbers = true, double taxRate = 5)
    {
        shop.workspace.panel.employeeId = 1;
        shop.workspace.panel.automaticNumbers = automaticNumbers;
        shop.workspace.panel.taxRate = taxRate;
        shop.run(u"INSERT INTO 納品商品 VALUES (1, 'ふじりんご'), (2, 'ラ・フランス')"_s);
        shop.run(u"INSERT INTO 規格 VALUES (1, '５ｋｇ')"_s);
        shop.run(u"INSERT INTO 単位 VALUES (1, '箱')"_s);
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, 更新日, 消費税区分) VALUES "
                 "(5, '外税商店', '外税商店 kyaku0', '2020-01-03', 0), "
                 "(6, '請求商店', '請求商店 kyaku1', '2020-01-02', 1), "
                 "(7, '内税商店', '内税商店 kyaku2', '2020-01-01', 2), "
                 "(8, '空欄商店', '空欄商店 kyaku3', '2019-01-01', NULL)"_s);
        shop.run(u"INSERT INTO 登録区分 VALUES (1, '一般')"_s);
        screen = std::make_unique<slips::frmOut>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
    }

    template <class T>
    T *get(const char *name)
    {
        return &driver->the<T>(name);
    }
    QLineEdit *box(const char *name) { return &driver->box(name); }
    QString text(const char *name) { return box(name)->text(); }
    bool hasFocus(const char *name) { return get<QWidget>(name)->hasFocus(); }
    void press(const char *name) { driver->press(name); }

    // Types as an input method does, full-width characters included, then Enter.
    void type(const QString &text)
    {
        QInputMethodEvent typed;
        typed.setCommitString(text);
        QApplication::sendEvent(screen->focusWidget(), &typed);
        QTest::qWait(20); // the list of matches becomes the active window
        QWidget *matches = QApplication::activePopupWidget();
        QTest::keyClick(matches ? matches : screen->focusWidget(), Qt::Key_Return);
        QTest::qWait(20);
    }

    void choose(int taxClass)
    {
        box("txtKey1")->setText(u"kyaku%1"_s.arg(taxClass));
        press("Command1");
    }

    void open(int taxClass)
    {
        choose(taxClass);
        press("cmdMasterUpdate");
    }

    void line(const QString &quantity, const QString &price, const QString &product = u"ふじりんご"_s)
    {
        get<QComboBox>("dbcShohin")->setEditText(product);
        box("txtCnt")->setText(quantity);
        box("txtTanka")->setText(price);
        press("cmdSubAdd");
    }

    QStringList lines()
    {
        return shop.rows(u"SELECT ID, 商品名, 数量, 単価, 金額 FROM 入出庫サブ ORDER BY rowid"_s);
    }
    int headers() { return shop.value(u"SELECT COUNT(*) FROM 入出庫マスター"_s).toInt(); }

    // The controls of the life table that can be used, in its order.
    QString usable()
    {
        QStringList names;
        for (const slips::ControlLife &life : slips::controlLives) {
            const QString name = QString::fromUtf16(life.control);
            if (screen->findChild<QWidget *>(name)->isEnabled())
                names << name;
        }
        return names.join(u' ');
    }

    FreshShop shop;
    std::unique_ptr<slips::frmOut> screen;
    std::unique_ptr<ScreenDriver> driver;
};

const QString typedLineQuestion = u"入力途中の明細は、まだ伝票に入っていません。入れずに進みますか。"_s;
const QString headerOnly = u"Frame2"_s;
const QString saved = u"Frame1 cmdSubAdd cmdSubCancel"_s;
const QString withLines = u"Frame1 cmdSubAdd cmdSubCancel cmdNext cmdMasterCancel Command3"_s;

} // namespace

class TestFrmOut : public ScriptedTest
{
    Q_OBJECT

private slots:
    void lifeOfASlip();
    void worksByKeyboardAlone();
    void enterTakesTheMarkedName();
    void taxOfClassAndBox_data();
    void taxOfClassAndBox();
    void rateIsReadAgainAtTheEnd();
    void searchTellsWhatIsMissing();
    void newCustomerIsChosen();
    void headerNeedsCustomerAndEmployee();
    void earlyDateIsRefusedNotAltered();
    void lineNeedsProductQuantityAndPrice();
    void impossibleNumbersAreRefused_data();
    void impossibleNumbersAreRefused();
    void manualNumbers();
    void leavingTheNumberChecksIt();
    void lastLineIsRemoved();
    void cancellingDeletesTheSlip();
    void printingShowsTheNote();
    void previousLinesAreShown();
    void typedLineIsNotDroppedUnasked();
    void slipDeletedElsewhereIsLeft_data();
    void slipDeletedElsewhereIsLeft();
    void linesOfOthersCount();
    void closingAsksForTheTaxLine_data();
    void closingAsksForTheTaxLine();
    void refusedWritesLeaveTheScreenAsItWas();
};

void TestFrmOut::lifeOfASlip()
{
    Desk desk;
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.text("txtDenNo"), u"O"_s);
    QVERIFY(desk.box("txtDenNo")->isReadOnly());
    QCOMPARE(desk.get<QDateEdit>("DTPicker1")->date(), QDate(2026, 4, 1));

    desk.choose(0);
    QCOMPARE(desk.text("txtNouhinsaki1"), u"外税商店"_s);
    QCOMPARE(desk.text("Text1"), u"5"_s);
    QCOMPARE(desk.text("txtTaxK"), u"0"_s);
    desk.press("cmdMasterUpdate");
    QCOMPARE(desk.usable(), saved);
    QCOMPARE(desk.text("txtDenNo"), u"O1"_s);
    QVERIFY(desk.hasFocus("dbcShohin"));
    QCOMPARE(desk.shop.rows(u"SELECT * FROM 入出庫マスター"_s), QStringList{u"1|2026-04-01|O1|5|1|5|-"_s});
    QCOMPARE(desk.shop.value(u"SELECT 更新日 FROM 納品先 WHERE 納品先ID = 5"_s).toString(), u"2026-04-01"_s);

    desk.line(u"２．５"_s, u"1,01"_s);
    QCOMPARE(desk.usable(), withLines);
    QCOMPARE(desk.lines(), QStringList{u"1|ふじりんご|2.5|101|252"_s});
    QCOMPARE(desk.text("Text3"), u"OFF"_s);
    QCOMPARE(desk.text("txtTotal"), u"252"_s);
    QCOMPARE(desk.text("txtCnt"), QString());
    desk.line(u"1"_s, u"1747"_s);
    QCOMPARE(desk.text("txtTotal"), u"1,999"_s);
    QCOMPARE(desk.text("Text2"), u"99"_s);

    desk.press("cmdNext");
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.lines().last(), u"1|消費税|-|-|99"_s);
    QCOMPARE(desk.text("txtDenNo"), u"O"_s);
    QCOMPARE(desk.text("Text1"), QString());
    QCOMPARE(desk.text("txtTotal"), QString());
    QCOMPARE(desk.get<QTableView>("dgdSub")->model()->rowCount(), 0);
    desk.open(1);
    QCOMPARE(desk.text("txtDenNo"), u"O2"_s);
}

void TestFrmOut::worksByKeyboardAlone()
{
    Desk desk;
    QVERIFY(desk.hasFocus("txtKey1"));
    // 次の伝票 is switched off as yet; its letter is not typed.
    QKeyEvent command(QEvent::KeyPress, Qt::Key_N, Qt::AltModifier, u"n"_s);
    QApplication::sendEvent(desk.screen->focusWidget(), &command);
    QCOMPARE(desk.text("txtKey1"), QString());
    desk.type(u"ＫＹＡＫＵ０"_s);
    QVERIFY(desk.hasFocus("DTPicker1"));
    desk.type({});
    desk.type({});
    for (const QString &quantity : {u"１０"_s, u"3"_s}) {
        QVERIFY(desk.hasFocus("dbcShohin"));
        for (const QString &text : {u"ふじりんご"_s, u"５ｋｇ"_s, quantity, u"箱"_s, u"1,200"_s, QString()})
            desk.type(text);
    }
    QVERIFY(desk.hasFocus("dbcShohin"));
    QCOMPARE(
        desk.shop.rows(u"SELECT * FROM 入出庫サブ"_s),
        QStringList({u"1|ふじりんご|５ｋｇ|10|箱|1200|12000"_s, u"1|ふじりんご|５ｋｇ|3|箱|1200|3600"_s}));
    QTest::keyClick(desk.screen.get(), Qt::Key_N, Qt::AltModifier);
    QTRY_COMPARE(desk.usable(), headerOnly);
    QVERIFY(desk.hasFocus("txtKey1"));
}

void TestFrmOut::enterTakesTheMarkedName()
{
    Desk desk;
    desk.open(0);
    auto *product = desk.get<QComboBox>("dbcShohin");
    QInputMethodEvent typed;
    typed.setCommitString(u"フラ"_s);
    QApplication::sendEvent(product, &typed);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::qWait(20);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    QTRY_VERIFY(desk.hasFocus("dbcKikaku"));
    QCOMPARE(product->currentText(), u"ラ・フランス"_s);
}

void TestFrmOut::taxOfClassAndBox_data()
{
    QTest::addColumn<int>("taxClass"); // 3: the customer has none
    QTest::addColumn<bool>("toggle");  // the clerk changes 内税
    QTest::addColumn<bool>("ticked");  // when the slip opens
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("taxLine");
    QTest::newRow("on delivery") << 0 << false << false << u"525"_s << true;
    QTest::newRow("on delivery, ticked by hand") << 0 << true << false << u"500"_s << false;
    QTest::newRow("on bill") << 1 << false << false << QString() << false;
    QTest::newRow("included") << 2 << false << true << u"500"_s << false;
    QTest::newRow("included, made exclusive") << 2 << true << true << QString() << true;
    QTest::newRow("class left empty") << 3 << false << false << u"525"_s << true;
}

void TestFrmOut::taxOfClassAndBox()
{
    QFETCH(int, taxClass);
    QFETCH(bool, toggle);
    QFETCH(bool, ticked);
    QFETCH(QString, shown);
    QFETCH(bool, taxLine);
    Desk desk;
    desk.open(taxClass);
    QCOMPARE(desk.text("txtTaxK"), taxClass == 3 ? u"0"_s : QString::number(taxClass));
    auto *inclusive = desk.get<QCheckBox>("Check1");
    QCOMPARE(inclusive->isChecked(), ticked);
    desk.line(u"1"_s, u"10500"_s);
    if (toggle)
        inclusive->click();
    QCOMPARE(desk.text("Text2"), shown);
    QCOMPARE(desk.get<QLabel>("lblMessage")->text().contains(u"消費税 525 円"_s), taxLine && shown.isEmpty());
    desk.press("cmdNext");
    QCOMPARE(desk.lines().size(), taxLine ? 2 : 1);
    if (taxLine)
        QCOMPARE(desk.lines().last(), u"1|消費税|-|-|525"_s);
}

void TestFrmOut::rateIsReadAgainAtTheEnd()
{
    Desk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    desk.shop.workspace.panel.taxRate = 8;
    desk.press("cmdNext");
    QCOMPARE(desk.shop.value(u"SELECT 消費税率 FROM 入出庫マスター"_s).toDouble(), 5.0);
    QCOMPARE(desk.lines().last(), u"1|消費税|-|-|80"_s);
}

void TestFrmOut::searchTellsWhatIsMissing()
{
    Desk desk;
    ui::prompts::expectInform(u"検索する条件を入力してください。"_s);
    desk.press("Command1");
    desk.box("txtKey1")->setText(u"kyaku"_s);
    desk.press("Command1");
    QCOMPARE(desk.get<QTableView>("DataGrid1")->model()->rowCount(), 4);
    QCOMPARE(desk.text("Text1"), u"5"_s); // the one served last
    desk.get<QTableView>("DataGrid1")->selectRow(2);
    QCOMPARE(desk.text("Text1"), u"7"_s);

    int opened = 0;
    desk.screen->setCounterpartEditor([&](QWidget *) { return ++opened, 0; });
    desk.box("txtKey1")->setText(u"いない"_s);
    for (const bool yes : {false, true}) {
        ui::prompts::expectAsk(u"検索した納品先は見つかりませんでした。\n新規に入力しますか？"_s, yes);
        desk.press("Command1");
        QCOMPARE(opened, yes ? 1 : 0);
    }
    QCOMPARE(desk.text("Text1"), QString());
}

void TestFrmOut::newCustomerIsChosen()
{
    Desk desk;
    // The register's own screen starts a new customer, which is given up.
    QString opened;
    QTimer::singleShot(50, desk.screen.get(), [&] {
        QWidget *editor = QApplication::activeModalWidget();
        opened = editor->objectName() + u' ' + editor->findChild<QLineEdit *>(u"txtID"_s)->text();
        editor->close();
    });
    desk.press("Command4");
    QCOMPARE(opened, u"frmNouhin 9"_s);
    QCOMPARE(desk.text("Text1"), QString());

    desk.screen->setCounterpartEditor([&](QWidget *) {
        desk.shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1) VALUES (20, '新規商店')"_s);
        return 20;
    });
    desk.press("Command4");
    QCOMPARE(desk.text("txtNouhinsaki1"), u"新規商店"_s);
    desk.press("cmdMasterUpdate");
    QCOMPARE(desk.shop.value(u"SELECT 相手先ID FROM 入出庫マスター"_s).toInt(), 20);
}

void TestFrmOut::headerNeedsCustomerAndEmployee()
{
    Desk desk;
    ui::prompts::expectInform(u"納品先が選択されていません。"_s);
    desk.press("cmdMasterUpdate");
    desk.shop.workspace.panel.employeeId = 0;
    desk.choose(0);
    ui::prompts::expectInform(u"担当者が選択されていません。"_s);
    desk.press("cmdMasterUpdate");
    desk.shop.workspace.panel.employeeId = 1;
    desk.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 5"_s);
    ui::prompts::expectInform(
        u"選択した納品先は削除されているため、伝票を保存できませんでした。納品先を検索し直してください。"_s);
    desk.press("cmdMasterUpdate");
    QVERIFY(desk.hasFocus("txtKey1"));
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.headers(), 0);
}

// A box that takes no year 1899 would keep its own year beside the day that was typed.
void TestFrmOut::earlyDateIsRefusedNotAltered()
{
    Desk desk;
    desk.choose(0);
    auto &date = *desk.get<QDateEdit>("DTPicker1");
    date.setFocus();
    date.setSelectedSection(QDateTimeEdit::YearSection);
    QTest::keyClicks(&date, u"18991231"_s);
    ui::prompts::expectInform(
        u"日付が正しくないため、伝票を保存できませんでした。日付を入力し直してください。"_s);
    desk.press("cmdMasterUpdate");
    QCOMPARE(date.date(), QDate(1899, 12, 31));
    QVERIFY(date.hasFocus());
    QCOMPARE(desk.headers(), 0);
}

void TestFrmOut::lineNeedsProductQuantityAndPrice()
{
    Desk desk;
    desk.open(0);
    ui::prompts::expectInform(u"商品が選択されていません。"_s);
    desk.line(u"1"_s, u"1"_s, {});
    QVERIFY(desk.hasFocus("dbcShohin"));
    ui::prompts::expectInform(u"数量が入力されていません。"_s);
    desk.line({}, u"1"_s);
    QVERIFY(desk.hasFocus("txtCnt"));
    ui::prompts::expectAsk(u"単価が入力されていません。よろしいですか。"_s, false);
    desk.line(u"2"_s, {});
    QVERIFY(desk.hasFocus("txtTanka"));
    QCOMPARE(desk.lines(), QStringList());
    QCOMPARE(desk.usable(), saved);
    ui::prompts::expectAsk(u"単価が入力されていません。よろしいですか。"_s, true);
    desk.line(u"2"_s, {});
    QCOMPARE(desk.lines(), QStringList{u"1|ふじりんご|2|0|0"_s});
    QCOMPARE(desk.usable(), withLines);
    desk.press("cmdNext");
    QCOMPARE(desk.lines().size(), 1); // no tax on nothing
}

void TestFrmOut::impossibleNumbersAreRefused_data()
{
    QTest::addColumn<QString>("quantity");
    QTest::addColumn<QString>("price");
    QTest::addColumn<QString>("sentence");
    QTest::addColumn<QString>("focus");
    const QString number = u"には数字を入力してください。"_s;
    const QString great =
        u"金額が大きすぎるため、計算できません。９０００億円以内になるように入力してください。"_s;
    QTest::newRow("letters") << u"abc"_s << u"1"_s << u"数量"_s + number << u"txtCnt"_s;
    QTest::newRow("sign alone") << u"-"_s << u"1"_s << u"数量"_s + number << u"txtCnt"_s;
    QTest::newRow("price") << u"1"_s << u"十円"_s << u"単価"_s + number << u"txtTanka"_s;
    QTest::newRow("exponent") << u"1e400"_s << u"1"_s << u"数量"_s + number << u"txtCnt"_s;
    QTest::newRow("great") << u"999999999"_s << u"999999999"_s << great << u"txtCnt"_s;
}

void TestFrmOut::impossibleNumbersAreRefused()
{
    QFETCH(QString, quantity);
    QFETCH(QString, price);
    QFETCH(QString, sentence);
    QFETCH(QString, focus);
    Desk desk;
    desk.open(0);
    ui::prompts::expectInform(sentence);
    desk.line(quantity, price);
    QVERIFY(desk.hasFocus(qPrintable(focus)));
    QCOMPARE(desk.lines(), QStringList());
    QCOMPARE(desk.usable(), saved);
}

void TestFrmOut::manualNumbers()
{
    Desk desk(false);
    QCOMPARE(desk.text("txtDenNo"), QString());
    QVERIFY(!desk.box("txtDenNo")->isReadOnly());
    const auto save = [&](const QString &number) {
        desk.choose(0);
        QVERIFY(desk.hasFocus("txtDenNo"));
        desk.box("txtDenNo")->setText(number);
        desk.press("cmdMasterUpdate");
    };
    ui::prompts::expectInform(u"伝票番号に誤りがあります。"_s);
    save(u"O1"_s);
    QVERIFY(desk.hasFocus("txtDenNo"));
    save(u"I1"_s);
    QCOMPARE(desk.usable(), saved);
    desk.line(u"1"_s, u"1"_s);
    desk.press("cmdNext");
    QCOMPARE(desk.text("txtDenNo"), QString());
    ui::prompts::expectInform(u"伝票番号が重複しています。"_s);
    save(u"I1"_s);
    QVERIFY(desk.hasFocus("txtDenNo"));
    QCOMPARE(desk.shop.rows(u"SELECT 伝票番号 FROM 入出庫マスター"_s), QStringList{u"I1"_s});
}

void TestFrmOut::leavingTheNumberChecksIt()
{
    Desk desk(false);
    desk.shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (1, 'I1')"_s);
    auto *number = desk.box("txtDenNo");
    const auto leaveWith = [&](const QString &text) {
        number->setFocus();
        number->setText(text);
        QTest::keyClick(number, Qt::Key_Return);
        QTest::qWait(20);
        return desk.hasFocus("txtDenNo");
    };
    ui::prompts::expectInform(u"伝票番号に誤りがあります。"_s);
    QVERIFY(leaveWith(u"O1"_s));
    ui::prompts::expectInform(u"伝票番号が重複しています。"_s);
    QVERIFY(leaveWith(u"I1"_s));
    QVERIFY(!leaveWith(u"I2"_s));
}

void TestFrmOut::lastLineIsRemoved()
{
    Desk desk;
    desk.open(0);
    desk.press("cmdSubCancel");
    desk.line(u"1"_s, u"1000"_s);
    desk.line(u"1"_s, u"2000"_s);
    desk.press("cmdSubCancel");
    QCOMPARE(desk.lines(), QStringList{u"1|ふじりんご|1|1000|1000"_s});
    QCOMPARE(desk.get<QTableView>("dgdSub")->model()->rowCount(), 1);
    QCOMPARE(desk.text("txtTotal"), u"1,000"_s);
    QCOMPARE(desk.text("Text2"), u"50"_s);
}

void TestFrmOut::cancellingDeletesTheSlip()
{
    Desk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    const QString question = u"表示中のレコードを削除します。よろしいですか。"_s;
    ui::prompts::expectAsk(question, false);
    desk.press("cmdMasterCancel");
    QCOMPARE(desk.usable(), withLines);
    ui::prompts::expectAsk(question, true);
    desk.press("cmdMasterCancel");
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.headers(), 0);
    QCOMPARE(desk.lines(), QStringList());
}

void TestFrmOut::printingShowsTheNote()
{
    Desk desk;
    ui::file_dialogs::beginScript();
    desk.open(0);
    desk.line(u"1"_s, u"1999"_s);
    const QString fileName = desk.shop.path(u"note.pdf"_s);
    ui::file_dialogs::expectFile(fileName);
    QString title;
    // The preview is modal: it is worked from the event loop that it runs.
    QTimer::singleShot(0, desk.screen.get(), [&title] {
        auto *preview = qobject_cast<printing::frmPreview *>(QApplication::activeModalWidget());
        if (!preview)
            return;
        title = preview->windowTitle();
        preview->findChild<QPushButton *>(u"cmdPdf"_s)->click();
        preview->reject();
    });
    desk.press("Command3");
    QCOMPARE(title, u"印刷プレビュー　納品書 O1"_s);
    QVERIFY(QFile::exists(fileName));
    QCOMPARE(ui::file_dialogs::takeUnexpected(), QString());
    QCOMPARE(desk.lines().size(), 1); // the tax line waits for 次の伝票
}

void TestFrmOut::previousLinesAreShown()
{
    Desk desk;
    desk.open(0);
    desk.line(u"2.5"_s, u"1000"_s);
    desk.press("cmdNext");
    desk.open(0);
    const QAbstractItemModel *previous = desk.get<QTableView>("MSFlexGrid1")->model();
    QStringList headings;
    QStringList cells;
    for (int column = 0; column < previous->columnCount(); ++column) {
        headings << previous->headerData(column, Qt::Horizontal).toString();
        cells << previous->index(0, column).data().toString();
    }
    QCOMPARE(headings.join(u'\t'), u"伝票番号\t日付\t商品名\t規格\t数量\t\t単価\t金額"_s);
    QCOMPARE(cells, QStringList({u"O1"_s, u"2026/04/01"_s, u"ふじりんご"_s, QString(), u"2.50"_s, QString(),
                                 u"1,000"_s, u"2,500"_s}));
    QCOMPARE(previous->rowCount(), 1); // without the tax line
}

void TestFrmOut::typedLineIsNotDroppedUnasked()
{
    Desk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    desk.box("txtCnt")->setText(u"3"_s);
    for (const char *button : {"cmdNext", "Command3"}) {
        ui::prompts::expectAsk(typedLineQuestion, false);
        desk.press(button);
        QCOMPARE(desk.usable(), withLines);
        QCOMPARE(desk.box("txtCnt")->text(), u"3"_s);
    }
    ui::prompts::expectAsk(typedLineQuestion, false);
    desk.screen->close();
    QVERIFY(desk.screen->isVisible());
    ui::prompts::expectAsk(typedLineQuestion, true);
    desk.press("cmdNext");
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.lines().size(), 2); // with the tax
}

void TestFrmOut::slipDeletedElsewhereIsLeft_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("refusal");
    const QString deleted = u"この伝票はほかのプログラムで削除されたため、"_s;
    QTest::newRow("next line") << QByteArray("cmdSubAdd") << deleted + u"明細を保存できませんでした。"_s;
    QTest::newRow("line taken back") << QByteArray("cmdSubCancel")
                                     << deleted + u"明細を取り消せませんでした。"_s;
    QTest::newRow("closing") << QByteArray("cmdNext") << deleted + u"閉じることができませんでした。"_s;
}

void TestFrmOut::slipDeletedElsewhereIsLeft()
{
    QFETCH(QByteArray, button);
    QFETCH(QString, refusal);
    Desk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    desk.shop.run(u"DELETE FROM 入出庫サブ"_s);
    desk.shop.run(u"DELETE FROM 入出庫マスター"_s);
    desk.get<QComboBox>("dbcShohin")->setEditText(u"ふじりんご"_s);
    desk.box("txtCnt")->setText(u"1"_s);
    desk.box("txtTanka")->setText(u"1000"_s);
    if (button == "cmdNext")
        ui::prompts::expectAsk(typedLineQuestion, true);
    ui::prompts::expectInform(refusal);
    desk.press(button.constData());
    QCOMPARE(desk.lines(), QStringList());
    QCOMPARE(desk.usable(), headerOnly);
    QVERIFY(desk.hasFocus("txtKey1"));
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    QCOMPARE(desk.lines().size(), 1);
}

void TestFrmOut::linesOfOthersCount()
{
    Desk desk;
    desk.open(0);
    desk.line(u"1"_s, u"1000"_s);
    desk.shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (1, 'みかん', 500)"_s);
    desk.press("cmdNext");
    QCOMPARE(desk.lines().last(), u"1|消費税|-|-|75"_s);
    QCOMPARE(desk.get<QLabel>("lblMessage")->text(),
             u"伝票 O1 を保存しました。　合計 1,500 円　消費税 75 円"_s);
}

void TestFrmOut::closingAsksForTheTaxLine_data()
{
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<bool>("withLine");
    QTest::addColumn<bool>("yes");
    QTest::addColumn<int>("lines");
    QTest::newRow("nothing entered: no question") << 0 << false << false << 0;
    QTest::newRow("all taken back: no question") << 3 << true << false << 0;
    QTest::newRow("tax added") << 0 << true << true << 2;
    QTest::newRow("left as it is") << 0 << true << false << 1;
    QTest::newRow("taxed on the bill: no question") << 1 << true << false << 1;
    QTest::newRow("tax included: no question") << 2 << true << false << 1;
}

void TestFrmOut::closingAsksForTheTaxLine()
{
    QFETCH(int, taxClass);
    QFETCH(bool, withLine);
    QFETCH(bool, yes);
    QFETCH(int, lines);
    Desk desk;
    desk.open(taxClass);
    if (withLine)
        desk.line(u"1"_s, u"1000"_s);
    if (taxClass == 3)
        desk.press("cmdSubCancel");
    if (withLine && taxClass == 0) {
        ui::prompts::expectAsk(
            u"表示中の伝票には、まだ消費税が計上されていません。計上してから終了しますか。"_s, yes);
    }
    QVERIFY(desk.screen->close());
    QCOMPARE(desk.headers(), 1);
    QCOMPARE(desk.lines().size(), lines);
}

void TestFrmOut::refusedWritesLeaveTheScreenAsItWas()
{
    Desk desk;
    const auto refused = [&](const char *button) {
        desk.shop.run(u"PRAGMA query_only = ON"_s);
        ui::prompts::expectInform({});
        desk.press(button);
        desk.shop.run(u"PRAGMA query_only = OFF"_s);
    };
    desk.choose(0);
    refused("cmdMasterUpdate");
    QCOMPARE(desk.usable(), headerOnly);
    QCOMPARE(desk.headers(), 0);
    desk.press("cmdMasterUpdate");

    desk.get<QComboBox>("dbcShohin")->setEditText(u"ふじりんご"_s);
    desk.box("txtCnt")->setText(u"1"_s);
    desk.box("txtTanka")->setText(u"1000"_s);
    refused("cmdSubAdd");
    QCOMPARE(desk.usable(), saved);
    QCOMPARE(desk.text("txtTanka"), u"1000"_s);
    QCOMPARE(desk.get<QTableView>("dgdSub")->model()->rowCount(), 0);
    desk.press("cmdSubAdd");

    refused("cmdSubCancel");
    QCOMPARE(desk.text("txtTotal"), u"1,000"_s);
    refused("cmdNext");
    QCOMPARE(desk.usable(), withLines);
    QCOMPARE(desk.lines().size(), 1);
    desk.press("cmdNext");
    QCOMPARE(desk.lines().size(), 2);
}

QTEST_MAIN(TestFrmOut)
#include "tst_frmout.moc"
