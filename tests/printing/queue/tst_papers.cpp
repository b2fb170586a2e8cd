#include "printing/queue/paper_codes.h"
#include "printing/queue/paper_words.h"
#include "printing/queue/printer_settings.h"
#include "printing/queue/windows_papers.h"

#include <QFile>
#include <QPageSize>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

Medium medium(const QString &name, double width, double height) { return {name, {width, height}, {}}; }

QStringList names(const std::vector<ListedPaper> &papers)
{
    QStringList all;
    for (const ListedPaper &paper : papers)
        all << paperNameText(paper.code);
    return all;
}

} // namespace

class TestPapers : public QObject
{
    Q_OBJECT

private slots:
    void namesAndDescriptions_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("words"); // of a paper that the printer calls 174 wide and 250 high

        const auto row = [](int code, const char16_t *name, const char16_t *words) {
            QTest::addRow("%d", code) << code << QString::fromUtf16(name) << QString::fromUtf16(words);
        };
        row(1, u"LETTER", u"レター、8 1/2 x 11 インチ");
        row(9, u"A4", u"A4、210 x 297 mm");
        row(12, u"B4", u"B4、250 x 354 mm");
        row(35, u"ENV_B6", u"封筒 B6、176 x 125 mm");
        row(39, u"FANFOLD_US", u"U.S. スタンダード ファンフォールド、14 7/8 x 11 インチ");
        row(41, u"FANFOLD_LGL_GERMAN", u"ドイツ リーガル ファンフォールド、8 1/2 x 13 インチ");
        row(42, u"ISO_B4", u"User Size  H 250 × W 174㎜");
        row(43, u"JAPANESE_POSTCARD", u"User Size  H 250 × W 174㎜");
        row(48, u"RESERVED_48", u"User Size  H 250 × W 174㎜");
        row(49, u"RESERVED_49", u"User Size  H 250 × W 174㎜");
        row(69, u"DBL_JAPANESE_POSTCARD", u"User Size  H 250 × W 174㎜");
        row(73, u"JENV_CHOU3", u"User Size  H 250 × W 174㎜");
        row(92, u"JENV_YOU4_ROTATED", u"User Size  H 250 × W 174㎜");
        row(118, u"PENV_10_ROTATED", u"User Size  H 250 × W 174㎜");
        row(119, u"UNKNOWN(119)", u"User Size  H 250 × W 174㎜");
        row(200, u"UNKNOWN(200)", u"User Size  H 250 × W 174㎜");
        row(0, u"UNKNOWN(0)", u"User Size  H 250 × W 174㎜");
        row(256, u"USER(256)", u"ユーザー定義サイズ  H 250 × W 174㎜");
        row(257, u"USER(257)", u"User Size  H 250 × W 174㎜");
        row(300, u"USER(300)", u"User Size  H 250 × W 174㎜");
    }

    void namesAndDescriptions()
    {
        QFETCH(const int, code);
        QTEST(paperNameText(code), "name");
        QTEST(paperSizeText(code, {174, 250}), "words");
    }

    // Whole twips by 57: the true 9922 / 56.7 would be 175.
    void millimetresComeOutALittleShort()
    {
        QCOMPARE(describedMillimetres(4961, 2), 174);
        QCOMPARE(describedMillimetres(QSizeF(210, 297)), QSize(208, 295));
    }

    void binsSayWhereThePaperComesFrom()
    {
        QCOMPARE(binText(binCode(u"auto"_s)), u"現在の既定値のトレーの用紙を使います。"_s);
        QCOMPARE(binText(binCode(u"tray-1"_s)), u"上段のトレーの用紙を使います。"_s);
        QCOMPARE(binText(binCode(u"bottom"_s)), u"下段のトレーの用紙を使います。"_s);
        QCOMPARE(binText(binCode(u"manual"_s)), u"用紙が1枚ずつ手差しで供給されるまで待機します。"_s);
        QCOMPARE(binText(binCode(u"tractor"_s)), u"トラクタフィーダの用紙を使います。"_s);
        QCOMPARE(binText(binCode(u"large-capacity"_s)), u"容量の大きいフィーダの用紙を使います。"_s);
        QCOMPARE(binText(binCode(u"tray-9"_s)), QString());
        for (const int none : {0, 12, 13, 15, -1})
            QCOMPARE(binText(none), QString());
    }

    // The toolkit knows the same codes from another source.
    void sizesAreThoseOfTheToolkit()
    {
        int compared = 0;
        for (int id = 0; id <= QPageSize::LastPageSize; ++id) {
            const QPageSize page{static_cast<QPageSize::PageSizeId>(id)};
            const int code = page.windowsId();
            // For the three sheets of drawings Windows means the American sizes, the toolkit architects'
            // ones.
            if (code < 1 || code > 118 || (code >= 24 && code <= 26))
                continue;
            const WindowsPaper &paper = windowsPapers.at(static_cast<std::size_t>(code - 1));
            const QSizeF size = page.size(QPageSize::Millimeter);
            QVERIFY2(std::abs(size.width() - paper.width / 10.0) < 1 &&
                         std::abs(size.height() - paper.height / 10.0) < 1,
                     qPrintable(paperNameText(code)));
            ++compared;
        }
        QVERIFY2(compared > 70, qPrintable(QString::number(compared)));
    }

    void papersByTheirSize_data()
    {
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<QString>("name");

        QTest::newRow("A4 as a queue rounds it") << QSizeF(209.9, 297.04) << u"A4"_s;
        QTest::newRow("A4 fed across") << QSizeF(297, 210) << u"A4_ROTATED"_s;
        QTest::newRow("letter, not the note of its size") << QSizeF(215.9, 279.4) << u"LETTER"_s;
        QTest::newRow("postcard") << QSizeF(100, 148) << u"JAPANESE_POSTCARD"_s;
        QTest::newRow("postcard fed across") << QSizeF(148, 100) << u"JAPANESE_POSTCARD_ROTATED"_s;
        QTest::newRow("B5 of Japan") << QSizeF(182, 257) << u"B5"_s;
        QTest::newRow("envelope") << QSizeF(120, 235) << u"JENV_CHOU3"_s;
        QTest::newRow("folio") << QSizeF(215.9, 330.2) << u"FOLIO"_s;
        QTest::newRow("continuous") << QSizeF(377.8, 279.4) << u"FANFOLD_US"_s;
        QTest::newRow("a delivery note") << QSizeF(241.3, 114.3) << QString();
    }

    void papersByTheirSize()
    {
        QFETCH(const QSizeF, size);
        const auto code = paperCode(size);
        QTEST(code ? paperNameText(*code) : QString(), "name");
    }

    void aQueuesPapersInItsOwnOrder()
    {
        QueueAbilities abilities{.media = {medium(u"iso_a5_148x210mm"_s, 148, 210),
                                           medium(u"custom_odd_95x95mm"_s, 95, 95),
                                           medium(u"iso_a4_210x297mm"_s, 210, 297),
                                           medium(u"iso_a4_210x297mm.borderless"_s, 210, 297),
                                           medium(u"custom_odd_96x99mm"_s, 96, 99)}};
        QCOMPARE(names(listedPapers(abilities)),
                 (QStringList{u"A5"_s, u"USER(257)"_s, u"A4"_s, u"USER(258)"_s}));
        abilities.custom = CustomSizes{{50, 50}, 300, std::nullopt, {}};
        QCOMPARE(names(listedPapers(abilities)).back(), u"USER(256)"_s);
        QVERIFY(!usualPaper(abilities));
        abilities.usualPaper = medium(u"custom_odd_96x99mm"_s, 96, 99);
        QCOMPARE(usualPaper(abilities)->code, 258);
        abilities.usualPaper = medium(u"custom_241.3x114.3mm"_s, 241.3, 114.3);
        QCOMPARE(usualPaper(abilities)->code, 256);
        QVERIFY(listedPapers({}).empty());
    }

    void propertiesAreShownByTheDesktopsOwnProgram()
    {
#ifdef Q_OS_WIN
        QSKIP("the shell shows them");
#endif
        const auto first = [](const QString &desktop, const QString &queue) {
            return printerSettingsPrograms(desktop, queue).front().join(u' ');
        };
        QCOMPARE(first(u"ubuntu:GNOME"_s, u"DOT"_s), u"gnome-control-center printers"_s);
        QCOMPARE(first(u"KDE"_s, u"DOT"_s), u"configure-printer DOT"_s);
        QCOMPARE(first(u"KDE"_s, u"--help"_s), u"configure-printer"_s);
        QCOMPARE(first(u"XFCE"_s, u"DOT"_s), u"system-config-printer"_s);

        const QTemporaryDir programs;
        const QByteArray before = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(programs.path()));
        QVERIFY(!openPrinterSettings(u"DOT"_s));
        const QString mark = programs.filePath(u"started"_s);
        QFile program(programs.filePath(u"configure-printer"_s));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\necho \"$1\" > '" + QFile::encodeName(mark) + "'\n");
        program.close();
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(openPrinterSettings(u"$(touch x) 事務所"_s));
        qputenv("PATH", before);
        QFile started(mark);
        QTRY_VERIFY(started.exists() && started.size() > 0);
        QVERIFY(started.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(started.readAll()).trimmed(), u"$(touch x) 事務所"_s);
    }
};

} // namespace printing

QTEST_GUILESS_MAIN(printing::TestPapers)
#include "tst_papers.moc"
