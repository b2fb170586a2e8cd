#include "shipping/addresses/house_numbers.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;

class TestHouseNumbers : public QObject
{
    Q_OBJECT

private slots:
    void addressesOfAHurriedClerk_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("upright");
        QTest::addColumn<QString>("kanji"); // with の between numbers
        const auto row = [](const char16_t *typed, const char16_t *upright, const char16_t *kanji) {
            QTest::newRow(qPrintable(QString::fromUtf16(typed)))
                << QString::fromUtf16(typed) << QString::fromUtf16(upright) << QString::fromUtf16(kanji);
        };
        row(u"長野市上千歳町1137-23", u"長野市上千歳町１１３７‐23", u"長野市上千歳町一一三七の二三");
        row(u"神田2丁目4ー405", u"神田２丁目４‐４０５", u"神田二丁目四の四〇五");
        row(u"１２－３４", u"12‐34", u"一二の三四");
        row(u" 1 - 2−３ ", u"１‐２‐３", u"一の二の三");
        row(u"ｺｰﾎﾟ千歳402号", u"コーポ千歳４０２号", u"コーポ千歳四〇二号");
        row(u"ﾋﾞﾙﾃﾞｨﾝｸﾞ1F", u"ビルディング１Ｆ", u"ビルディング１Ｆ");
        row(u"グリーンハイツB-203", u"グリーンハイツＢ‐２０３", u"グリーンハイツＢ‐二〇三");
        row(u"メゾンＡ12", u"メゾンＡ12", u"メゾンＡ12");
        row(u"タワー100", u"タワー１００", u"タワー一〇〇");       // a vowel mark, no dash
        row(u"タワー－100", u"タワー－１００", u"タワー－一〇〇"); // no figure before it
        row(u"三ー五", u"三‐五", u"三の五");
        row(u"10丁目 2番\t3号", u"10丁目　２番　３号", u"一〇丁目　二番　三号");
        row(u"番外地ー", u"番外地ー", u"番外地ー");
        row(u"1-", u"１－", u"一－");
        row(u"", u"", u"");
    }

    void addressesOfAHurriedClerk()
    {
        QFETCH(QString, typed);
        QTEST(columnAddress(typed, Figures::Upright, Between::Dash), "upright");
        QTEST(columnAddress(typed, Figures::Kanji, Between::No), "kanji");
    }

    void whatStandsBetweenNumbersIsAChoice()
    {
        QCOMPARE(columnAddress(u"上町1-2"_s, Figures::Kanji, Between::Dash), u"上町一‐二"_s);
        QCOMPARE(columnAddress(u"上町1-2"_s, Figures::Upright, Between::No), u"上町１の２"_s);
    }

    void aLineKeepsDigitsAndWidensKana()
    {
        QCOMPARE(lineAddress(u" 上町1-2 ｸﾞﾘｰﾝﾋﾞﾙ3F\n"_s), u"上町1-2 グリーンビル3F"_s);
    }
};

QTEST_APPLESS_MAIN(TestHouseNumbers)
#include "tst_house_numbers.moc"
