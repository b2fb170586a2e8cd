#include "placed_texts.h"
#include "printing/forms/form_files.h"
#include "printing/frmPreview.h"
#include "printing/queue/cups_system.h"
#include "slips/documents/delivery_note_print.h"
#include "slips/documents/estimate.h"
#include "support/fresh_shop.h"
#include "support/pdf_words.h"
#include "support/private_cups.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

constexpr double tolerance = 0.3; // millimetres

/// Whether \a page has the text where \a item is to stand. Words end at blanks, wide ones too.
bool isThere(const PdfPage &page, const printing::TextItem &item)
{
    static const QRegularExpression blanks(u"\\s+"_s, QRegularExpression::UseUnicodePropertiesOption);
    const QStringList parts = item.text.split(blanks, Qt::SkipEmptyParts);
    const QPointF place = placeOf(item);
    const auto near = [](double a, double b) { return std::abs(a - b) <= tolerance; };
    return std::any_of(page.words.begin(), page.words.end(), [&](const PdfWord &word) {
        if (!near(word.area.top(), place.y()))
            return false;
        switch (item.align) {
        case printing::Align::Left:
            return word.text == parts.first() && near(word.area.left(), place.x());
        case printing::Align::Right:
            return word.text == parts.last() && near(word.area.right(), place.x());
        case printing::Align::Centre:
            break;
        }
        return word.text == parts.first() && near(word.area.left(), areaOf(item).left());
    });
}

struct Form
{
    const char16_t *paper; // as the panel names it
    bool designated;
    QSizeF size;
};

const std::map<QString, Form> &forms()
{
    static const std::map<QString, Form> all{{u"A4"_s, {u"A4 無地", false, {210, 297}}},
                                             {u"1149"_s, {u"HISAGO 1149", false, {241.3, 114.3}}},
                                             {u"BP0201"_s, {u"HISAGO BP0201", false, {210, 297}}},
                                             {u"designated"_s, {u"", true, {254, 127}}}};
    return all;
}

/// A shop with a slip of seven lines, which every form but A4 goes on with on another sheet.
struct Shop : FreshShop
{
    explicit Shop(const Form &form)
    {
        run(u"INSERT INTO 自社情報 (会社ID, 会社名1, 郵便番号, 住所1, TEL1) VALUES "
            "(1, '有限会社山田茶舗', '420-0001', '静岡市葵区井宮町１２３', '054-123-4567')"_s);
        run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名2, 郵便番号, 住所1, TEL1, FAX, コード, "
            "消費税区分) VALUES (7, '株式会社東京百貨店', '食品課', '150-0001', '東京都渋谷区神宮前１－２', "
            "'03-1234-5678', '03-1234-5679', 'T-42', 0)"_s);
        run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率) VALUES "
            "(1, '2026-04-01', 'O1', 7, 3, 10)"_s);
        for (int line = 1; line <= 7; ++line)
            run(u"INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) VALUES "
                "(1, '特選煎茶%1号', '100g', %1.5, '袋', 1080, %2)"_s.arg(line)
                    .arg(std::trunc((line + 0.5) * 1080)));
        workspace.panel.taxRate = 10;
        workspace.panel.deliveryPaper = QString::fromUtf16(form.paper);
        request.designatedForm = form.designated;
    }

    void setOffsets()
    {
        settings.write(workspace::keys::offsetB, 2);
        settings.write(workspace::keys::offsetC, -3);
        settings.write(workspace::keys::offsetD, true);
        settings.write(workspace::keys::offsetL, -2);
        settings.write(workspace::keys::offsetF, 3);
    }

    NoteRequest request{.slipId = 1, .memo = u"注文番号 A-1234 午前着"_s};
};

void addRows()
{
    QTest::addColumn<QString>("form");
    for (const auto &[name, form] : forms())
        QTest::newRow(qPrintable(name)) << name;
}

} // namespace

/// Delivery notes as they come out of a real print queue.
class TestNotesOnQueues : public ScriptedTest
{
    Q_OBJECT

    std::unique_ptr<test::PrivateCups> m_cups;
    printing::CupsSystem m_system;

    std::size_t jobs() { return m_system.jobs()->size(); }

    /// Presses the print button of the slip's preview, and then the dialog's as the clerk finds it.
    bool print(Shop &shop, const QString &queue)
    {
        shop.settings.write(workspace::keys::printerName, queue);
        printing::frmPreview preview(shop.workspace, *deliveryNoteDocument(shop.workspace, shop.request));
        ScreenDriver driver(&preview);
        driver.show();
        QTimer::singleShot(0, &preview, [] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(dialog && dialog->objectName() == u"DialogPrint"_s);
            dialog->findChild<QPushButton *>(u"cmdPrint"_s)->click();
            dialog->close();
        });
        QTest::keyClick(&preview, Qt::Key_P, Qt::ControlModifier);
        return preview.isIssued();
    }

private slots:
    void init()
    {
        if (!m_cups) {
            m_cups = std::make_unique<test::PrivateCups>();
            m_cups->addQueue(u"cut"_s, QFINDTESTDATA("../../data/cut-paper.ppd"));
            m_cups->addQueue(u"any"_s, QFINDTESTDATA("../../data/any-paper.ppd"));
        }
        if (!m_cups->reasonNotToRun().isEmpty())
            QSKIP(qPrintable(m_cups->reasonNotToRun()));
    }

    void cleanupTestCase() { m_cups.reset(); }

    void everyTextArrivesInItsPlace_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<bool>("isMoved");
        for (const auto &[name, form] : forms()) {
            QTest::addRow("%s", qPrintable(name)) << name << false;
            QTest::addRow("%s, moved", qPrintable(name)) << name << true;
        }
    }

    void everyTextArrivesInItsPlace()
    {
        QFETCH(QString, form);
        QFETCH(bool, isMoved);
        const Form &wanted = forms().at(form);
        Shop shop(wanted);
        if (isMoved)
            shop.setOffsets();
        const auto document = deliveryNoteDocument(shop.workspace, shop.request);
        QVERIFY(document);
        printing::JobSettings settings{.queue = u"any"_s, .paper = wanted.size};
        settings.copies = 2;
        const auto job = m_system.print(*document, printing::Look{u"IPAMincho"_s}, settings, base::unwatched);
        QVERIFY2(job, job ? "" : qPrintable(job.error().text));
        const std::vector<PdfPage> pages = wordsOfPages(m_cups->arrived(*job));
        QCOMPARE(pages.size(), document->sheets.size());
        for (std::size_t i = 0; i < pages.size(); ++i) {
            // Whole points, upright as it is fed.
            QVERIFY(std::abs(pages[i].size.width() - wanted.size.width()) < 0.36);
            QVERIFY(std::abs(pages[i].size.height() - wanted.size.height()) < 0.36);
            for (const printing::TextItem &item : document->sheets[i].texts)
                QVERIFY2(isThere(pages[i], item), qPrintable(item.text));
        }
        QCOMPARE(m_cups->options(*job).front(), u"2"_s);
        QVERIFY(m_cups->options(*job).contains(u"print-scaling=none"_s));
    }

    void estimatesArriveInTheirPlace()
    {
        Shop shop(forms().at(u"A4"_s));
        const auto data = readEstimate(shop.workspace.connection, 1, {});
        QVERIFY(data);
        printing::Document document;
        document.title = u"見積書 M1"_s;
        document.sheets =
            estimateSheets(*data, printing::builtInForm(QString::fromUtf16(estimateLayout), estimateItems()));
        for (const QString &queue : {u"any"_s, u"cut"_s}) {
            const auto job = m_system.print(document, printing::Look{u"IPAMincho"_s},
                                            {.queue = queue, .paper = {210, 297}}, base::unwatched);
            QVERIFY2(job, job ? "" : qPrintable(job.error().text));
            const std::vector<PdfPage> pages = wordsOfPages(m_cups->arrived(*job));
            QCOMPARE(pages.size(), document.sheets.size());
            for (const printing::TextItem &item : document.sheets.front().texts)
                QVERIFY2(isThere(pages.front(), item), qPrintable(item.text));
        }
    }

    // A known layout, so that a fault of the engine and of the way to the queue cannot make up for each
    // other.
    void whatTheRulerTells_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("word");
        QTest::addColumn<QPointF>("at"); // its upper left corner, millimetres
        QTest::addColumn<QPointF>("moved");
        QTest::newRow("A4, customer")
            << u"A4"_s << u"株式会社東京百貨店"_s << QPointF(20, 31.63) << QPointF(21.75, 34.45);
        QTest::newRow("1149, first row")
            << u"1149"_s << u"特選煎茶1号"_s << QPointF(15, 49.16) << QPointF(11.5, 51.98);
        QTest::newRow("BP0201, title of the receipt")
            << u"BP0201"_s << u"物品受領書"_s << QPointF(91.77, 157.5) << QPointF(88.27, 153.27);
        QTest::newRow("designated, order number")
            << u"designated"_s << u"A-1234"_s << QPointF(15, 44.4) << QPointF(11.5, 47.22);
    }

    void whatTheRulerTells()
    {
        QFETCH(QString, form);
        QFETCH(QString, word);
        const Form &wanted = forms().at(form);
        for (const bool isMoved : {false, true}) {
            QFETCH(QPointF, at);
            QFETCH(QPointF, moved);
            Shop shop(wanted);
            if (isMoved)
                shop.setOffsets();
            const auto document = deliveryNoteDocument(shop.workspace, shop.request);
            const auto job = m_system.print(*document, printing::Look{u"IPAMincho"_s},
                                            {.queue = u"any"_s, .paper = wanted.size}, base::unwatched);
            const PdfPage page = wordsOfPages(m_cups->arrived(*job)).front();
            const auto found = std::find_if(page.words.begin(), page.words.end(),
                                            [&](const PdfWord &each) { return each.text == word; });
            QVERIFY(found != page.words.end());
            const QPointF off = found->area.topLeft() - (isMoved ? moved : at);
            QVERIFY2(std::abs(off.x()) < tolerance && std::abs(off.y()) < tolerance,
                     qPrintable(u"%1 %2"_s.arg(found->area.left()).arg(found->area.top())));
        }
    }

    void cutPaperTakesNoContinuousForm_data() { addRows(); }
    void cutPaperTakesNoContinuousForm()
    {
        QFETCH(QString, form);
        Shop shop(forms().at(form));
        const std::size_t before = jobs();
        const bool isCut = forms().at(form).size == QSizeF(210, 297);
        if (!isCut)
            ui::prompts::expectInform(
                u"プリンタ「cut」は、幅 %1 × 長さ %2 "
                u"mmの用紙を受け付けません。この用紙を使えるプリンタを選ぶか、"
                "プリンタの設定で用紙を加えてください。"_s.arg(forms().at(form).size.width())
                    .arg(forms().at(form).size.height()));
        QCOMPARE(print(shop, u"cut"_s), isCut);
        QCOMPARE(jobs(), before + (isCut ? 1 : 0));
    }

    void whatTheQueueRefusesIsNotPrinted()
    {
        Shop shop(forms().at(u"1149"_s));
        const std::size_t before = jobs();
        QVERIFY(test::PrivateCups::run(u"cupsreject"_s, {u"any"_s}));
        ui::prompts::expectInform(u"プリンタ「any」が受け付けないため、印刷しませんでした。"
                                  "（Destination \"any\" is not accepting jobs.）"_s);
        const bool issued = print(shop, u"any"_s);
        QVERIFY(test::PrivateCups::run(u"cupsaccept"_s, {u"any"_s}));
        QVERIFY(!issued);
        QCOMPARE(jobs(), before);
        // A stopped printer's queue takes the job and keeps it.
        QVERIFY(test::PrivateCups::run(u"cupsdisable"_s, {u"any"_s}));
        QVERIFY(print(shop, u"any"_s));
        QVERIFY(m_system.jobs()->front().isUnderWay());
        QVERIFY(m_system.cancel(m_system.jobs()->front()));
        QVERIFY(test::PrivateCups::run(u"cupsenable"_s, {u"any"_s}));
    }
};

QTEST_MAIN(TestNotesOnQueues)
#include "tst_notes_on_queues.moc"
