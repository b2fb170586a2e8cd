#include "printing/preview_desk.h"

#include "printing/sheet_view.h"

#include <QCheckBox>
#include <QScrollBar>
#include <QWheelEvent>

class TestFrmPreview : public ScriptedTest
{
    Q_OBJECT

private slots:
    void turnsPagesByKeys()
    {
        const PreviewDesk desk(3);
        auto &page = desk.driver->the<QSpinBox>("spnPage");
        QCOMPARE(desk.driver->the<QLabel>("lblPage").text(), u"/ 3 ページ"_s);
        QTest::keyClick(desk.preview.get(), Qt::Key_PageDown);
        QTest::keyClick(desk.preview.get(), Qt::Key_PageDown);
        QCOMPARE(page.value(), 3);
        QVERIFY(!desk.driver->the<QPushButton>("cmdNext").isEnabled());
        QTest::keyClick(desk.preview.get(), Qt::Key_PageUp);
        QCOMPARE(page.value(), 2);
        QTest::keyClick(desk.preview.get(), Qt::Key_Home);
        QCOMPARE(desk.preview->page(), 1);
        QVERIFY(!desk.driver->the<QPushButton>("cmdPrevious").isEnabled());
        page.setFocus();
        page.selectAll();
        QTest::keyClicks(&page, u"3"_s);
        QTest::keyClick(&page, Qt::Key_Return);
        QCOMPARE(desk.preview->page(), 3);
        QTest::keyClick(desk.preview.get(), Qt::Key_Escape);
        QVERIFY(!desk.preview->isVisible());
    }

    void thePageLookedAtIsDrawnInItsPlace_data()
    {
        QTest::addColumn<QString>("zoom");
        QTest::addColumn<QSizeF>("paper"); // as it is fed
        QTest::addColumn<bool>("turned");
        QTest::newRow("whole") << u"cmdWholePage"_s << QSizeF(210, 297) << false;
        QTest::newRow("a continuous form") << u"cmdWholePage"_s << QSizeF(241.3, 114.3) << false;
        QTest::newRow("read across") << u"cmdWholePage"_s << QSizeF(114, 184) << true;
        QTest::newRow("its width") << u"cmdPageWidth"_s << QSizeF(210, 297) << false;
        QTest::newRow("smaller") << u"cmdZoomOut"_s << QSizeF(210, 297) << false;
    }

    // Each page has a black square further right than the one before.
    void thePageLookedAtIsDrawnInItsPlace()
    {
        QFETCH(QString, zoom);
        QFETCH(QSizeF, paper);
        QFETCH(bool, turned);
        Document document;
        for (int page = 1; page <= 3; ++page) {
            Sheet sheet;
            sheet.paperWidth = paper.width();
            sheet.paperHeight = paper.height();
            sheet.turned = turned;
            sheet.origin = Origin::PaperEdge;
            sheet.boxes.push_back({twipsFromMillimetres(30 * page), twipsFromMillimetres(40),
                                   twipsFromMillimetres(20), twipsFromMillimetres(20), 0, 0});
            document.sheets.push_back(sheet);
        }
        FreshShop shop;
        keepPrintSystem(shop.workspace, std::make_shared<FakePrinters>());
        frmPreview preview(shop.workspace, document);
        ScreenDriver driver(&preview);
        driver.show();
        driver.press(qPrintable(zoom));
        QTest::keyClick(&preview, Qt::Key_PageDown);
        QCoreApplication::processEvents(); // a scroll bar comes with the next turn of the loop
        auto &view = driver.the<SheetView>("preview");
        const QImage seen = view.viewport()->grab().toImage();
        const QRectF white = areaOf(seen, [](QRgb dot) { return dot == qRgb(255, 255, 255); });
        const QRectF black = areaOf(seen, [](QRgb dot) { return dot == qRgb(0, 0, 0); });
        const double scale = view.scale();
        const QSizeF read = turned ? paper.transposed() : paper;
        const double tolerance = 1.5; // dots
        QVERIFY(std::abs(white.width() - read.width() * scale) < tolerance);
        if (zoom == u"cmdPageWidth"_s)
            QVERIFY(white.width() > view.viewport()->width() - 30);
        else
            QVERIFY(std::abs(white.height() - read.height() * scale) < tolerance);
        QVERIFY(std::abs(black.left() - white.left() - 60 * scale) < tolerance);
        QVERIFY(std::abs(black.top() - white.top() - 40 * scale) < tolerance);
        QVERIFY(std::abs(black.width() - 20 * scale) < tolerance);
    }

    void theWheelZoomsAndTurnsAtTheEnd()
    {
        const PreviewDesk desk(3);
        auto &view = desk.driver->the<SheetView>("preview");
        const auto wheel = [&](int by, Qt::KeyboardModifiers keys) {
            const QPointF middle(50, 50);
            QWheelEvent event(middle, view.viewport()->mapToGlobal(middle), {}, {0, by}, Qt::NoButton, keys,
                              Qt::NoScrollPhase, false);
            QApplication::sendEvent(view.viewport(), &event);
        };
        wheel(-120, Qt::NoModifier);
        QCOMPARE(desk.preview->page(), 2);
        const double before = view.scale();
        wheel(120, Qt::ControlModifier);
        QVERIFY(view.scale() > before * 1.2);
        QCOMPARE(desk.preview->page(), 2);
        wheel(-120, Qt::NoModifier); // there is paper left to be seen
        QCOMPARE(desk.preview->page(), 2);
        view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
        wheel(-120, Qt::NoModifier);
        QCOMPARE(desk.preview->page(), 3);
        QCOMPARE(view.verticalScrollBar()->value(), 0);
    }

    void aGridSeenCloselyShowsEachMillimetre()
    {
        Document document;
        document.sheets.push_back({});
        SheetView view(document, {u"IPAMincho"_s, true});
        view.resize(600, 700);
        view.show();
        const auto linesAcross = [&view] { // between the lines of the grid that lie
            const QImage seen = view.viewport()->grab().toImage();
            const QRectF paper = areaOf(seen, [](QRgb dot) { return dot == qRgb(255, 255, 255); });
            const int y = qRound(paper.top() + 15.5 * view.scale());
            int lines = 0;
            for (int x = qRound(paper.left()) + 1; x < qRound(paper.right()); ++x)
                lines +=
                    seen.pixel(x, y) != qRgb(255, 255, 255) && seen.pixel(x - 1, y) == qRgb(255, 255, 255);
            return lines * view.scale() / paper.width() * 10; // to ten millimetres
        };
        const double whole = linesAcross();
        QVERIFY2(whole > 0.7 && whole < 1.3, qPrintable(QString::number(whole)));
        while (view.scale() < 8)
            view.zoomIn();
        const double near = linesAcross();
        QVERIFY2(near > 8.5 && near < 11, qPrintable(QString::number(near)));
    }

    void savesAsPdfAndAsksBeforeOverwriting()
    {
        const PreviewDesk desk(1);
        const QString fileName = desk.shop.path(u"saved.pdf"_s);
        ui::file_dialogs::expectFile(desk.shop.path(u"saved"_s));
        QTest::keyClick(desk.preview.get(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(textOfFile(fileName).contains(u"第1葉"_s));

        QFile::resize(fileName, 3);
        ui::file_dialogs::expectFile(fileName);
        ui::prompts::expectAsk(u"「saved.pdf」は既にあります。上書きしますか。"_s, false);
        QTest::keyClick(desk.preview.get(), Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(QFile(fileName).size(), 3);
    }

    // What is kept is what went out, byte for byte; of a few pages the whole document.
    void whatIsIssuedIsKept_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"printed", "some pages", "saved", "refused", "looked at"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }

    void whatIsIssuedIsKept()
    {
        QFETCH(QString, how);
        QList<QByteArray> kept;
        const PreviewDesk desk(3, {}, [&kept](const QByteArray &pdf) {
            kept << pdf;
            return base::Status();
        });
        const QString fileName = desk.shop.path(u"saved.pdf"_s);
        if (how == u"saved"_s) {
            for (int time = 0; time < 2; ++time) {
                ui::file_dialogs::expectFile(fileName);
                if (time > 0)
                    ui::prompts::expectAsk({}, true);
                desk.driver->press("cmdPdf");
            }
            QFile saved(fileName);
            QVERIFY(saved.open(QIODevice::ReadOnly));
            QCOMPARE(kept, QList<QByteArray>(2, saved.readAll()));
            return;
        }
        if (how == u"looked at"_s) {
            desk.preview->close();
            QVERIFY(kept.isEmpty());
            return;
        }
        if (how == u"refused"_s) {
            desk.printers->refusal = base::Error{u"受け付けません。"_s};
            ui::prompts::expectInform(u"受け付けません。"_s);
        }
        desk.print([&how](QWidget &dialog) {
            if (how == u"some pages"_s)
                in<QSpinBox>(dialog, "spnFirst").setValue(3);
            press(dialog, "cmdPrint");
        });
        if (how == u"refused"_s) {
            QVERIFY(kept.isEmpty());
            return;
        }
        QCOMPARE(kept.size(), 1);
        QVERIFY(textOfPdf(kept.front()).contains(u"第1葉"_s));
        QCOMPARE(kept.front() == desk.printers->given.front().pdf, how == u"printed"_s);
    }

    // The paper is there; that its copy is not must not be passed over, nor be taken for a failed print.
    void aCopyThatCannotBeKeptIsTold()
    {
        const PreviewDesk desk(1, {},
                               [](const QByteArray &) { return base::Error{u"ディスクがいっぱいです。"_s}; });
        ui::prompts::expectInform(
            u"印刷は済みましたが、発行控えに残せませんでした。原因を取り除いてから、もう一度"
            "この伝票のプレビューを開き、「PDF保存」を押してください。"_s,
            u"ディスクがいっぱいです。"_s);
        desk.print([](QWidget &dialog) { press(dialog, "cmdPrint"); });
        QVERIFY(desk.preview->isIssued());
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
    }
};

QTEST_MAIN(TestFrmPreview)
#include "tst_frmpreview.moc"
