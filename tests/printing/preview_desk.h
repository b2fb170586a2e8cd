#pragma once

#include "printing/DialogPrint.h"
#include "printing/frmPreview.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/pages_of_text.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace printing;

inline QString textOfPdf(const QByteArray &pdf)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-raw"_s, u"-"_s, u"-"_s});
    reader.write(pdf);
    reader.closeWriteChannel();
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAllStandardOutput());
}

inline QString textOfFile(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? textOfPdf(file.readAll()) : QString();
}

// A preview of some pages over printers that keep what they are given.
struct PreviewDesk
{
    explicit PreviewDesk(int pages, const std::function<void(FakePrinters &, FreshShop &)> &prepare = {},
                         const std::function<base::Status(const QByteArray &pdf)> &keep = {})
    {
        if (prepare)
            prepare(*printers, shop);
        keepPrintSystem(shop.workspace, printers);
        Document document = pagesOfText(pages);
        document.keep = keep;
        preview = std::make_unique<frmPreview>(shop.workspace, std::move(document));
        driver = std::make_unique<ScreenDriver>(preview.get());
        driver->show();
    }

    /// Opens the print dialog by its key and does \a work in it; \a work has to close it.
    void print(const std::function<void(QWidget &dialog)> &work) const
    {
        QTimer::singleShot(0, preview.get(), [&] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(dialog && dialog->objectName() == u"DialogPrint"_s);
            work(*dialog);
        });
        QTest::keyClick(preview.get(), Qt::Key_P, Qt::ControlModifier);
    }

    FreshShop shop;
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    std::unique_ptr<frmPreview> preview;
    std::unique_ptr<ScreenDriver> driver;
};

/// The bounds of the dots that \a wanted says.
inline QRectF areaOf(const QImage &image, bool (*wanted)(QRgb dot))
{
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (wanted(image.pixel(x, y)))
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

template <class T>
T &in(QWidget &dialog, const char *name)
{
    return *dialog.findChild<T *>(QLatin1StringView(name));
}

inline void press(QWidget &dialog, const char *name) { in<QPushButton>(dialog, name).click(); }
