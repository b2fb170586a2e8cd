#include "registers/import/import_desk.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace registers;

namespace
{

using State = ImportCandidate::State;

} // namespace

class TestImportMatches : public QObject
{
    Q_OBJECT

private slots:
    void showsDuplicatesBeforeStoring()
    {
        ImportDesk shop;
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, TEL1) VALUES (7, '山田 太郎', '03-1')"_s);
        auto candidates =
            shop.candidates(u"氏名,TEL1\n山田　太郎,０３－１\n山田太郎,03-2\n佐藤,\nサトウ,\nｻﾄｳ,\n"_s);
        QStringList states;
        for (const ImportCandidate &candidate : candidates)
            states << QString::number(static_cast<int>(candidate.state)) + candidate.remark;
        QCOMPARE(states, QStringList({u"1登録済み：納品先ID 7「山田 太郎」"_s, u"0"_s, u"0"_s,
                                      u"0フリガナを補います：ｻﾄｳ"_s,
                                      u"15 行目と同じ名前と電話番号です、フリガナを補います：ｻﾄｳ"_s}));
        candidates[4].taken = true;
        const auto count = shop.store(candidates);
        QVERIFY(count && *count == 4); // all but the first
    }

    void tellsOfRowsOfOneCodeOrKey_data()
    {
        QTest::addColumn<QString>("csv");
        QTest::addColumn<bool>("merges");
        QTest::addColumn<QStringList>("remarks");
        QTest::addColumn<QString>("stored"); // by what is ticked from the start
        const QString codes =
            u"コード,氏名,TEL1,区分\nA1,青木,03-1,1\nA1,青木,03-2,\nB2,森,,\nａ１,青木,,一般\n"_s;
        const QString others = u"同じコードか納品先IDの行がほかにあります（3 行目）"_s;
        QTest::newRow("codes") << codes << false
                               << QStringList{u"同じコードか納品先IDの行がほかにあります（3、5 行目）"_s,
                                              u"2 行目と同じコード「A1」です"_s, u""_s,
                                              u"2 行目と同じコード「ａ１」です"_s}
                               << u"青木|03-1|1 森|-|1"_s;
        QTest::newRow("codes, merged")
            << codes << true
            << QStringList{u"3 行目をまとめます：TEL1「03-1」→「03-2」、5 行目をまとめます"_s,
                           u"2 行目にまとめます（同じコード「A1」）"_s, u""_s,
                           u"2 行目にまとめます（同じコード「ａ１」）"_s}
            << u"青木|03-2|2 森|-|1"_s;
        const QString keys = u"納品先ID,氏名,TEL1\n90,青木,03-1\n９０,青木,03-2\n"_s;
        QTest::newRow("keys") << keys << false << QStringList{others, u"2 行目と同じ納品先ID「90」です"_s}
                              << u"青木|03-1|1"_s;
        QTest::newRow("other people")
            << u"コード,氏名\nA1,青木\nA1,森\n"_s << true
            << QStringList{u"名前が違います。3 行目をまとめます：納品先名1「青木」→「森」"_s,
                           u"2 行目にまとめます（同じコード「A1」）"_s}
            << u""_s;
        QTest::newRow("one by its code, another by its key")
            << u"コード,納品先ID,氏名,FAX\nA1,,青木,\nA1,11,青木,\n,11,青木,03-9\n"_s << true
            << QStringList{u"3 行目をまとめます、4 行目をまとめます"_s,
                           u"2 行目にまとめます（同じコード「A1」）"_s,
                           u"2 行目にまとめます（同じ納品先ID「11」）"_s}
            << u"青木|-|1"_s;
        QTest::newRow("refused first")
            << u"コード,氏名,登録日\nA1,青木,4/31\nA1,森,\n"_s << true
            << QStringList{u"登録日：日付として読み取れません"_s, u""_s} << u"森|-|1"_s;
    }
    void tellsOfRowsOfOneCodeOrKey()
    {
        QFETCH(QString, csv);
        QFETCH(bool, merges);
        QFETCH(QStringList, remarks);
        QFETCH(QString, stored);
        ImportDesk shop;
        shop.wants.mergesRepeats = merges;
        const auto candidates = shop.candidates(csv);
        QStringList said;
        for (const ImportCandidate &candidate : candidates)
            said << candidate.remark;
        QCOMPARE(said, remarks);
        QVERIFY(shop.store(candidates));
        QCOMPARE(shop.rows(u"SELECT 納品先名1, TEL1, 区分ID FROM 納品先 ORDER BY 納品先ID"_s).join(u' '),
                 stored);
    }

    // A customer that is there gets what the last row says, and a code that is taken waits.
    void mergesRowsIntoOneUpdate()
    {
        ImportDesk shop;
        shop.addCustomers();
        const QString csv = u"コード,住所1,TEL1\nA1,港区,03-8\nA1,,03-9\n"_s;
        shop.wants.match = ImportMatch::Code;
        QCOMPARE(shop.candidates(csv)[1].repeats, 2);
        shop.wants.mergesRepeats = true;
        QCOMPARE(*shop.store(shop.candidates(csv)), 1);
        QCOMPARE(shop.rows(u"SELECT 住所1, TEL1 FROM 納品先 WHERE 納品先ID = 7"_s),
                 QStringList{u"港区|03-9"_s});
        // Who is somebody else is said, and not stored unasked.
        const auto other = shop.candidates(u"コード,氏名\nA1,\nA1,佐々木\n"_s + u"Z1,森\nZ1,林\n"_s);
        QVERIFY2(other[2].remark.contains(u"名前が違います"_s), qPrintable(other[2].remark));
        QVERIFY(!other[0].taken && !other[2].taken);
        shop.wants.match = ImportMatch::None;
        const auto candidates = shop.candidates(u"コード,氏名\nａ１,高橋\n"_s);
        QCOMPARE(candidates[0].remark, u"登録済みのコード「A1」：納品先ID 7「山田商店」"_s);
        QCOMPARE(*shop.store(candidates), 0);
    }

    // Another clerk imported the same list, or another program wrote without raising the version.
    void storesNothingThatWasNotShown_data()
    {
        QTest::addColumn<int>("match");
        QTest::addColumn<QString>("csv");
        QTest::addColumn<QString>("meanwhile");
        const int none = static_cast<int>(ImportMatch::None);
        QTest::newRow("the same customer")
            << none << u"氏名,TEL1\n高橋,03-7\n"_s
            << u"INSERT INTO 納品先 (納品先ID, 納品先名1, TEL1) VALUES (20, '高橋', '037')"_s;
        QTest::newRow("the code") << static_cast<int>(ImportMatch::Code) << u"コード,氏名\nC3,高橋\n"_s
                                  << u"INSERT INTO 納品先 (納品先ID, コード) VALUES (20, 'C3')"_s;
        QTest::newRow("the key") << static_cast<int>(ImportMatch::Key) << u"納品先ID,氏名\n20,高橋\n"_s
                                 << u"INSERT INTO 納品先 (納品先ID) VALUES (20)"_s;
        QTest::newRow("the number that was counted up")
            << none << u"氏名,コード\n高橋,C3\n森,\n"_s
            << u"INSERT INTO 納品先 (納品先ID, コード) VALUES (20, '101')"_s;
        QTest::newRow("a value") << static_cast<int>(ImportMatch::Code) << u"コード,TEL1\nA1,03-9\n"_s
                                 << u"UPDATE 納品先 SET TEL1 = '03-8' WHERE 納品先ID = 7"_s;
    }
    void storesNothingThatWasNotShown()
    {
        QFETCH(int, match);
        QFETCH(QString, csv);
        QFETCH(QString, meanwhile);
        ImportDesk shop;
        shop.addCustomers();
        shop.run(u"INSERT INTO 納品先 (納品先ID, コード) VALUES (10, '100')"_s);
        shop.wants = {.match = static_cast<ImportMatch>(match), .numbersCodes = true};
        const auto candidates = shop.candidates(csv);
        QVERIFY(candidates.front().taken);
        shop.run(meanwhile);
        const QStringList before = shop.rows(u"SELECT * FROM 納品先"_s);
        const auto stored = shop.store(candidates);
        QVERIFY(!stored && stored.error().changed);
        QCOMPARE(shop.rows(u"SELECT * FROM 納品先"_s), before);
    }

    // One that is taken although it repeats a customer gets no code that has been given away since.
    void countsNoCodeTwice()
    {
        ImportDesk shop;
        shop.addCustomers();
        shop.run(u"INSERT INTO 納品先 (納品先ID, コード) VALUES (10, '100')"_s);
        shop.wants = {.numbersCodes = true};
        const QString csv = u"氏名,TEL1\n山田商店,03-1\n"_s;
        auto candidates = shop.candidates(csv);
        QCOMPARE(candidates.front().state, ImportCandidate::State::Duplicate);
        candidates.front().taken = true;
        shop.run(u"INSERT INTO 納品先 (納品先ID, コード) VALUES (20, '101')"_s);
        const auto stored = shop.store(candidates);
        QVERIFY(!stored && stored.error().changed);
        candidates = shop.candidates(csv);
        candidates.front().taken = true;
        QCOMPARE(*shop.store(candidates), 1);
        QCOMPARE(shop.rows(u"SELECT コード FROM 納品先 WHERE 納品先ID > 20"_s), QStringList{u"102"_s});
    }

    // Forms of a kanji tell people apart, whatever finds them both.
    void theFormOfANameIsNotChangedUnasked()
    {
        ImportDesk shop;
        shop.addCustomers();
        shop.run(u"UPDATE 納品先 SET 納品先名1 = '髙橋商店' WHERE 納品先ID = 7"_s);
        shop.wants.match = ImportMatch::Code;
        const auto candidates = shop.candidates(u"コード,氏名,〒,FAX\nA1,高橋商店,,1234567890123456\n"_s);
        QVERIFY(candidates[0].remark.startsWith(u"名前が違います。"_s));
        QVERIFY(candidates[0].remark.endsWith(u"、長いため途中まで取り込みます：FAX"_s));
        QCOMPARE(*shop.store(candidates), 0);
    }

    void showsWhatUpdatesWouldChange_data()
    {
        QTest::addColumn<int>("match");
        QTest::addColumn<QString>("csv");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("remark");
        const int byKey = static_cast<int>(ImportMatch::Key);
        const int byCode = static_cast<int>(ImportMatch::Code);
        const auto row = [](const char *name, int match, const QString &csv, State state,
                            const QString &remark) {
            QTest::newRow(name) << match << csv << static_cast<int>(state) << remark;
        };
        const QString who = u"納品先ID 7「山田商店」"_s;
        row("telephone", byKey, u"納品先ID,TEL1\n７,０３－９\n"_s, State::Update,
            who + u" を更新：TEL1「03-1」→「03-9」"_s);
        row("empty cells", byKey, u"納品先ID,納品先名1,TEL1,区分,住所1\n7,山田商店,,,\n"_s, State::Same,
            who + u" と同じ内容です"_s);
        row("by names", byCode, u"コード,締め日,消費税区分,区分\nA1,20日,内税,一般\n"_s, State::Update,
            who +
                u" を更新：区分ID「得意先」→「一般」、締め日「末日」→「20 日」、消費税区分「外税 （納品時）」→「内税」"_s);
        row("other name", byCode, u"コード,納品先名1\nA1,鈴木\n"_s, State::Update,
            u"名前が違います。"_s + who + u" を更新：納品先名1「山田商店」→「鈴木」"_s);
        row("two of one code", byCode, u"コード,TEL1\nB2,1\n"_s, State::Refused,
            u"コード「B2」の納品先が複数あるため、どれを更新するか分かりません"_s);
        row("nobody", byKey, u"納品先ID,氏名\n99,高橋\n"_s, State::Ready, u""_s);
        row("no number", byKey, u"納品先ID,氏名\n七,鈴木\n"_s, State::Refused,
            u"納品先ID：番号ではありません"_s);
        row("keys do not count", byCode, u"コード,納品先ID,氏名,区分\n,7,高橋,1\n"_s, State::Ready, u""_s);
        row("nobody, no name", byCode, u"コード,TEL1\nC3,1\n"_s, State::Refused,
            u"納品先名1：入力されていません"_s);
    }
    void showsWhatUpdatesWouldChange()
    {
        QFETCH(int, match);
        QFETCH(QString, csv);
        QFETCH(int, state);
        QFETCH(QString, remark);
        ImportDesk shop;
        shop.addCustomers();
        shop.wants.match = static_cast<ImportMatch>(match);
        const auto candidates = shop.candidates(csv);
        QCOMPARE(candidates.size(), 1U);
        QCOMPARE(candidates[0].remark, remark);
        QCOMPARE(static_cast<int>(candidates[0].state), state);
        const bool isPlain =
            static_cast<State>(state) == State::Ready || static_cast<State>(state) == State::Update;
        QCOMPARE(candidates[0].taken, isPlain && !remark.startsWith(u"名前"_s));
    }

    void updatesCustomers()
    {
        ImportDesk shop;
        shop.addCustomers();
        shop.wants.match = ImportMatch::Code;
        auto candidates = shop.candidates(
            u"コード,納品先名1,TEL1,住所1,締め日\nA1,,03-9,港区,20\nX9,新店,,,\nA1,,03-8,,\n"_s);
        QCOMPARE(candidates[2].remark, u"2 行目と同じ納品先（ID 7）です"_s);
        const QString all =
            u"SELECT 納品先ID, コード, 納品先名1, TEL1, 住所1, 締め日, 納品先名キー, 更新日 FROM 納品先 "
            "WHERE コード <> 'B2' ORDER BY 納品先ID"_s;
        const QStringList before = shop.rows(all);
        // Another program's change meanwhile stops all of it.
        shop.run(u"UPDATE 納品先 SET メモ = 'x', 版 = 5 WHERE 納品先ID = 7"_s);
        const auto refused = shop.store(candidates);
        QVERIFY(!refused && refused.error().changed);
        QCOMPARE(shop.rows(all), before);
        candidates = shop.candidates(u"コード,納品先名1,TEL1,住所1,締め日\nA1,,03-9,港区,20\nX9,新店,,,\n"_s);
        QCOMPARE(*shop.store(candidates), 2);
        QCOMPARE(shop.rows(all),
                 (QStringList{u"7|A1|山田商店|03-9|港区|20|山田商店 A1 03-9 ﾔﾏﾀﾞ|2026-04-01"_s,
                              u"10|X9|新店|-|-|0|新店 X9  |2026-04-01"_s}));
        QVERIFY(shop.value(u"SELECT 版 FROM 納品先 WHERE 納品先ID = 7"_s).toInt() != 5);
    }
};

QTEST_GUILESS_MAIN(TestImportMatches)
#include "tst_import_matches.moc"
