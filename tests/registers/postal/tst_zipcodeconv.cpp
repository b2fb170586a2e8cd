#include "registers/postal/ZipCodeConv.h"
#include "registers/postal/postal_boxes.h"
#include "support/fresh_shop.h"
#include "support/postal_files.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString noIndex = u"ZIPCODE.TXT が見つかりません。確認してください。"_s;
const QString nowhere = u" は、見つかりませんでした。都市名を入力して再度検索してください。"_s;

void writeFiles(const FreshShop &shop)
{
    const QString folder = shop.folder.path();
    PostalFiles::writeAreas(folder, {{u"長野県長野市"_s,
                                      u"長野市"_s,
                                      {{"3800000", u"長野県長野市"_s},
                                       {"3800823", u"長野県長野市南千歳"_s},
                                       {"3800824", u"長野県長野市南千歳町"_s},
                                       {"3812200", u"長野県長野市能登"_s},
                                       {"3812200", u"長野県長野市能登町"_s}}}});
    PostalFiles::writeEntries(folder, u"ZipCode1.txt"_s,
                              {u"100-0013  霞が関"_s, u"380-0000  長野県長野市"_s,
                               u"380-0823  長野県長野市南千歳"_s, u"380-0899  長野県長野市南千歳"_s,
                               u"381-2200  長野県長野市能登"_s, u"381-2200  長野県長野市能登町"_s});
    PostalFiles::writeEntries(folder, u"ZIPCODE2.txt"_s, {u"380-8570 長野県庁"_s, u"100-8111 宮内庁"_s});
}

void loadIndex(FreshShop &shop)
{
    auto index = registers::loadPostalIndex(shop.path(u"ZIPID1.txt"_s));
    if (!index)
        qFatal("%s", qPrintable(index.error().text));
    shop.workspace.keep(std::move(*index));
}

struct Window : ScreenDriver
{
    explicit Window(const QString &address = {}, bool withFiles = true)
        : ScreenDriver(&screen)
    {
        if (withFiles) {
            writeFiles(shop);
            loadIndex(shop);
        }
        if (!address.isEmpty())
            screen.serve(address);
        show();
        QCoreApplication::processEvents();
    }

    QString message() { return the<QStatusBar>("StatusBar1").currentMessage(); }
    QListWidget &lines() { return the<QListWidget>("List2"); }
    void search(const QString &text)
    {
        type("Text2", text);
        QTest::keyClick(&box("Text2"), Qt::Key_Return);
    }
    void clickLine(int row, bool twice = false)
    {
        const QPoint place = lines().visualItemRect(lines().item(row)).center();
        QTest::mouseClick(lines().viewport(), Qt::LeftButton, {}, place);
        if (twice)
            QTest::mouseDClick(lines().viewport(), Qt::LeftButton, {}, place);
    }

    FreshShop shop;
    registers::ZipCodeConv screen{shop.workspace};
};

// A register's two boxes and button.
struct Boxes : ScreenDriver
{
    explicit Boxes()
        : ScreenDriver(&window)
    {
        writeFiles(shop);
        loadIndex(shop);
        auto *layout = new QVBoxLayout(&window);
        for (QWidget *edit : std::initializer_list<QWidget *>{zip, address, other, remark})
            layout->addWidget(edit);
        remark->hide();
        zip->setObjectName(u"zip"_s);
        address->setObjectName(u"address"_s);
        other->setObjectName(u"other"_s);
        boxes = new registers::PostalBoxes(shop.workspace, {zip, address, other, remark});
        boxes->fillOnLeavingAddress();
        show();
        zip->setFocus();
    }

    void enter(const char *name, const QString &text)
    {
        type(name, text);
        QTest::keyClick(&box(name), Qt::Key_Tab);
        QTest::qWait(20);
    }

    FreshShop shop;
    QDialog window;
    QLineEdit *zip = new QLineEdit(&window);
    QLineEdit *address = new QLineEdit(&window);
    QLineEdit *other = new QLineEdit(&window);
    QPushButton *remark = new QPushButton(&window);
    registers::PostalBoxes *boxes = nullptr;
};

} // namespace

class TestZipCodeConv : public ScriptedTest
{
    Q_OBJECT

private slots:
    void searchesForARegister()
    {
        Window w(u"長野県長野市大字南千歳町1"_s);
        QCOMPARE(w.screen.windowTitle(), u"ほのりか郵便番号検索"_s);
        QCOMPARE(w.message(), u"3件　見つかりました。"_s);
        QCOMPARE(w.box("Text1").text(), u"380-0824"_s);
        QCOMPARE(w.lines().currentRow(), 2);
        QCOMPARE(w.cursor(), u"List2"_s);
        QTest::keyClick(&w.lines(), Qt::Key_Up);
        QCOMPARE(w.box("Text1").text(), u"380-0823"_s);
        QTest::keyClick(&w.lines(), Qt::Key_Return);
        QVERIFY(!w.screen.isVisible());
        QCOMPARE(w.screen.code(), u"380-0823"_s);
    }

    void aDoubleClickChooses()
    {
        Window w(u"桃源郷"_s);
        QCOMPARE(w.message(), u"桃源郷"_s + nowhere);
        w.search(u"長野市南"_s);
        QCOMPARE(w.message(), u"2件　見つかりました。"_s);
        QCOMPARE(w.box("Text1").text(), QString());
        w.clickLine(1, true);
        QVERIFY(!w.screen.isVisible());
        QCOMPARE(w.screen.code(), u"380-0824"_s);
    }

    void theBoxIsTheResult()
    {
        Window w(u"長野県長野市"_s);
        QCOMPARE(w.screen.code(), u"380-0000"_s);
        w.clickLine(1);
        QCOMPARE(w.screen.code(), u"380-0823"_s);
        w.type("Text1", u"380-9999"_s);
        QCOMPARE(w.screen.code(), u"380-9999"_s);
        w.press("Command1");
        QCOMPARE(w.screen.code(), QString());
        QCOMPARE(w.lines().count(), 0);
        QCOMPARE(w.cursor(), u"Text2"_s);
    }

    void tellsWhatItFound_data()
    {
        QTest::addColumn<bool>("offices");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");
        const QString nothing = u"　検索する住所1を入力して下さい。"_s;
        QTest::newRow("empty") << false << QString() << nothing;
        QTest::newRow("nothing left") << false << u"大字"_s << nothing;
        QTest::newRow("found") << false << u"長野市能登"_s << u"2件　見つかりました。"_s;
        QTest::newRow("fallback") << false << u"霞が関"_s << u"1件　見つかりました。"_s;
        QTest::newRow("nowhere") << false << u"桃源郷"_s << u"桃源郷"_s + nowhere;
        QTest::newRow("offices") << true << u"庁"_s << u"2件　見つかりました。"_s;
        QTest::newRow("no such office")
            << true << u"長野市"_s
            << u"長野市 は、見つかりませんでした。事業所名を変えて再度検索してください。"_s;
    }

    void tellsWhatItFound()
    {
        QFETCH(bool, offices);
        QFETCH(QString, text);
        Window w;
        QCOMPARE(w.message(), QString());
        w.the<QCheckBox>("Check1").setChecked(offices);
        QCOMPARE(w.box("Text2").placeholderText(), offices ? u"事業所名を入力します。"_s : QString());
        w.search(text);
        QTEST(w.message(), "message");
        QCOMPARE(w.cursor(), w.lines().count() > 0 ? u"List2"_s : u"Text2"_s);
    }

    void warnsOfAnEmptyIndex()
    {
        ui::prompts::expectInform(noIndex);
        Window w({}, false);
        QCOMPARE(w.message(), u"　検索する住所1を入力して下さい。"_s);
    }

    void tellsOfMissingTables()
    {
        ui::prompts::expectInform(noIndex);
        ui::prompts::expectInform(u"全国版の郵便番号表 ZIPCODE1.TXT が見つかりません。確認してください。"_s);
        Window w(u"長野県長野市"_s, false);
        w.the<QCheckBox>("Check1").setChecked(true);
        ui::prompts::expectInform(
            u"事業所の個別郵便番号表 ZIPCODE1.TXT が見つかりません。確認してください。"_s);
        w.press("Command4");
        QCOMPARE(w.screen.code(), QString());
    }

    void copiesForTheClerk()
    {
        Window w;
        w.search(u"長野市能登"_s);
        w.clickLine(0);
        w.press("cmdTake");
        QVERIFY(w.screen.isVisible());
        QCOMPARE(QGuiApplication::clipboard()->text(), u"381-2200"_s);
    }

    void aLongSearchCanBeStopped_data()
    {
        QTest::addColumn<bool>("close");
        QTest::newRow("by the button") << false;
        QTest::newRow("by closing the window") << true;
    }

    void aLongSearchCanBeStopped()
    {
        QFETCH(bool, close);
        Window w;
        const int entries = 200000;
        PostalFiles::writeEntries(w.shop.folder.path(), u"ZIPCODE2.txt"_s,
                                  QStringList(entries, u"100-8111 宮内庁"_s));
        w.the<QCheckBox>("Check1").setChecked(true);
        bool stoppable = false;
        QTimer::singleShot(0, &w.screen, [&] {
            stoppable = w.the<QPushButton>("Command5").isEnabled();
            w.press("Command4"); // starts no second search within the first
            if (close)
                w.screen.reject();
            else
                w.press("Command5");
        });
        w.type("Text2", u"庁"_s);
        w.the<QPushButton>("Command4").click();
        QVERIFY(stoppable);
        QVERIFY(w.lines().count() < entries);
        QCOMPARE(w.screen.isVisible(), !close);
        QVERIFY(!w.the<QPushButton>("Command5").isEnabled());
        QCOMPARE(w.message(), u"中止しました。%1件　見つかりました。"_s.arg(w.lines().count()));
    }

    void leavingTheAddressFillsTheCode()
    {
        Boxes b;
        b.enter("address", u"長野県長野市南千歳町1-2"_s);
        QCOMPARE(b.zip->text(), u"380-0824"_s);
        b.enter("address", u"桃源郷1"_s);
        QCOMPARE(b.zip->text(), u"380-0824"_s);
        ui::prompts::expectAskCautiously(
            u"郵便番号は「380-0824」ですが、この住所１の郵便番号は「380-0823」のようです。\n"
            "「380-0823」に変更しますか。"_s,
            true);
        b.enter("address", u"長野県長野市南千歳9"_s);
        QCOMPARE(b.zip->text(), u"380-0823"_s);
        // Passing through is no edit.
        b.zip->setText(u"380-8570"_s);
        b.address->setFocus();
        QTest::keyClick(b.address, Qt::Key_Tab);
        QTest::qWait(20);
        QCOMPARE(b.zip->text(), u"380-8570"_s);
        // Another code of the same area.
        b.zip->setText(u"380-0899"_s);
        b.enter("address", u"長野県長野市南千歳7"_s);
        QCOMPARE(b.zip->text(), u"380-0899"_s);
        b.zip->setText(u"380-8570"_s);
        // Too wide to be saved.
        b.enter("address", u"長野県長野市南千歳"_s + QString(20, u'丁'));
        QCOMPARE(b.zip->text(), u"380-8570"_s);
    }

    void typingACodeOffersItsAddress()
    {
        Boxes b;
        b.enter("zip", u"３８０－０８２３"_s);
        QCOMPARE(b.zip->text(), u"380-0823"_s);
        QCOMPARE(b.address->text(), u"長野県長野市南千歳"_s);
        QVERIFY(b.address->hasFocus());
        QTest::keyClicks(b.address, u"1-2"_s);
        QCOMPARE(b.address->text(), u"長野県長野市南千歳1-2"_s);
        b.enter("zip", u"3800824"_s);
        QCOMPARE(b.address->text(), u"長野県長野市南千歳1-2"_s);
    }

    void aCitysOwnCodeIsRemarkedOn()
    {
        Boxes b;
        b.enter("address", u"長野県長野市稲葉1"_s);
        QCOMPARE(b.zip->text(), u"380-0000"_s);
        QVERIFY(b.remark->isVisible());
        b.boxes->forget();
        QVERIFY(!b.remark->isVisible());

        b.zip->clear();
        b.enter("address", u"長野県長野市字南千歳1"_s);
        QCOMPARE(b.zip->text(), u"380-0823"_s);
        QVERIFY(!b.remark->isVisible());
    }

    void f4SearchesTheAddressInTheWindow()
    {
        Boxes b;
        b.type("address", u"長野県長野市能登町1"_s);
        QTimer::singleShot(0, this, [] {
            auto *window = qobject_cast<registers::ZipCodeConv *>(QApplication::activeModalWidget());
            QVERIFY(window);
            auto *lines = window->findChild<QListWidget *>(u"List2"_s);
            QTRY_COMPARE(lines->count(), 3);
            QTest::keyClick(lines, Qt::Key_Return);
        });
        QTest::keyClick(b.address, Qt::Key_F4);
        QCOMPARE(b.zip->text(), u"381-2200"_s);
        QVERIFY(!b.remark->isVisible());
    }

    void severalTownsAreOfferedAsAList()
    {
        Boxes b;
        b.enter("zip", u"3812200"_s);
        auto *menu = b.zip->findChild<QMenu *>(u"mnuAddresses"_s);
        QVERIFY(menu && menu->isVisible());
        QCOMPARE(menu->actions().size(), 2);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        QCOMPARE(b.address->text(), u"長野県長野市能登町"_s);
        QCOMPARE(b.zip->text(), u"381-2200"_s);
    }

    void takesTheListsOfThePostalService()
    {
        Window w;
        const QString list = w.shop.path(u"list.csv"_s);
        const QByteArray area =
            "13101,\"100  \",\"1000001\",\"\",\"\",\"\",\"東京都\",\"千代田区\",\"千代田\",0,0,0,0,0,0\n";
        PostalFiles::write(w.shop.folder.path(), u"list.csv"_s, area + "a,b\n");
        const QString doubt =
            u"選択したファイルには1都道府県分の郵便番号しか含まれていません。"
            "更新すると、その他の都道府県の郵便番号は検索できなくなります。更新しますか？"_s;
        // Not asked for, then doubted, then taken.
        ui::file_dialogs::expectFile({});
        w.the<QPushButton>("cmdUpdate").click();
        ui::file_dialogs::expectFile(list);
        ui::prompts::expectAsk(doubt, false);
        w.the<QPushButton>("cmdUpdate").click();
        w.search(u"長野市南千歳"_s);
        QCOMPARE(w.lines().count(), 2);
        ui::file_dialogs::expectFile(list);
        ui::prompts::expectAsk(doubt, true);
        ui::prompts::expectInform(
            u"郵便番号データを更新しました。\n町域 1件を取り込みました。\n\n"
            "取り込まなかった行が 1行あります。\n列の数が15でも13でもない: 1行（最初は2行目）"_s);
        w.the<QPushButton>("cmdUpdate").click();
        w.search(u"千代田区千代田1-1"_s);
        QCOMPARE(w.box("Text1").text(), u"100-0001"_s);

        // A file of another kind changes nothing.
        PostalFiles::write(w.shop.folder.path(), u"list.csv"_s, "name,zip\n");
        ui::file_dialogs::expectFile(list);
        ui::prompts::expectInform({});
        w.the<QPushButton>("cmdUpdate").click();
        w.search(u"千代田区千代田1-1"_s);
        QCOMPARE(w.box("Text1").text(), u"100-0001"_s);
    }

    void theButtonOpensTheWindow()
    {
        Boxes b;
        b.address->setText(u"長野県長野市南千歳1"_s);
        b.boxes->lookUp();
        QCOMPARE(b.zip->text(), u"380-0823"_s);
        b.address->setText(u"長野市南"_s);
        b.zip->clear();
        for (const int key : {Qt::Key_Escape, Qt::Key_Return}) {
            QCOMPARE(b.zip->text(), QString());
            QTimer::singleShot(0, &b.window, [key] {
                auto *window = qobject_cast<registers::ZipCodeConv *>(QApplication::activeModalWidget());
                QVERIFY(window && QTest::qWaitForWindowActive(window));
                QTRY_COMPARE(window->findChild<QListWidget *>()->count(), 2);
                QTest::keyClick(window->focusWidget(), static_cast<Qt::Key>(key));
                if (window->isVisible())
                    window->reject();
            });
            b.boxes->lookUp();
        }
        QCOMPARE(b.zip->text(), u"380-0823"_s);
    }
};

QTEST_MAIN(TestZipCodeConv)
#include "tst_zipcodeconv.moc"
