#include "text/cp932.h"
#include "text/format_value.h"
#include "text/numbers.h"
#include "text/width.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

class TestText : public QObject
{
    Q_OBJECT

private slots:
    void cp932Bytes_data();
    void cp932Bytes();
    void codePageThereAndBack_data();
    void codePageThereAndBack();
    void malformedCodePageBytes_data();
    void malformedCodePageBytes();
    void leftCp932_data();
    void leftCp932();

    void width_data();
    void width();
    void katakana();
    void reading_data();
    void reading();
    void fullWidthBlanks();

    void parseNumber_data();
    void parseNumber();
    void parseInteger_data();
    void parseInteger();
    void formats_data();
    void formats();
    void valuesOfColumns_data();
    void valuesOfColumns();
};

void TestText::cp932Bytes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QString>("without");

    QTest::newRow("empty") << u""_s << 0 << u""_s;
    QTest::newRow("44 half-width") << u"a"_s.repeated(44) << 44 << u""_s;
    QTest::newRow("45 half-width") << u"ｱ"_s.repeated(45) << 45 << u""_s;
    QTest::newRow("22 full-width") << u"漢"_s.repeated(22) << 44 << u""_s;
    QTest::newRow("22 full-width and one") << u"漢"_s.repeated(22) + u'-' << 45 << u""_s;
    QTest::newRow("vendors' characters") << u"①㈱髙﨑Ⅲ～"_s << 12 << u""_s;
    QTest::newRow("other systems' code points") << u"〜−‖—¢£¬"_s << 14 << u""_s;
    QTest::newRow("half-width yen and overline") << u"¥‾"_s << 2 << u""_s;
    QTest::newRow("controls") << u"\t\r\n"_s << 3 << u""_s;
    QTest::newRow("emoji") << u"a😀b😀"_s << 6 << u"😀"_s;
    QTest::newRow("no place, in order") << u"𠮷野é한𠮷é"_s << 12 << u"𠮷é한"_s;
    QTest::newRow("half a pair") << u"a"_s + QChar(0xD83D) << 3 << QString(QChar(0xD83D));
}

void TestText::cp932Bytes()
{
    QFETCH(QString, text);
    QFETCH(QString, without);
    QTEST(text::cp932Bytes(text), "bytes");
    QCOMPARE(text::notInCp932(text), without);
    QCOMPARE(text::toCp932(text).has_value(), without.isEmpty());
    if (without.isEmpty())
        QCOMPARE(text::toCp932(text)->size(), text::cp932Bytes(text));
}

void TestText::codePageThereAndBack_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<QString>("back");

    QTest::newRow("mixed") << u"Aｱあ亜"_s << "41b182a0889f"_ba << u"Aｱあ亜"_s;
    QTest::newRow("trail byte of a backslash") << u"表ソ"_s << "955c835c"_ba << u"表ソ"_s;
    QTest::newRow("vendors'") << u"①㈱髙﨑"_s << "8740878afbfcfab1"_ba << u"①㈱髙﨑"_s;
    QTest::newRow("twins") << u"〜−"_s << "8160817c"_ba << u"～－"_s;
    QTest::newRow("NUL") << QString(QChar(u'\0')) << "00"_ba << QString(QChar(u'\0'));
}

void TestText::codePageThereAndBack()
{
    QFETCH(QString, text);
    const std::optional<QByteArray> bytes = text::toCp932(text);
    QVERIFY(bytes);
    QTEST(bytes->toHex(), "hex");
    QTEST(text::fromCp932(*bytes).value_or(u"malformed"_s), "back");
}

void TestText::malformedCodePageBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("lead byte at the end") << "a\x82"_ba;
    QTest::newRow("no trail byte") << "\x82 a"_ba;
    QTest::newRow("no lead byte") << "\xFF"_ba;
    QTest::newRow("unassigned") << "\x85\x9F"_ba;
}

void TestText::malformedCodePageBytes()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(!text::fromCp932(bytes));
}

void TestText::leftCp932_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QString>("head");
    QTest::newRow("all") << u"山a"_s << 3 << u"山a"_s;
    QTest::newRow("never half a character") << u"山田"_s << 3 << u"山"_s;
    QTest::newRow("nothing after the first that is too wide") << u"a山b"_s << 2 << u"a"_s;
    QTest::newRow("a pair stays whole") << u"a😀b"_s << 3 << u"a😀"_s;
    QTest::newRow("a pair falls whole") << u"a😀b"_s << 2 << u"a"_s;
    QTest::newRow("no room") << u"a"_s << 0 << u""_s;
}

void TestText::leftCp932()
{
    QFETCH(QString, text);
    QFETCH(int, bytes);
    QTEST(text::leftCp932(text, bytes), "head");
}

void TestText::width_data()
{
    QTest::addColumn<QString>("full");
    QTest::addColumn<QString>("half");
    QTest::addColumn<QString>("halfAscii");
    QTest::addColumn<QString>("fullAgain");

    const auto row = [](const char *name, const QString &full, const QString &half, const QString &ascii,
                        const QString &again) { QTest::newRow(name) << full << half << ascii << again; };
    row("ASCII", u"！０９ＡＺａｚ～　"_s, u"!09AZaz~ "_s, u"!09AZaz~ "_s, u"！０９ＡＺａｚ～　"_s);
    row("telephone", u"０３−１２３４－５６７８"_s, u"03-1234-5678"_s, u"03-1234-5678"_s,
        u"０３－１２３４－５６７８"_s);
    row("kana", u"アァヴガパッヲンー"_s, u"ｱｧｳﾞｶﾞﾊﾟｯｦﾝｰ"_s, u"アァヴガパッヲンー"_s, u"アァヴガパッヲンー"_s);
    row("every voiced row", u"ザヂヅドバボペポヷヺ"_s, u"ｻﾞﾁﾞﾂﾞﾄﾞﾊﾞﾎﾞﾍﾟﾎﾟﾜﾞｦﾞ"_s, u"ザヂヅドバボペポヷヺ"_s,
        u"ザヂヅドバボペポヷヺ"_s);
    row("hiragana", u"きゃっぷ"_s, u"ｷｬｯﾌﾟ"_s, u"きゃっぷ"_s, u"キャップ"_s);
    row("punctuation", u"。「」、・゛゜"_s, u"｡｢｣､･ﾞﾟ"_s, u"。「」、・゛゜"_s, u"。「」、・゛゜"_s);
    row("no half-width form", u"ヶヵヮヰゐ漢―‐😀"_s, u"ヶヵヮヰゐ漢―‐😀"_s, u"ヶヵヮヰゐ漢―‐😀"_s,
        u"ヶヵヮヰゐ漢―‐😀"_s);
    row("yen", u"￥"_s, u"\\"_s, u"\\"_s, u"＼"_s);
}

void TestText::width()
{
    QFETCH(QString, full);
    QFETCH(QString, half);
    QCOMPARE(text::toHalfWidth(full), half);
    QCOMPARE(text::toHalfWidth(half), half);
    QTEST(text::toHalfWidthAscii(full), "halfAscii");
    QTEST(text::toFullWidth(half), "fullAgain");
}

void TestText::katakana() { QCOMPARE(text::toKatakana(u"ぁんゔゖゝゞー漢ｱaア"), u"ァンヴヶヽヾー漢ｱaア"_s); }

void TestText::reading_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("reading");
    QTest::newRow("half-width") << u"ｷｬｯﾁｰ"_s << u"ｷﾔﾂﾁ-"_s;
    QTest::newRow("katakana") << u"キャッチー"_s << u"ｷﾔﾂﾁ-"_s;
    QTest::newRow("hiragana") << u"きゃっちー"_s << u"ｷﾔﾂﾁ-"_s;
    QTest::newRow("every small kana") << u"ｧｨｩｪｫｬｭｮｯ"_s << u"ｱｲｳｴｵﾔﾕﾖﾂ"_s;
    QTest::newRow("voiced") << u"ヴァージ"_s << u"ｳﾞｱ-ｼﾞ"_s;
}

void TestText::reading()
{
    QFETCH(QString, typed);
    QFETCH(QString, reading);
    QCOMPARE(text::normalisedReading(typed), reading);
    QCOMPARE(text::normalisedReading(reading), reading);
}

void TestText::fullWidthBlanks()
{
    QCOMPARE(text::withoutFullWidthBlanks(u" 　山　田 太郎　 "), u"山田 太郎"_s);
}

void TestText::parseNumber_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("value"); // NaN: no number

    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    const auto row = [](const QString &typed, double value) {
        QTest::addRow("'%s'", qPrintable(typed.left(20))) << typed << value;
    };
    row(u"１２"_s, 12);
    row(u"1,234"_s, 1234);
    row(u"１，２３４，５６７．８９"_s, 1234567.89);
    row(u"－5"_s, -5);
    row(u"−５"_s, -5);
    row(u"+5"_s, 5);
    row(u"¥12,345,678.5円"_s, 12345678.5);
    row(u"　 0.1 "_s, 0.1);
    row(u".5"_s, 0.5);
    row(u"-.5"_s, -0.5);
    row(u"5."_s, 5);
    row(u"007"_s, 7);
    for (const QString &typed : {u"▲500"_s, u"△５００"_s, u"-500"_s, u"ー500"_s, u"ｰ500"_s, u"－500"_s,
                                 u"—500"_s, u"▲￥500円"_s, u"¥-500"_s, u"\\-500 円"_s})
        row(typed, -500);
    for (const QString &typed : {u"￥500"_s, u"¥500.00"_s, u"＼500"_s, u"５００円"_s, u" +¥500 円 "_s})
        row(typed, 500);
    for (const QString &typed :
         {u""_s,       u" "_s,         u"-"_s,      u"."_s,   u"-."_s,    u"1.2.3"_s,    u"--1"_s,
          u"- 1"_s,    u"1-"_s,        u"1 2"_s,    u",1"_s,  u"1,"_s,    u"1,,2"_s,     u"1.2,3"_s,
          u"円"_s,     u"▲"_s,         u"¥"_s,      u"▲-1"_s, u"-▲1"_s,   u"¥¥1"_s,      u"1円円"_s,
          u"5ー"_s,    u"1▲2"_s,       u"1,2,円"_s, u"2,5"_s, u"12,34"_s, u"1234,567"_s, u"1,2345"_s,
          u"０，５"_s, u"12,345,67"_s, u"-1,23"_s,  u"1e3"_s, u"1e400"_s, u"inf"_s,      u"nan"_s,
          u"0x10"_s,   u"一"_s,        u"٣"_s})
        row(typed, none);
    row(u"1"_s + u"0"_s.repeated(300), 1e300);
    QTest::newRow("not finite") << u"9"_s.repeated(400) << none;
    QTest::newRow("not finite, with decimals") << u"-"_s + u"9"_s.repeated(400) + u".5"_s << none;
    QTest::newRow("next to nothing") << u"-0."_s + u"0"_s.repeated(400) + u"1"_s << 0.0;
}

void TestText::parseNumber()
{
    QFETCH(QString, typed);
    QFETCH(double, value);
    const std::optional<double> parsed = text::parseNumber(typed);
    QCOMPARE(parsed.has_value(), !std::isnan(value));
    if (parsed)
        QVERIFY2(*parsed == value, qPrintable(QString::number(*parsed, 'g', 17)));
    QCOMPARE(text::numberOrZero(typed), std::isnan(value) ? 0.0 : value);
    QVERIFY(!std::signbit(text::parseNumber(u"-0").value_or(-1)));
}

void TestText::parseInteger_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("value");
    QTest::newRow("largest") << u"9,223,372,036,854,775,807"_s << u"9223372036854775807"_s;
    QTest::newRow("smallest") << u"-9223372036854775808"_s << u"-9223372036854775808"_s;
    QTest::newRow("too large") << u"9223372036854775808"_s << u""_s;
    QTest::newRow("far too large") << u"1"_s.repeated(400) << u""_s;
    QTest::newRow("whole with decimals") << u"１２．００"_s << u"12"_s;
    QTest::newRow("not whole") << u"12.01"_s << u""_s;
    QTest::newRow("plus") << u"＋３"_s << u"3"_s;
    QTest::newRow("no number") << u"-"_s << u""_s;
    QTest::newRow("no group of three") << u"1,2"_s << u""_s;
    QTest::newRow("a name") << u"100円"_s << u""_s;
}

void TestText::parseInteger()
{
    QFETCH(QString, typed);
    const std::optional<qint64> parsed = text::parseInteger(typed);
    QTEST(parsed ? QString::number(*parsed) : QString(), "value");
}

void TestText::formats_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("quantity");
    QTest::addColumn<QString>("plain");

    const auto row = [](const char *name, double value, const QString &amount, const QString &quantity,
                        const QString &plain) {
        QTest::newRow(name) << value << amount << quantity << plain;
    };
    row("zero", 0, u"0"_s, u"0"_s, u"0"_s);
    row("negative zero", -0.0, u"0"_s, u"0"_s, u"0"_s);
    row("three digits", 999, u"999"_s, u"999"_s, u"999"_s);
    row("four digits", 1000, u"1,000"_s, u"1,000"_s, u"1000"_s);
    row("negative", -123456, u"-123,456"_s, u"-123,456"_s, u"-123456"_s);
    row("negative, seven digits", -1234567, u"-1,234,567"_s, u"-1,234,567"_s, u"-1234567"_s);
    row("half", 0.5, u"1"_s, u"0.50"_s, u"0.5"_s);
    row("half, even", 2.5, u"3"_s, u"2.50"_s, u"2.5"_s);
    row("negative half", -2.5, u"-3"_s, u"-2.50"_s, u"-2.5"_s);
    row("below half", -0.4, u"0"_s, u"-0.40"_s, u"-0.4"_s);
    row("half of the last place", 2.675, u"3"_s, u"2.68"_s, u"2.675"_s);
    row("less than the last place", -0.001, u"0"_s, u"0.00"_s, u"-0.001"_s);
    row("carry", 999.995, u"1,000"_s, u"1,000.00"_s, u"999.995"_s);
    row("binary noise", 0.1 * 3, u"0"_s, u"0.30"_s, u"0.3"_s);
    row("whole but for noise", 0.1 * 30, u"3"_s, u"3"_s, u"3"_s);
    row("noise below half", 1.15 * 100 * 1.1 + 0, u"127"_s, u"126.50"_s, u"126.5"_s);
    row("largest", 1e15, u"1,000,000,000,000,000"_s, u"1,000,000,000,000,000"_s, u"1000000000000000"_s);
    row("below the largest", 999999999999999, u"999,999,999,999,999"_s, u"999,999,999,999,999"_s,
        u"999999999999999"_s);
    row("beyond", 9007199254740991, u"9,007,199,254,740,991"_s, u"9,007,199,254,740,991"_s,
        u"9007199254740991"_s);
    const QString none = u"計算不能"_s;
    row("longer than any", 1e18, none, none, u"1000000000000000000"_s);
    row("infinite", -std::numeric_limits<double>::infinity(), none, none, none);
    row("not a number", std::numeric_limits<double>::quiet_NaN(), none, none, none);
    row("no exponent", 0.00001, u"0"_s, u"0.00"_s, u"0.00001"_s);
}

void TestText::formats()
{
    QFETCH(double, value);
    QTEST(text::formatAmount(value), "amount");
    QTEST(text::formatQuantity(value), "quantity");
    QTEST(text::formatPlain(value), "plain");
}

void TestText::valuesOfColumns_data()
{
    using enum base::Format;
    QTest::addColumn<base::Format>("format");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("shown");
    QTest::newRow("nothing") << Amount << QVariant() << QString();
    QTest::newRow("amount") << Amount << QVariant(-1234.5) << u"-1,235"_s;
    QTest::newRow("amount that cannot be told") << Amount << QVariant(std::nan("")) << u"計算不能"_s;
    QTest::newRow("text where an amount should be") << Amount << QVariant(u"三千"_s) << u"三千"_s;
    QTest::newRow("quantity") << Quantity << QVariant(2.5) << u"2.50"_s;
    QTest::newRow("key") << Number << QVariant(12345) << u"12345"_s;
    QTest::newRow("number in a column of texts") << Text << QVariant(0.1 * 3) << u"0.3"_s;
    QTest::newRow("date") << Date << QVariant(u"2026-04-01"_s) << u"2026/04/01"_s;
    // A surrogate pair is not parted.
    const QString pairs = u"𠮷"_s.repeated(3000);
    QTest::newRow("far too long") << Text << QVariant(pairs) << pairs.first(2000) + u'…';
    QTest::newRow("far too long, within a pair")
        << Text << QVariant(u'a' + pairs) << u'a' + pairs.first(1998) + u'…';
    QTest::newRow("far too long a date")
        << Date << QVariant(QString(6000, u'-')) << QString(2000, u'/') + u'…';
    QTest::newRow("text with a hyphen") << Text << QVariant(u"A-1"_s) << u"A-1"_s;
}

void TestText::valuesOfColumns()
{
    QFETCH(base::Format, format);
    QFETCH(QVariant, value);
    QTEST(text::formatValue(format, value), "shown");
}

QTEST_APPLESS_MAIN(TestText)
#include "tst_text.moc"
