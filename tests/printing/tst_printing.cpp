#include "printing/font_names.h"
#include "printing/pdf.h"
#include "printing/pdf_mark.h"
#include "printing/renderer.h"
#include "printing/text_fit.h"
#include "support/fresh_shop.h"
#include "support/pages_of_text.h"
#include "support/scripted_test.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <malloc.h>

using namespace Qt::StringLiterals;
using namespace printing;

namespace
{

constexpr int dotsPerMillimetre = 10;

// What a sheet looks like on A4 at 10 dots to the millimetre.
QImage drawn(const Document &document, const Look &look, const QMarginsF &unprintable = {})
{
    QImage image(210 * dotsPerMillimetre, 297 * dotsPerMillimetre, QImage::Format_Grayscale8);
    image.setDotsPerMeterX(dotsPerMillimetre * 1000);
    image.setDotsPerMeterY(dotsPerMillimetre * 1000);
    image.fill(Qt::white);
    QPainter painter(&image);
    drawSheet(painter, document, document.sheets.front(), look, unprintable);
    return image;
}

// The bounds of the ink in millimetres.
QRectF ink(const QImage &image)
{
    int left = image.width();
    int top = image.height();
    int right = -1;
    int bottom = -1;
    for (int y = 0; y < image.height(); ++y) {
        const uchar *row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            if (row[x] > 127)
                continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    return QRectF(QPointF(left, top) / dotsPerMillimetre, QPointF(right + 1, bottom + 1) / dotsPerMillimetre);
}

Document oneSheet(Sheet sheet)
{
    Document document;
    document.title = u"試し刷り"_s;
    document.sheets.push_back(std::move(sheet));
    return document;
}

QString textOfPdf(const QString &fileName)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-raw"_s, fileName, u"-"_s});
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAllStandardOutput());
}

} // namespace

class TestPrinting : public ScriptedTest
{
    Q_OBJECT

private slots:
    // Whoever prints a slip again without a change has the same document in hand, not another version of it.
    void theSamePaperIsTheSameBytes()
    {
        Document document;
        document.title = u"納品書 O1"_s;
        Sheet sheet;
        int y = 0;
        for (const QString &face :
             {u"IPAMincho"_s, u"DejaVu Sans"_s, u"DejaVu Serif"_s, u"DejaVu Sans Mono"_s}) {
            for (const bool bold : {false, true})
                sheet.texts.push_back(
                    {.x = 1000, .y = double(y += 500), .text = u"合計 ABC"_s, .bold = bold, .face = face});
        }
        document.sheets.push_back(sheet);
        const auto first = pdfOf(document, Look{u"IPAMincho"_s});
        QVERIFY(first);
        QVERIFY(!first->contains("D:20"));
        for (int start = 0; start < 5; ++start) {
            QHashSeed::resetRandomGlobalSeed(); // as another start of the program
            QCOMPARE(pdfOf(document, Look{u"IPAMincho"_s})->size(), first->size());
            QVERIFY(*pdfOf(document, Look{u"IPAMincho"_s}) == *first);
        }
        QVERIFY(QHashSeed::globalSeed() != 0);
    }

    void otherLooksBearTheSameMark()
    {
        const auto drawn = [](const QString &text, const QString &face, double at) {
            Document document;
            Sheet sheet;
            sheet.texts.push_back({.x = at, .y = 1000, .text = text});
            document.sheets.push_back(sheet);
            document.keep = [](const QByteArray &) { return base::Status(); };
            return *pdfOf(document, Look{face});
        };
        const QByteArray mark = markIn(drawn(u"100"_s, u"IPAMincho"_s, 1000));
        QCOMPARE(mark.size(), 20);
        QCOMPARE(markIn(drawn(u"100"_s, u"DejaVu Sans"_s, 1400)), mark);
        QVERIFY(markIn(drawn(u"101"_s, u"IPAMincho"_s, 1000)) != mark);
    }

    void millimetresAreConvertedAt567()
    {
        QCOMPARE(twipsFromMillimetres(36), 2041.2);
        QCOMPARE(twipsFromMillimetres(12), 680.4);
    }

    void faces_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("face");

        const QStringList debian{u"DejaVu Sans"_s, u"IPAGothic"_s, u"IPAMincho"_s, u"Noto Sans CJK JP"_s};
        const QStringList windows{u"MS Gothic"_s, u"MS Mincho"_s, u"Meiryo"_s};
        const QStringList noto{u"DejaVu Sans"_s, u"Noto Sans CJK JP"_s};
        QTest::newRow("mincho") << u"ＭＳ 明朝"_s << debian << u"IPAMincho"_s;
        QTest::newRow("its English name") << u"MS Mincho"_s << debian << u"IPAMincho"_s;
        QTest::newRow("vertical") << u"@ＭＳ 明朝"_s << debian << u"IPAMincho"_s;
        QTest::newRow("gothic") << u"ＭＳ ゴシック"_s << debian << u"IPAGothic"_s;
        QTest::newRow("proportional gothic") << u"ＭＳ Ｐゴシック"_s << debian << u"IPAGothic"_s;
        QTest::newRow("the other language's name") << u"ＭＳ 明朝"_s << windows << u"MS Mincho"_s;
        QTest::newRow("installed") << u"Noto Sans CJK JP"_s << debian << u"Noto Sans CJK JP"_s;
        QTest::newRow("installed, vertical") << u"@Meiryo"_s << windows << u"Meiryo"_s;
        QTest::newRow("unknown gothic") << u"メイリオ"_s << debian << u"IPAGothic"_s;
        QTest::newRow("unknown") << u"HG正楷書体"_s << debian << u"IPAMincho"_s;
        QTest::newRow("nothing stored") << QString() << debian << u"IPAMincho"_s;
        QTest::newRow("no serif") << u"ＭＳ 明朝"_s << noto << u"Noto Sans CJK JP"_s;
        QTest::newRow("nothing Japanese") << u"ＭＳ 明朝"_s << QStringList{u"DejaVu Sans"_s} << QString();
    }

    void faces()
    {
        QFETCH(QString, stored);
        QFETCH(QStringList, installed);
        QTEST(installedFace(stored, installed), "face");
    }

    void eachPurposeHasItsFont()
    {
        FreshShop shop;
        shop.settings.write(workspace::keys::printerFont, u"@ＭＳ 明朝"_s);
        shop.settings.write(workspace::keys::meiboPrinterFont, u"ＭＳ ゴシック"_s);
        QCOMPARE(fontFace(shop.settings, Purpose::DeliveryNotesAndBills), u"IPAMincho"_s);
        QCOMPARE(fontFace(shop.settings, Purpose::Rosters), u"IPAGothic"_s);
        QCOMPARE(QString::fromLatin1(printerKey(Purpose::AddressRange).name), u"HagakiPrinterName"_s);
        QCOMPARE(QString::fromLatin1(fontKey(Purpose::GiftSheets).name), u"MotoFont"_s);
    }

    void fitting_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<double>("points");

        // 10 half-width characters of 10 points are 17.64 mm.
        QTest::newRow("fits") << u"あいうえお"_s << QStringList{u"あいうえお"_s} << 10.0;
        QTest::newRow("half-width") << u"0123456789"_s << QStringList{u"0123456789"_s} << 10.0;
        QTest::newRow("made smaller") << u"あいうえおか"_s << QStringList{u"あいうえおか"_s} << 8.3;
        QTest::newRow("broken, balanced")
            << u"あいうえおかき"_s << QStringList{u"あいうえ"_s, u"おかき"_s} << 8.0;
        QTest::newRow("surrogates stay whole")
            << u"𠮷𠮷𠮷𠮷𠮷𠮷𠮷"_s << QStringList{u"𠮷𠮷𠮷𠮷"_s, u"𠮷𠮷𠮷"_s} << 8.0;
        QTest::newRow("empty") << QString() << QStringList{QString()} << 10.0;
    }

    void fitting()
    {
        QFETCH(QString, text);
        const FittedText fitted = fitText(text, 17.65, 10, 8);
        QTEST(fitted.lines, "lines");
        QFETCH(double, points);
        QVERIFY2(std::abs(fitted.points - points) < 0.001, qPrintable(QString::number(fitted.points)));
    }

    void aBlockGetsSmallerUntilItFits()
    {
        const QString text = QString(300, u'あ') + u"\nい\tう"_s;
        const FittedText block = fitBlock(text, 50, 20, 10, 1.3);
        QVERIFY(static_cast<double>(block.lines.size()) * block.points * 1.3 * 25.4 / 72 <= 20);
        QCOMPARE(block.lines.join(QString()), QString(300, u'あ') + u"い う"_s);
    }

    void megabytesAreNotLaidOut()
    {
        const QString huge(5'000'000, u'あ');
        QCOMPARE(singleLine(huge).size(), 5'001);
        QCOMPARE(fitBlock(huge, 50, 20, 10, 1.3).lines.join(QString()).size(), 5'001);
    }

    void inkStandsWhereTheSheetSays()
    {
        Sheet sheet;
        sheet.boxes.push_back({twipsFromMillimetres(20), twipsFromMillimetres(30), twipsFromMillimetres(100),
                               twipsFromMillimetres(50), 0, 0});
        const Look look{u"IPAMincho"_s};
        const auto near = [](const QRectF &found, const QRectF &wanted) {
            constexpr double tolerance = 0.11; // one dot
            return std::abs(found.left() - wanted.left()) < tolerance &&
                   std::abs(found.top() - wanted.top()) < tolerance &&
                   std::abs(found.right() - wanted.right()) < tolerance &&
                   std::abs(found.bottom() - wanted.bottom()) < tolerance;
        };
        const QMarginsF margins(4, 5, 4, 5);
        sheet.origin = Origin::PaperEdge;
        QVERIFY(near(ink(drawn(oneSheet(sheet), look, margins)), QRectF(20, 30, 100, 50)));
        sheet.origin = Origin::PrintableArea;
        QVERIFY(near(ink(drawn(oneSheet(sheet), look, margins)), QRectF(24, 35, 100, 50)));
    }

    void textIsAlignedAndSqueezedIntoItsRoom()
    {
        const Look look{u"IPAMincho"_s};
        const double x = twipsFromMillimetres(100);
        Sheet sheet;
        sheet.texts.push_back({x, x, u"国国国国"_s, 20, Align::Left});
        const QRectF natural = ink(drawn(oneSheet(sheet), look));
        QVERIFY(natural.left() > 100 && natural.left() < 101.5);
        QVERIFY(natural.top() > 99.5 && natural.bottom() < 107.5);
        QVERIFY(natural.width() > 25 && natural.width() < 28.3);

        sheet.texts.front().align = Align::Right;
        sheet.texts.front().room = twipsFromMillimetres(10);
        const QRectF squeezed = ink(drawn(oneSheet(sheet), look));
        QVERIFY(squeezed.left() >= 90 && squeezed.right() <= 100.01);
        QVERIFY(std::abs(squeezed.height() - natural.height()) < 0.3);
    }

    void paperIsFedAsItIsDeclared_data()
    {
        QTest::addColumn<double>("width"); // as it is fed, millimetres
        QTest::addColumn<double>("height");
        QTest::addColumn<bool>("turned");
        QTest::addColumn<QString>("page"); // orientation, and size in points as it is read
        QTest::newRow("A4") << 210.0 << 297.0 << false << u"Portrait A4 595 x 842"_s;
        QTest::newRow("A4 read across") << 210.0 << 297.0 << true << u"Landscape A4 842 x 595"_s;
        QTest::newRow("continuous form, wider than high")
            << 241.3 << 114.3 << false << u"Portrait Custom 684 x 324"_s;
        QTest::newRow("transfer form") << 184.0 << 114.0 << false << u"Portrait Custom 522 x 323"_s;
        QTest::newRow("transfer form read across")
            << 114.0 << 184.0 << true << u"Landscape Custom 522 x 323"_s;
        QTest::newRow("nearly A5") << 148.0 << 209.0 << false << u"Portrait Custom 420 x 592"_s;
    }

    void paperIsFedAsItIsDeclared()
    {
        QFETCH(double, width);
        QFETCH(double, height);
        QFETCH(bool, turned);
        Sheet sheet;
        sheet.paperWidth = width;
        sheet.paperHeight = height;
        sheet.turned = turned;
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        setPage(writer, oneSheet(sheet));
        const QPageLayout layout = writer.pageLayout();
        const QSize read = layout.fullRectPoints().size();
        const QString name =
            layout.pageSize().id() == QPageSize::Custom ? u"Custom"_s : layout.pageSize().key();
        QTEST(u"%1 %2 %3 x %4"_s
                  .arg(layout.orientation() == QPageLayout::Portrait ? u"Portrait"_s : u"Landscape"_s, name)
                  .arg(read.width())
                  .arg(read.height()),
              "page");
        Sheet cut;
        cut.setCutPaper(sheet.readWidth(), sheet.readHeight());
        QCOMPARE(cut.readWidth(), sheet.readWidth());
        QVERIFY(cut.paperWidth < cut.paperHeight);
    }

    void richTextIsScaledIntoItsSlot()
    {
        Sheet sheet;
        sheet.richTexts.push_back({twipsFromMillimetres(50), twipsFromMillimetres(60),
                                   twipsFromMillimetres(40), twipsFromMillimetres(10), u"社名"_s});
        Document document = oneSheet(sheet);
        document.richTexts[u"社名"_s] = std::make_shared<QTextDocument>(QString(20, u'国') + u"\n国\n国"_s);
        const QRectF found = ink(drawn(document, Look{u"IPAMincho"_s}));
        QVERIFY(QRectF(50, 60, 40, 10).contains(found));
        QVERIFY(found.height() > 7 || found.width() > 35);
    }

    void aPdfGivesBackItsTextAndReplacesAnOlderOneWhole()
    {
        FreshShop shop;
        const QStringList texts{u"山田　太郎　様"_s,   u"東京都立川市高松町一二三"_s,
                                u"〒190-0011"_s,       u"龍 亀 食 麦 黒 金 面 長 青 行 西 角"_s,
                                u"TEL 042-123-4567"_s, u"①㈱髙﨑〜−"_s};
        Sheet sheet;
        double y = 1000;
        for (const QString &text : texts)
            sheet.texts.push_back({1000, y += 600, text, 12});
        const QString fileName = shop.path(u"note.pdf"_s);
        QFile older(fileName);
        QVERIFY(older.open(QIODevice::WriteOnly) && older.write("older") == 5);
        older.close();
        QVERIFY(writePdf(shop.workspace, oneSheet(sheet), fileName));
        QCOMPARE(QDir(shop.folder.path()).entryList({u"*.tmp"_s}), QStringList());

        const QString text = textOfPdf(fileName);
        for (const QString &wanted : texts)
            QVERIFY2(
                QString(text).remove(u' ').remove(u'　').contains(QString(wanted).remove(u' ').remove(u'　')),
                qPrintable(wanted + u" is not in "_s + text));
    }

    void theFacesOfAnotherSystemHaveStandInsThatAreEmbedded_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("standIn");
        QTest::newRow("mincho") << u"ＭＳ 明朝"_s << u"IPAMincho"_s;
        QTest::newRow("gothic") << u"ＭＳ ゴシック"_s << u"IPAGothic"_s;
        QTest::newRow("gothic for vertical writing") << u"@ＭＳ ゴシック"_s << u"IPAGothic"_s;
        QTest::newRow("a face nobody has") << u"江戸勘亭流"_s << u"IPAMincho"_s;
    }

    void theFacesOfAnotherSystemHaveStandInsThatAreEmbedded()
    {
        QFETCH(QString, stored);
        QFETCH(QString, standIn);
        FreshShop shop;
        shop.settings.write(workspace::keys::printerFont, stored);
        Sheet sheet;
        sheet.texts.push_back({.x = 1000, .y = 1000, .text = u"納品書"_s});
        sheet.texts.push_back({.x = 1000, .y = 2000, .text = u"合計金額"_s, .bold = true});
        const QString fileName = shop.path(u"note.pdf"_s);
        QVERIFY(writePdf(shop.workspace, oneSheet(sheet), fileName));
        const QString text = textOfPdf(fileName);
        QVERIFY2(text.contains(u"納品書"_s) && text.contains(u"合計金額"_s), qPrintable(text));
        QProcess fonts;
        fonts.start(u"pdffonts"_s, {fileName});
        fonts.waitForFinished();
        const QStringList listed =
            QString::fromUtf8(fonts.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts).mid(2);
        QVERIFY(!listed.isEmpty());
        // Embedded, and with a table back to Unicode.
        static const QRegularExpression embedded(u" yes +(yes|no) +yes "_s);
        for (const QString &font : listed)
            QVERIFY2(font.contains(standIn) && font.contains(embedded), qPrintable(font));
    }

    // 納 is 7D0D: as a bare byte, 0D ends a line and becomes 0A, and 紊.
    void titlesAreReadAsTheyAreWritten()
    {
        FreshShop shop;
        const QString fileName = shop.path(u"title.pdf"_s);
        for (const QString &title : {u"納品書 O1"_s, u"(納)\\納納"_s, u"請求書"_s}) {
            Document document = pagesOfText(2);
            document.title = title;
            QVERIFY(writePdf(shop.workspace, document, fileName));
            QProcess info;
            info.start(u"pdfinfo"_s, {fileName});
            info.waitForFinished();
            const QString told = QString::fromUtf8(info.readAllStandardOutput());
            QVERIFY2(told.contains(
                         QRegularExpression(u"Title: +"_s + QRegularExpression::escape(title) + u"\n"_s)),
                     qPrintable(told));
            QVERIFY2(info.readAllStandardError().isEmpty(), qPrintable(title));
            QVERIFY(textOfPdf(fileName).contains(u"第2葉"_s));
        }
    }

    void aPdfThatCannotBeWrittenIsAnError()
    {
        FreshShop shop;
        const base::Status written =
            writePdf(shop.workspace, pagesOfText(1), shop.path(u"no such folder/note.pdf"_s));
        QVERIFY(!written);
        QVERIFY(written.error().text.startsWith(u"PDF を保存できませんでした。"_s));
        QVERIFY(written.error().text.contains(u"note.pdf"_s) && !written.error().text.contains(u".tmp"_s));
        QVERIFY(!writePdf(shop.workspace, pagesOfText(0), shop.path(u"empty.pdf"_s)));
        QVERIFY(!QFile::exists(shop.path(u"empty.pdf"_s)));
    }

    void aPdfThatIsStoppedLeavesTheOldOne()
    {
        FreshShop shop;
        const QString fileName = shop.path(u"note.pdf"_s);
        QVERIFY(writePdf(shop.workspace, pagesOfText(1), fileName));
        const qint64 size = QFileInfo(fileName).size();
        QList<qint64> counted;
        const base::Status stopped =
            writePdf(pagesOfText(5), Look{u"IPAMincho"_s}, fileName, [&](qint64 done, qint64 total) {
                counted << done << total;
                return done < 2;
            });
        QVERIFY(!stopped && stopped.error().cancelled);
        QCOMPARE(counted, (QList<qint64>{1, 5, 2, 5}));
        QCOMPARE(QFileInfo(fileName).size(), size);
    }

    void pagesAndCopiesAreWhatThePrinterWasSetUpFor()
    {
        FreshShop shop;
        const QString fileName = shop.path(u"copies.pdf"_s);
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(fileName);
        const Document document = pagesOfText(4);
        setPage(printer, document);
        printer.setPrintRange(QPrinter::PageRange);
        printer.setFromTo(2, 3);
        printer.setCopyCount(2);
        printer.setCollateCopies(true);
        QVERIFY(printDocument(printer, document, Look{u"IPAMincho"_s}));
        const QString text = textOfPdf(fileName).remove(u'\n').remove(u'\f');
        QCOMPARE(text, printer.supportsMultipleCopies() ? u"第2葉第3葉"_s : u"第2葉第3葉第2葉第3葉"_s);
    }

    // Pages are made one after the other, and none is kept: neither by a maker nor by what draws them.
    void aLongDocumentTakesNoMoreRoomThanItsFile()
    {
        constexpr std::size_t pages = 1500;
        std::size_t made = 0;
        Document document;
        document.sheets = {pages, [&made](std::size_t page) {
                               ++made;
                               Sheet sheet;
                               for (int line = 0; line < 100; ++line)
                                   sheet.texts.push_back({500, 140.0 * line, u"%1-%2"_s.arg(page).arg(line)});
                               return sheet;
                           }};
        const auto bytesInUse = [] {
            const struct mallinfo2 info = mallinfo2();
            return info.uordblks + info.hblkhd;
        };
        const std::size_t before = bytesInUse();
        std::size_t most = 0;
        const auto pdf = pdfOf(document, Look{u"IPAMincho"_s}, [&](qint64 page, qint64) {
            if (page % 50 == 0)
                most = std::max(most, bytesInUse());
            return true;
        });
        QVERIFY(pdf);
        QCOMPARE(made, pages);
        // The file grows by doubling; the sheets would take 16 MB.
        const auto allowed = before + 2 * static_cast<std::size_t>(pdf->size()) + 4'000'000;
        QVERIFY2(most < allowed,
                 qPrintable(u"%1 kB, file %2 kB"_s.arg((most - before) / 1024).arg(pdf->size() / 1024)));
        QCOMPARE(document.sheets.part(1200, 2)[1].texts[7].text, u"1201-7"_s);
    }
};

QTEST_MAIN(TestPrinting)
#include "tst_printing.moc"
