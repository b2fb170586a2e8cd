#include "text/japanese_order.h"

#include <QTest>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

// The order of the lists that a person reads.
class TestJapaneseOrder : public QObject
{
    Q_OBJECT

private slots:
    void sorts_data()
    {
        QTest::addColumn<QString>("sorted"); // by "/"
        QTest::newRow("what a shop sells") << u"Aセット/ａセット/リンゴ/ﾘﾝｺﾞ/愛媛みかん/和梨"_s;
        QTest::newRow("fifty sounds") << u"あめ/アメリカ/いちご/カキ/ガム/かりん/きなこ/ん"_s;
        QTest::newRow("voiced count last") << u"はし/ばし/ぱし/はしら"_s;
        QTest::newRow("small kana count last") << u"キヤノ/キャノン/きやのんA"_s;
        QTest::newRow("numbers by their value") << u"5kg/5ｋｇ箱/１０ｋｇ/10kg箱/100g"_s;
        QTest::newRow("zeros before") << u"A007/A7/A8"_s;
        QTest::newRow("signs first") << u"★特選/12/B/ｱ/亜/𠮷"_s;
        QTest::newRow("kanji by the code page") << u"安曇野/伊那/松本/上田/諏訪/長野"_s;
        QTest::newRow("a beginning first") << u"梨/梨園/梨園A"_s;
        QTest::newRow("nothing") << u"/ /あ"_s;
        QTest::newRow("a very long number") << u"12345678901234567890/12345678901234567891"_s;
    }

    void sorts()
    {
        QFETCH(QString, sorted);
        const QStringList expected = sorted.split(u'/');
        std::mt19937 random(1);
        for (int round = 0; round < 20; ++round) {
            QStringList shuffled = expected;
            std::shuffle(shuffled.begin(), shuffled.end(), random);
            std::sort(shuffled.begin(), shuffled.end(), text::comesBefore);
            QCOMPARE(shuffled, expected);
        }
    }

    // A sort or an index over texts that do not compare alike both ways loses rows.
    void isAnOrderOfAnyBytes()
    {
        std::mt19937 random(7);
        const auto bytes = [&random] {
            const QByteArray pieces[] = {"0",  "1",  "09",       "a",    "A",  "ガ", "が",
                                         "ｶﾞ", "か", "\xE3\x82", "\xFF", "亜", "-",  "ー"};
            QByteArray text;
            for (std::size_t left = random() % 12; left > 0; --left)
                text += pieces[random() % std::size(pieces)];
            return text.toStdString();
        };
        std::vector<std::string> texts(60);
        std::generate(texts.begin(), texts.end(), bytes);
        const auto sign = [](int value) { return (value > 0) - (value < 0); };
        for (const std::string &a : texts) {
            for (const std::string &b : texts) {
                const int order = sign(text::compareJapanese(a, b));
                QCOMPARE(order, -sign(text::compareJapanese(b, a)));
                QCOMPARE(order == 0, a == b);
                for (const std::string &c : texts)
                    QVERIFY(order >= 0 || text::compareJapanese(b, c) >= 0 ||
                            text::compareJapanese(a, c) < 0);
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestJapaneseOrder)
#include "tst_japanese_order.moc"
