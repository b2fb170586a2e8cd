#include "support/fresh_shop.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace workspace;

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void defaultsOfAnEmptyStore();
    void nonsenseCountsAsNothing_data();
    void nonsenseCountsAsNothing();
    void textsComeBackAsTheyWere();
    void handEditedFile();
    void damagedFileIsWrittenAnew();
    void pathsAreJoinedWithOneSeparator();
};

void TestSettings::defaultsOfAnEmptyStore()
{
    FreshShop shop;
    const workspace::Settings &settings = shop.settings;
    QCOMPARE(settings.text(workspace::keys::deliveryPaper), u"HISAGO 1149"_s);
    QCOMPARE(settings.text(workspace::keys::billPaper), u"HISAGO 1148"_s);
    QCOMPARE(settings.text(workspace::keys::carrier), u"佐川急便"_s);
    QCOMPARE(settings.text(workspace::keys::printerFont), u"ＭＳ 明朝"_s);
    QCOMPARE(settings.text(workspace::keys::kuroPrinterFont), u"ＭＳ 明朝"_s);
    QCOMPARE(settings.text(workspace::keys::mdbFileName), QString());
    QCOMPARE(settings.number(workspace::keys::taxRate), 5.0);
    QCOMPARE(settings.integer(workspace::keys::fontSize), 10);
    QCOMPARE(settings.integer(workspace::keys::monthViewColor), 164 + 200 * 256 + 255 * 65536);
    QCOMPARE(settings.text(workspace::keys::gridSize), u"グリッドの間隔　小"_s);
    for (int i = 0; i < 8; ++i)
        QCOMPARE(settings.checked(workspace::keys::check[i]), i < 2);
}

void TestSettings::nonsenseCountsAsNothing_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("integer");
    QTest::newRow("text") << u"abc"_s << 0.0 << 0;
    QTest::newRow("empty") << u""_s << 0.0 << 0;
    QTest::newRow("sign") << u"-"_s << 0.0 << 0;
    QTest::newRow("too large") << u"1e400"_s << 0.0 << 0;
    QTest::newRow("beyond int") << u"99999999999"_s << 99999999999.0 << 0;
    QTest::newRow("full width") << u"１０"_s << 10.0 << 10;
    QTest::newRow("fraction") << u"7.8"_s << 7.8 << 7;
}

void TestSettings::nonsenseCountsAsNothing()
{
    QFETCH(QString, stored);
    FreshShop shop;
    shop.settings.write(workspace::keys::taxRate, stored);
    QTEST(shop.settings.number(workspace::keys::taxRate), "number");
    QTEST(shop.settings.integer(workspace::keys::taxRate), "integer");
}

void TestSettings::textsComeBackAsTheyWere()
{
    FreshShop shop;
    const QStringList texts{u"24-"_s,      u" a, b ; c "_s, u"@明朝"_s, u"C:\\お店\\shop.cdb"_s,
                            u"\"引用\""_s, u"😀\n二行"_s};
    for (const QString &text : texts) {
        shop.settings.write(workspace::keys::denNo, text);
        QVERIFY(shop.settings.flush());
        const workspace::Settings again(shop.settingsFolder.filePath(u"settings.ini"_s));
        QCOMPARE(again.text(workspace::keys::denNo), text);
    }
}

void TestSettings::handEditedFile()
{
    FreshShop shop;
    QFile file(shop.path(u"edited.ini"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Settings]\ntxtDenNo=a, b\nTaxRate\n=x\n[[[\nCheck1=1\n");
    file.close();
    const workspace::Settings settings(file.fileName());
    QCOMPARE(settings.text(workspace::keys::denNo), u"a,b"_s);
    QCOMPARE(settings.text(workspace::keys::deliveryPaper), u"HISAGO 1149"_s);
}

// The close of the program reports settings that were not saved; these are.
void TestSettings::damagedFileIsWrittenAnew()
{
    FreshShop shop;
    const QString fileName = shop.path(u"damaged.ini"_s);
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Settings]\nTaxRate=8\nno value\n[\x80\xff\x01");
    file.close();
    {
        workspace::Settings settings(fileName);
        QCOMPARE(settings.integer(workspace::keys::taxRate), 8);
        settings.write(workspace::keys::taxRate, 10);
        QVERIFY(settings.flush());
    }
    workspace::Settings settings(fileName);
    QCOMPARE(settings.integer(workspace::keys::taxRate), 10);
    // A folder in its place: now it cannot be saved.
    QVERIFY(QFile::remove(fileName));
    QVERIFY(QDir().mkdir(fileName));
    settings.write(workspace::keys::taxRate, 3);
    QVERIFY(!settings.flush());
    QVERIFY(!settings.flush());
    // And now it can again.
    QVERIFY(QDir().rmdir(fileName));
    QVERIFY(settings.flush());
    QCOMPARE(workspace::Settings(fileName).integer(workspace::keys::taxRate), 3);
}

void TestSettings::pathsAreJoinedWithOneSeparator()
{
    QCOMPARE(workspace::joinPath(u"/home/shop"_s, u"a.cdb"_s), u"/home/shop/a.cdb"_s);
    QCOMPARE(workspace::joinPath(u"/"_s, u"a.cdb"_s), u"/a.cdb"_s);
    QCOMPARE(workspace::joinPath(u"C:\\"_s, u"a.cdb"_s), u"C:\\a.cdb"_s);
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
