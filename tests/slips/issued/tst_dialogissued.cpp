// The screen of issued documents, by its keys.
#include "slips/issued/DialogIssued.h"
#include "slips/issued/issued_documents.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "workspace/document_places.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

printing::Document pages(int count)
{
    printing::Document document;
    document.title = u"納品書"_s;
    for (int page = 1; page <= count; ++page) {
        printing::Sheet sheet;
        sheet.setCutPaper(210, 148);
        sheet.texts.push_back({1000, 1000, QString::number(page), 12});
        document.sheets.push_back(sheet);
    }
    return document;
}

/// The screen over three documents: two notes and an estimate.
struct Desk
{
    Desk()
    {
        printing::keepPrintSystem(shop.workspace, printers);
        keep(1, u"納品書"_s, QDate(2026, 3, 1), 1100);
        keep(2, u"見積書"_s, QDate(2026, 3, 2), 2200);
        keep(3, u"納品書"_s, QDate(2026, 3, 3), 3300);
    }

    void keep(int number, const QString &kind, const QDate &date, double amount)
    {
        pdf = *printing::pdfOf(pages(number), printing::Look{u"IPAMincho"_s});
        const IssuedDocument document{.kind = kind,
                                      .number = u"O%1"_s.arg(number),
                                      .date = date,
                                      .slipKind = book::sale,
                                      .counterpart = number,
                                      .counterpartName = u"顧客%1"_s.arg(number),
                                      .amount = amount};
        if (!keepDocument(shop.connection, folder(), document, pdf, shop.now, u"木村"_s))
            qFatal("nothing is kept");
    }
    QString folder() const { return workspace::documentFolderOf(shop.path(u"shop.cdb"_s)); }
    QString fileOf(int key)
    {
        return folder() + u"/2026/"_s +
               shop.value(u"SELECT ハッシュ FROM 発行控 WHERE 発行ID = ?"_s, {key}).toString() + u".pdf"_s;
    }
    ScreenDriver &open()
    {
        screen = std::make_unique<DialogIssued>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
        QCoreApplication::processEvents();
        return *driver;
    }
    /// What the grid shows, by the numbers of the slips.
    QString shown()
    {
        QAbstractItemModel &rows = *driver->the<ui::Grid>("grdIssued").model();
        QStringList numbers;
        for (int row = 0; row < rows.rowCount(); ++row) {
            for (int column = 0; column < rows.columnCount(); ++column) {
                if (rows.headerData(column, Qt::Horizontal).toString() == u"伝票番号"_s)
                    numbers << rows.index(row, column).data().toString();
            }
        }
        return numbers.join(u' ');
    }
    /// Prints in the dialog that comes next.
    void printNext(const std::function<void(QWidget &)> &look = {})
    {
        QTimer::singleShot(0, screen.get(), [look] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(dialog && dialog->objectName() == u"DialogPrint"_s);
            if (look)
                look(*dialog);
            dialog->findChild<QPushButton *>(u"cmdPrint"_s)->click();
        });
    }

    FreshShop shop;
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    QByteArray pdf; // of the last one
    std::unique_ptr<DialogIssued> screen;
    std::unique_ptr<ScreenDriver> driver;
};

} // namespace

class TestDialogIssued : public ScriptedTest
{
    Q_OBJECT

private slots:
    void init() { ui::desktop::beginScript(); }

    void findsByTheBoxes()
    {
        Desk desk;
        ScreenDriver &driver = desk.open();
        QCOMPARE(desk.shown(), u"O3 O2 O1"_s); // at once, the latest first
        QCOMPARE(driver.cursor(), u"grdIssued"_s);

        driver.type("txtLeast", u"２，２００"_s);
        driver.key(Qt::Key_Return);
        QCOMPARE(desk.shown(), u"O3 O2"_s);
        driver.choose("cmbKind", u"納品書"_s);
        driver.press("cmdFind");
        QCOMPARE(desk.shown(), u"O3"_s);
        driver.type("txtName", u"顧客1"_s);
        ui::prompts::expectInform(ui::messages::nothingFound(), ui::prompts::anyRemark);
        driver.key(Qt::Key_Return);
        QVERIFY(!driver.the<QPushButton>("cmdOpen").isEnabled());
        driver.clear("txtLeast");
        driver.press("cmdFind");
        QCOMPARE(desk.shown(), u"O1"_s);
        driver.type("txtMost", u"千円"_s);
        ui::prompts::expectInform(u"金額を数字で入力してください。"_s);
        driver.key(Qt::Key_Return);
        QCOMPARE(driver.cursor(), u"txtMost"_s);
        QCOMPARE(desk.shown(), u"O1"_s);
    }

    void datesCanBeLeftOut()
    {
        Desk desk;
        desk.keep(4, u"納品書"_s, QDate(2011, 1, 1), 1);
        ScreenDriver &driver = desk.open();
        QCOMPARE(desk.shown(), u"O3 O2 O1"_s);
        driver.press("chkDates");
        QVERIFY(!driver.the<QDateEdit>("DTPicker1").isEnabled());
        driver.press("cmdFind");
        QCOMPARE(desk.shown(), u"O3 O2 O1 O4"_s);
    }

    // Digits alone, as they are read out; what came of a document.
    void tellsWhatCameOfThem()
    {
        Desk desk;
        desk.shop.run(
            u"INSERT INTO 発行控 (種類, 番号, 日付, 訂正元) VALUES ('納品書', 'O1', '2026-03-01', 1)"_s);
        ScreenDriver &driver = desk.open();
        driver.type("txtNumber", u"1"_s);
        driver.press("cmdFind");
        QCOMPARE(desk.shown(), u"O1 O1"_s);
        const auto state = [&] { return driver.the<QLabel>("lblState").text(); };
        QVERIFY(!state().contains(u"訂正"_s));
        auto &grid = driver.the<ui::Grid>("grdIssued");
        grid.setCurrentIndex(grid.model()->index(1, grid.currentIndex().column()));
        QVERIFY2(state().contains(u"控え番号 4 で訂正"_s), qPrintable(state()));
    }

    void oneAtATime()
    {
        Desk desk;
        ScreenDriver &driver = desk.open();
        ui::prompts::expectInform(u"担当者が選択されていません。"_s);
        driver.press("cmdPrint");
        desk.shop.workspace.panel.employeeName = u"田中"_s;
        driver.the<ui::Grid>("grdIssued").setFocus();
        driver.key(Qt::Key_Down, Qt::ShiftModifier);
        for (const char *button : {"cmdPrint", "cmdOpen"}) {
            ui::prompts::expectInform(
                u"2 件を選択しています。開く控え、再発行する控えは、一件だけ選択してください。"_s);
            driver.press(button);
        }
        QVERIFY(ui::desktop::takeOpened().isEmpty());
        QVERIFY(desk.printers->given.empty());
    }

    void opensTheFileItself()
    {
        Desk desk;
        ScreenDriver &driver = desk.open();
        driver.key(Qt::Key_Down);
        driver.key(Qt::Key_Return);
        QCOMPARE(ui::desktop::takeOpened(), QUrl::fromLocalFile(desk.fileOf(2)).toString());
        ui::desktop::expectNoProgram();
        ui::prompts::expectInform({});
        driver.press("cmdOpen");
        ui::desktop::takeOpened();
    }

    void aDamagedOneIsNotOpened_data()
    {
        QTest::addColumn<QString>("accident");
        QTest::newRow("damaged") << u"damaged"_s;
        QTest::newRow("gone") << u"gone"_s;
        QTest::newRow("the folder is gone") << u"folder"_s;
    }

    void aDamagedOneIsNotOpened()
    {
        QFETCH(QString, accident);
        Desk desk;
        ScreenDriver &driver = desk.open();
        const QString file = desk.fileOf(3);
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
        if (accident == u"damaged"_s)
            QVERIFY(QFile::resize(file, 100));
        else if (accident == u"gone"_s)
            QVERIFY(QFile::remove(file));
        else
            QVERIFY(QDir(desk.folder()).removeRecursively());
        for (const char *button : {"cmdOpen", "cmdPrint"}) {
            ui::prompts::expectInform({}, ui::prompts::anyRemark);
            driver.press(button);
        }
        QVERIFY(desk.printers->given.empty());
        QVERIFY(ui::desktop::takeOpened().isEmpty());
        ui::prompts::expectInform({}, ui::prompts::anyRemark);
        driver.press("cmdVerifyAll");
        auto &grid = driver.the<ui::Grid>("grdIssued");
        const QModelIndex first = grid.model()->index(0, 1);
        QVERIFY(first.data(Qt::ToolTipRole).toString().startsWith(u"ファイル"_s));
        QVERIFY(first.data(Qt::ForegroundRole).isValid());
        QCOMPARE(grid.model()->index(1, 1).data(Qt::ForegroundRole).isValid(), accident == u"folder"_s);
    }

    void wholeOnesAreSaidToBe()
    {
        Desk desk;
        ScreenDriver &driver = desk.open();
        ui::prompts::expectInform(u"1 件の控えを検査しました。すべて発行した時のまま残っています。"_s);
        driver.press("cmdVerify");
        driver.the<ui::Grid>("grdIssued").setFocus();
        driver.key(Qt::Key_A, Qt::ControlModifier);
        ui::prompts::expectInform(u"3 件の控えを検査しました。すべて発行した時のまま残っています。"_s);
        driver.press("cmdVerify");
    }

    // Byte for byte, on paper of its size, with a word of it in the list alone.
    void printsTheSameBytesAgain()
    {
        Desk desk;
        desk.shop.workspace.panel.employeeName = u"田中"_s;
        ScreenDriver &driver = desk.open();
        desk.printNext([](QWidget &dialog) {
            QVERIFY(!dialog.findChild<QRadioButton *>(u"optRange"_s)->isEnabled());
            QVERIFY(dialog.findChild<QLabel *>(u"lblPages"_s)->text().contains(u"3"_s));
        });
        driver.press("cmdPrint");
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
        QVERIFY(desk.printers->given.front().pdf == desk.pdf);
        QCOMPARE(desk.printers->given.front().settings.paper, QSizeF(148, 210));
        QCOMPARE(desk.shop.rows(u"SELECT 発行ID, 種類, 番号, 社員名, 訂正元 FROM 発行控 WHERE 発行ID > 3"_s),
                 QStringList{u"4|納品書（再発行）|O3|田中|-"_s});
        QCOMPARE(desk.shown(), u"O3 O3 O2 O1"_s);
    }

    void aBillIsFoundAndPrintedAgain()
    {
        Desk desk;
        desk.shop.workspace.panel.employeeName = u"田中"_s;
        desk.keep(4, u"請求書"_s, QDate(2026, 3, 31), 4400);
        ScreenDriver &driver = desk.open();
        driver.choose("cmbKind", u"請求書"_s);
        driver.press("cmdFind");
        QCOMPARE(desk.shown(), u"O4"_s);
        desk.printNext();
        driver.press("cmdPrint");
        QVERIFY(desk.printers->given.front().pdf == desk.pdf);
        QCOMPARE(desk.shown(), u"O4 O4"_s);
    }

    void aRefusedPrintIsNotNoted()
    {
        Desk desk;
        desk.shop.workspace.panel.employeeName = u"田中"_s;
        desk.printers->refusal = base::Error{u"紙がありません。"_s};
        ScreenDriver &driver = desk.open();
        desk.printNext();
        ui::prompts::expectInform(u"紙がありません。"_s);
        driver.press("cmdPrint");
        QTimer::singleShot(0, desk.screen.get(), [] { QApplication::activeModalWidget()->close(); });
        driver.press("cmdPrint"); // and then thought better of it
        QCOMPARE(desk.shop.value(u"SELECT count(*) FROM 発行控"_s), QVariant(3));
    }

    void exportsWhatIsSelected()
    {
        Desk desk;
        ScreenDriver &driver = desk.open();
        driver.key(Qt::Key_Down, Qt::ShiftModifier);
        ui::file_dialogs::expectFile(desk.shop.folder.path());
        ui::prompts::expectInform(u"2 件の PDF と索引を書き出しました。"_s, ui::prompts::anyRemark);
        driver.press("cmdExport");
        const QDir folder(desk.shop.path(u"発行控え 書き出し 2026-04-01"_s));
        QCOMPARE(folder.entryList(QDir::Files, QDir::Name),
                 (QStringList{u"2026-03-02_見積書_O2_顧客2.pdf"_s, u"2026-03-03_納品書_O3_顧客3.pdf"_s,
                              u"索引.csv"_s}));
        ui::file_dialogs::expectFile({}); // thought better of
        driver.press("cmdExport");
    }

    // Esc twice, the wheel over a box, Enter where there is nothing.
    void accidentsDoNothing()
    {
        Desk desk;
        desk.shop.run(u"UPDATE 発行控 SET 日付 = '2000-01-01'"_s);
        ScreenDriver &driver = desk.open();
        QCOMPARE(desk.shown(), QString());
        QCOMPARE(driver.enabled({"cmdOpen", "cmdPrint", "cmdVerify", "cmdExport"}), QString());
        turnWheelOver(driver.the<QComboBox>("cmbKind"));
        turnWheelOver(driver.the<QDateEdit>("DTPicker1"));
        QCOMPARE(driver.the<QComboBox>("cmbKind").currentIndex(), 0);
        QCOMPARE(driver.the<QDateEdit>("DTPicker1").date(), QDate(2025, 1, 1));
        driver.the<ui::Grid>("grdIssued").setFocus();
        driver.key(Qt::Key_Return);
        driver.key(Qt::Key_Delete);
        driver.key(Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.shop.value(u"SELECT count(*) FROM 発行控"_s), QVariant(3));
        QVERIFY(ui::desktop::takeOpened().isEmpty());
    }
};

QTEST_MAIN(TestDialogIssued)
#include "tst_dialogissued.moc"
