// Slips as they come out of real print queues, with paper of any size and without.
#include "printing/DialogPrint.h"
#include "printing/queue/cups_system.h"
#include "shipping/slips/slip_printer.h"
#include "slip_cases.h"
#include "support/fresh_shop.h"
#include "support/pdf_words.h"
#include "support/private_cups.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace shipping;
using slip_cases::parcel;

namespace
{

const PdfWord *wordOf(const PdfPage &page, const QString &text)
{
    const auto found = std::ranges::find(page.words, text, &PdfWord::text);
    return found == page.words.end() ? nullptr : &*found;
}

} // namespace

class TestSlipsOnQueues : public ScriptedTest
{
    Q_OBJECT

    std::unique_ptr<test::PrivateCups> m_cups;

    /// Prints as the clerk, who takes what the dialog proposes. \return the page; none where it was refused
    std::optional<PdfPage> print(FreshShop &shop, const QString &queue)
    {
        shop.settings.write(workspace::keys::kuroPrinterName, queue);
        SlipPrinter printer(shop.workspace);
        QTimer::singleShot(0, this, [] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(dialog && dialog->objectName() == u"DialogPrint"_s);
            dialog->findChild<QPushButton *>(u"cmdPrint"_s)->click();
            dialog->close();
        });
        if (!printer.prepare(nullptr, {parcel()}) || !printer.issue(parcel(), Record::Add))
            return std::nullopt;
        const int job = printing::printSystem(shop.workspace).jobs()->front().number;
        return wordsOfPages(m_cups->arrived(job)).front();
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

    void slipsArriveWhereTheyBelong_data()
    {
        QTest::addColumn<QString>("queue");
        QTest::addColumn<bool>("isDeclared");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("any size, declared") << u"any"_s << true << u""_s;
        QTest::newRow("any size, the queue's own") << u"any"_s << false << u""_s;
        QTest::newRow("cut paper, its own") << u"cut"_s << false << u""_s;
        QTest::newRow("cut paper, declared")
            << u"cut"_s << true
            << u"プリンタ「cut」は、幅 114.392 × 長さ 230 mmの用紙を受け付けません。"
               "この用紙を使えるプリンタを選ぶか、プリンタの設定で用紙を加えてください。"_s;
    }

    void slipsArriveWhereTheyBelong()
    {
        QFETCH(QString, queue);
        QFETCH(bool, isDeclared);
        QFETCH(QString, refusal);
        FreshShop shop;
        shop.workspace.panel.slipPaperDeclared = isDeclared;
        if (!refusal.isEmpty())
            ui::prompts::expectInform(refusal);
        const auto page = print(shop, queue);
        QCOMPARE(page.has_value(), refusal.isEmpty());
        QCOMPARE(shop.value(u"SELECT COUNT(*) FROM 発送マスター"_s).toInt(), page ? 1 : 0);
        if (!page)
            return;
        constexpr double paperWidth = 6486 * 25.4 / 1440;
        constexpr double tolerance = 0.2;
        const QSizeF paper = isDeclared ? QSizeF(paperWidth, 230) : QSizeF(210, 297);
        QVERIFY2(std::abs(page->size.width() - paper.width()) < 0.4 &&
                     std::abs(page->size.height() - paper.height()) < 0.4,
                 qPrintable(u"%1 %2"_s.arg(page->size.width()).arg(page->size.height())));
        struct
        {
            QString text;
            QPointF at;
        } const placed[] = {
            {u"佐藤花子"_s, {30, 58}}, {u"ふじ10kg"_s, {110, 34}}, {u"信州りんご園"_s, {30, 100}}};
        for (const auto &[text, at] : placed) {
            const PdfWord *word = wordOf(*page, text);
            QVERIFY2(word, qPrintable(text));
            // Declared, the top lies at the right edge.
            const QPointF corner = isDeclared ? QPointF(word->area.top(), paperWidth - word->area.right())
                                              : word->area.topLeft();
            QVERIFY2(std::abs(corner.x() - at.x()) < tolerance && std::abs(corner.y() - at.y()) < tolerance,
                     qPrintable(u"%1 at %2, %3"_s.arg(text).arg(corner.x()).arg(corner.y())));
        }
    }

    void aQueueThatTakesNothingLeavesNoRow()
    {
        FreshShop shop;
        QVERIFY(test::PrivateCups::run(u"cupsreject"_s, {u"any"_s}));
        const bool isPrinted = print(shop, u"any"_s).has_value();
        QVERIFY(test::PrivateCups::run(u"cupsaccept"_s, {u"any"_s}));
        QVERIFY(!isPrinted);
        QCOMPARE(shop.value(u"SELECT COUNT(*) FROM 発送マスター"_s).toInt(), 0);
    }
};

QTEST_MAIN(TestSlipsOnQueues)
#include "tst_slips_on_queues.moc"
