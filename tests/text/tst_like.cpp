#include "text/like.h"
#include "text/search_pattern.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace
{

std::string utf8(QStringView s) { return s.toUtf8().toStdString(); }

// LIKE by its definition, on texts that are folded already.
bool naiveLike(std::u16string_view pattern, std::u16string_view text)
{
    if (pattern.empty())
        return text.empty();
    if (pattern.front() == u'%')
        return naiveLike(pattern.substr(1), text) || (!text.empty() && naiveLike(pattern, text.substr(1)));
    return !text.empty() && (pattern.front() == u'_' || pattern.front() == text.front()) &&
           naiveLike(pattern.substr(1), text.substr(1));
}

QString randomText(std::mt19937 &random, QStringView alphabet, std::size_t longest)
{
    QString s;
    for (std::size_t left = random() % (longest + 1); left > 0; --left)
        s += alphabet[static_cast<qsizetype>(random() % static_cast<std::size_t>(alphabet.size()))];
    return s;
}

} // namespace

// The LIKE of the search boxes, and the patterns that are made of what is typed there.
class TestLike : public QObject
{
    Q_OBJECT

private slots:
    void likeFolds_data();
    void likeFolds();
    void likeTellsApart_data();
    void likeTellsApart();
    void likeWildcards_data();
    void likeWildcards();
    void likeEscape();
    void likeAgreesWithItsDefinition();
    void likeWithMalformedUtf8();
    void wordsOfASearch();
    void patternsOfAWord_data();
    void patternsOfAWord();
};

void TestLike::likeFolds_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::newRow("hiragana, katakana") << u"やまだ"_s << u"ヤマダ"_s;
    QTest::newRow("half-width") << u"ﾔﾏﾀﾞ"_s << u"やまだ"_s;
    QTest::newRow("half-width base, full-width mark") << u"ﾊ゜"_s << u"ぱ"_s;
    QTest::newRow("combining mark") << u"か\u3099"_s << u"ガ"_s;
    QTest::newRow("small kana") << u"ｷｬｯ"_s << u"きゃっ"_s;
    QTest::newRow("v") << u"ゔｳﾞ"_s << u"ヴヴ"_s;
    QTest::newRow("upper and lower case") << u"AbCéЖΩ"_s << u"aBcÉжω"_s;
    QTest::newRow("full-width ASCII") << u"Ｔｏｋｙｏ－２０"_s << u"TOKYO-20"_s;
    QTest::newRow("blank") << u"山　田"_s << u"山 田"_s;
    QTest::newRow("long vowel") << u"ｰ"_s << u"ー"_s;
    QTest::newRow("punctuation") << u"｡｢｣､･"_s << u"。「」、・"_s;
    QTest::newRow("wave dash") << u"〜−"_s << u"～－"_s;
    QTest::newRow("printers' forms") << u"髙﨑"_s << u"高崎"_s;
    QTest::newRow("old forms") << u"渡邊廣國"_s << u"渡辺広国"_s;
    QTest::newRow("a third form") << u"渡邉"_s << u"渡邊"_s;
    QTest::newRow("four forms") << u"齋斎斉齊"_s << u"斉齊齋斎"_s;
    QTest::newRow("beyond the plane") << u"𠮷野"_s << u"吉野"_s;
    QTest::newRow("other standards' doubles") << u"神\ufa19德"_s << u"神神徳"_s;
    QTest::newRow("iteration mark") << u"ゞ"_s << u"ヽﾞ"_s;
}

void TestLike::likeFolds()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    QCOMPARE(text::folded(one), text::folded(other));
    const QString mixed = u"株"_s + one + u"店"_s;
    for (const QString &pattern : {QString(u'%' + other + u'%'), QString(u"株"_s + other + u"店"_s)})
        QVERIFY2(text::LikePattern(utf8(pattern)).matches(utf8(mixed)), qPrintable(pattern));
    QVERIFY(text::LikePattern(utf8(one)).matches(utf8(other)));
}

void TestLike::likeTellsApart_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::newRow("voiced or not") << u"%ｶ%"_s << u"ｶﾞ"_s;
    QTest::newRow("voiced or half-voiced") << u"%バ%"_s << u"ﾊﾟ"_s;
    QTest::newRow("small kana") << u"%や%"_s << u"ゃ"_s;
    QTest::newRow("counter ka") << u"%ケ%"_s << u"ヶ"_s;
    QTest::newRow("kanji") << u"%土%"_s << u"士"_s;
    QTest::newRow("kanji that look alike") << u"%渡辺%"_s << u"渡部"_s;
    QTest::newRow("the minus and the long vowel") << u"%-%"_s << u"ー"_s;
    QTest::newRow("supplementary characters") << u"%𠮷%"_s << u"𠮶"_s;
    QTest::newRow("kanji of which the bytes are split") << u"%山田%"_s << u"山川田"_s;
}

void TestLike::likeTellsApart()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QVERIFY(!text::LikePattern(utf8(pattern)).matches(utf8(text)));
}

void TestLike::likeWildcards_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("matches");
    const auto row = [](const QString &pattern, const QString &text, bool matches) {
        QTest::addRow("'%s' '%s'", qPrintable(pattern), qPrintable(text)) << pattern << text << matches;
    };
    row(u""_s, u""_s, true);
    row(u""_s, u"a"_s, false);
    row(u"%"_s, u""_s, true);
    row(u"%%"_s, u"山"_s, true);
    row(u"_"_s, u""_s, false);
    row(u"O%"_s, u"O1001"_s, true);
    row(u"O%"_s, u"R-O1"_s, false);
    row(u"%店"_s, u"商店"_s, true);
    row(u"%店"_s, u"商店街"_s, false);
    row(u"%店"_s, u"店商店"_s, true);
    row(u"aa%aa"_s, u"aaa"_s, false);
    row(u"山%田"_s, u"山"_s, false);
    row(u"_"_s, u"ｶﾞ"_s, true);
    row(u"__"_s, u"ｶﾞ"_s, false);
    row(u"_"_s, u"😀"_s, true);
    row(u"a_%"_s, u"a"_s, false);
    row(u"％"_s, u"山"_s, false);
    row(u"％＿"_s, u"%_"_s, true);
    row(u"%b"_s, u"a"_s + QChar(u'\0') + u"b"_s, true);
    row(u"a_b"_s, u"a"_s + QChar(u'\0') + u"b"_s, true);
    row(u"%"_s + u"山"_s.repeated(100) + u"%"_s, u"川"_s + u"山"_s.repeated(100), true);
    row(u"%"_s + u"山"_s.repeated(100) + u"%"_s, u"川"_s + u"山"_s.repeated(99), false);
    row(u"%終"_s, u"あ"_s.repeated(5000) + u"終"_s, true);
}

void TestLike::likeWildcards()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QTEST(text::LikePattern(utf8(pattern)).matches(utf8(text)), "matches");
}

void TestLike::likeEscape()
{
    const text::LikePattern percent("100\\%%", U'\\');
    QVERIFY(percent.matches("100% wool"));
    QVERIFY(!percent.matches("1000"));
    QVERIFY(text::LikePattern("a\\_b", U'\\').matches("a_b"));
    QVERIFY(!text::LikePattern("a\\_b", U'\\').matches("axb"));
    QVERIFY(text::LikePattern("%\\\\", U'\\').matches("a\\"));
}

void TestLike::likeAgreesWithItsDefinition()
{
    std::mt19937 random(932);
    int matches = 0;
    for (int i = 0; i < 50'000; ++i) {
        // Names and, now and then, telephone numbers, which are looked for in another way.
        const bool number = i % 10 == 1;
        const QString pattern = number ? u'%' + randomText(random, u"0０1-−", 4) + u'%'
                                       : randomText(random, u"%%_山川aａかｶﾞカ", 7);
        const QString text =
            number ? randomText(random, u"0０1１-－−ｶﾞ山", 10) : randomText(random, u"山川山AａかｶﾞガP", 10);
        // Folding leaves "%" and "_" alone, and no mark joins across them.
        const bool expected = naiveLike(text::folded(pattern), text::folded(text));
        QVERIFY2(text::LikePattern(utf8(pattern)).matches(utf8(text)) == expected,
                 qPrintable(pattern + u" | "_s + text));
        matches += expected ? 1 : 0;
    }
    QVERIFY(matches > 2'000); // the alphabet is small enough for both outcomes
}

void TestLike::likeWithMalformedUtf8()
{
    // Buffers of just the text's size, so that the sanitizer sees a read beyond.
    std::mt19937 random(1);
    const std::string sample = utf8(u"a山😀ｶﾞ");
    for (std::size_t size = 0; size <= sample.size(); ++size) {
        const std::vector<char> cut(sample.begin(), sample.begin() + static_cast<std::ptrdiff_t>(size));
        const std::string_view text(cut.data(), cut.size());
        QVERIFY(text::LikePattern("%").matches(text));
        QCOMPARE(text::LikePattern("a%").matches(text), size > 0);
        QCOMPARE(text::LikePattern(utf8(u"%山%")).matches(text), size >= 4);
    }
    for (int i = 0; i < 20'000; ++i) {
        std::vector<char> bytes(random() % 12);
        for (char &byte : bytes)
            byte = static_cast<char>(random() % 3 == 0 ? 0xE3 : random() % 256);
        const std::string_view text(bytes.data(), bytes.size());
        QVERIFY(text::LikePattern(text).matches(text));
    }
    QVERIFY(!text::LikePattern("%/%").matches("\xC0\xAF"));     // overlong
    QVERIFY(!text::LikePattern("%/%").matches("\xE0\x80\xAF")); // overlong
}

void TestLike::wordsOfASearch()
{
    QCOMPARE(text::searchWords(u"　高橋　花子 03-12　"_s), QStringList({u"高橋"_s, u"花子"_s, u"03-12"_s}));
    QCOMPARE(text::searchWords(u" 　"_s), QStringList());
    QCOMPARE(text::searchWords(u"高橋\n"_s.repeated(5000)).size(), text::mostSearchWords);
}

void TestLike::patternsOfAWord_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("found");
    const auto row = [](const QString &word, const QString &key, bool found) {
        QTest::addRow("%s", qPrintable(word)) << key << found;
    };
    row(u"しょうじ"_s, u"東海林 ｼﾖｳｼﾞ"_s, true);
    row(u"ｼｮｳｼﾞ"_s, u"東海林 ｼﾖｳｼﾞ"_s, true);
    row(u"ショウジ"_s, u"ショウジ商店"_s, true); // small kana as they stand in a name
    row(u"コーヒー"_s, u"珈琲 ｺ-ﾋ-"_s, true);
    row(u"コーヒ"_s, u"コーヒー館"_s, true);
    row(u"50%"_s, u"500円"_s, false);
    row(u"_"_s, u"山田"_s, false);
    row(u"\\"_s, u"A\\B"_s, true);
}

void TestLike::patternsOfAWord()
{
    QFETCH(QString, key);
    QFETCH(bool, found);
    bool any = false;
    for (const QString &pattern : text::keyPatterns(QString::fromUtf8(QTest::currentDataTag())))
        any = any || text::LikePattern(utf8(pattern), U'\\').matches(utf8(key));
    QCOMPARE(any, found);
}

QTEST_APPLESS_MAIN(TestLike)
#include "tst_like.moc"
