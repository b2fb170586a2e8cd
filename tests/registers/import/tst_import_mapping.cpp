#include "registers/import/import_desk.h"
#include "registers/import/import_mapping.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace registers;

class TestImportMapping : public QObject
{
    Q_OBJECT

private slots:
    void assignsByHeadings_data()
    {
        QTest::addColumn<QString>("headings");
        QTest::addColumn<QString>("fields");
        QTest::newRow("own names") << u"納品先ID,納品先名1,郵便番号,住所1,TEL1"_s
                                   << u"納品先ID 納品先名1 郵便番号 住所1 TEL1"_s;
        QTest::newRow("export") << u"ﾌﾘｶﾞﾅ,ﾒｰﾙｱﾄﾞﾚｽ,備考,更新日,納品先名キー"_s
                                << u"フリガナ メール メモ - -"_s;
        QTest::newRow("other words") << u"お名前,ふりがな,〒,住 所,電話番号,携帯,E-mail"_s
                                     << u"納品先名1 フリガナ 郵便番号 住所1 TEL1 TEL2 メール"_s;
        QTest::newRow("widths") << u"ＴＥＬ１,ｆａｘ,住所２,納品先名１"_s << u"TEL1 FAX 住所2 納品先名1"_s;
        QTest::newRow("own name first") << u"会社名,納品先名1,氏名"_s << u"- 納品先名1 -"_s;
        QTest::newRow("none") << u"山田太郎,東京都"_s << u"- -"_s;
    }
    void assignsByHeadings()
    {
        QFETCH(QString, headings);
        QFETCH(QString, fields);
        const QStringList row = headings.split(u',');
        const ImportAssignment assignment = assignmentByHeadings(row, row.size());
        QCOMPARE(assigned(assignment), fields);
        QCOMPARE(assignment.hasHeadings, fields != u"- -"_s);
    }

    void keepsTheMapping()
    {
        ImportDesk shop;
        const QString name = shop.path(QString::fromUtf16(importMappingFileName));
        const auto missing = readImportMapping(name);
        QVERIFY(missing && !*missing);
        const QStringList headings{u"御社=名"_s, u"x"_s, u"x"_s, u"番地"_s};
        ImportAssignment assignment{true, {-1, -1, -1, -1}, 2, ImportMatch::Code};
        assignment.numbersCodes = true;
        assignment.fields[0] = importFieldOf(u"納品先名1"_s);
        assignment.fields[2] = importFieldOf(u"TEL1"_s);
        assignment.fields[3] = importFieldOf(u"住所1"_s);
        QVERIFY(writeImportMapping(name, mappingOf(assignment, headings)));
        const auto mapping = readImportMapping(name);
        QVERIFY(mapping && *mapping);
        // Columns that have moved are found by their headings, those without one of their own by number.
        const auto moved = assignmentByMapping(**mapping, {u"番地"_s, u"御社＝名"_s, u"x"_s}, 3);
        QVERIFY(moved);
        QCOMPARE(assigned(*moved), u"住所1 納品先名1 TEL1"_s);
        QCOMPARE(moved->defaultCategory, 2);
        QCOMPARE(moved->match, ImportMatch::Code);
        QVERIFY(moved->numbersCodes);
        QVERIFY(!assignmentByMapping(**mapping, {u"番地"_s}, 1)); // no name
        // What the file has besides is found by its headings, but not what was left out by choice.
        const QStringList more{u"御社=名"_s, u"携帯"_s, u"x"_s, u"お気に入り"_s};
        const auto filled = assignmentByMapping(**mapping, more, 4);
        QVERIFY(filled);
        QCOMPARE(assigned(*filled), u"納品先名1 TEL2 TEL1 -"_s);
        QCOMPARE(leftOutHeadings(*filled, more), QStringList{u"お気に入り"_s});
        ImportAssignment chosen = *filled;
        chosen.fields[1] = -1;
        QVERIFY(writeImportMapping(name, mappingOf(chosen, more)));
        QCOMPARE(assigned(*assignmentByMapping(**readImportMapping(name), more, 4)), u"納品先名1 - TEL1 -"_s);
    }

    void survivesDamagedMappings_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("fields"); // empty: refused
        const QByteArray first = "KanbaloreCSV1\n";
        QTest::newRow("no mapping") << QByteArray("hello\n") << QString();
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("binary") << QByteArray("\x80\xff\x00\xa0", 4) << QString();
        QTest::newRow("too large") << first + QByteArray(70000, 'x') << QString();
        QTest::newRow("odd lines") << first + u"=1\n納品先名キー=列:1\n納品先名1\n納品先名1=列:2\nTEL1=列:0\n"
                                              "FAX=列:-5\nメール=列:99999999999\n住所1=列:3\n"
                                              "納品先名1=列:1\nメモ=列:2\n"_s.toUtf8()
                                   << u"- 納品先名1 -"_s;
    }
    void survivesDamagedMappings()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, fields);
        ImportDesk shop;
        const auto mapping = readImportMapping(shop.file(u"m.log"_s, content));
        QCOMPARE(bool(mapping), !fields.isEmpty());
        if (!mapping)
            return;
        const auto assignment = assignmentByMapping(**mapping, {u"a"_s, u"b"_s}, 2);
        QVERIFY(assignment);
        QCOMPARE(assigned(*assignment), u"- 納品先名1"_s);
    }
};

QTEST_GUILESS_MAIN(TestImportMapping)
#include "tst_import_mapping.moc"
