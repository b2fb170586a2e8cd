#pragma once

#include "base/progress.h"
#include "base/result.h"
#include "printing/print_frame.h"
#include "printing/sheets.h"

#include <QByteArray>
#include <QMarginsF>
#include <QString>
#include <QTextDocument>

#include <functional>
#include <map>
#include <memory>
#include <optional>

class QPagedPaintDevice;
class QPainter;
class QPrinter;

// The one place that knows how a sheet comes onto paper, a preview or into a PDF.
namespace printing
{

/// A print job: its sheets, and the rich texts that their slots name, which drawing lays out anew. All sheets
/// are of one paper size.
struct Document
{
    QString title;  // of the job, the preview and the PDF
    QString remark; // told beside the preview; not printed
    Purpose purpose = Purpose::DeliveryNotesAndBills;
    Sheets sheets;
    std::map<QString, std::shared_ptr<QTextDocument>> richTexts;
    QString printer{};            // to begin with; empty: the purpose's own
    QString font{};               // as it is stored; empty: the purpose's own
    bool calibrationGrid = false; // to begin with
    /// It is drawn from the corner of whatever paper the printer has, as it is read; the sheets' own size is
    /// that of what is printed on.
    bool onPrintersPaper = false;
    /// Keeps the PDF of what the shop issues, once a queue took it or it was saved; empty: nothing is kept.
    std::function<base::Status(const QByteArray &pdf)> keep{};
};

/// How a document is drawn.
struct Look
{
    QString face;                           // font of all text
    bool calibrationGrid = false;           // lines every 10 mm, to see how far a printer is off
    bool fineGrid = false;                  // every millimetre too, on a screen where there is room for them
    std::optional<QMarginsF> unprintable{}; // of the printer, millimetres; else as the device tells
    std::optional<QSizeF>
        fed{}; // the paper that goes through a printer, millimetres; else sheets as they are read
};

/// Draws \a sheet from the painter's present origin, which is the paper's top-left corner.
/// \a unprintable: the printer's own margins, millimetres.
void drawSheet(QPainter &painter, const Document &document, const Sheet &sheet, const Look &look,
               const QMarginsF &unprintable);

/// The unprintable margins of a usual printer, millimetres.
QMarginsF usualUnprintableMargins();

/// The unprintable margins of \a device in millimetres; for one that has none (a PDF) those of a usual
/// printer, so that a form comes out in the same place.
QMarginsF unprintableMargins(const QPagedPaintDevice &device);

/// Tells \a device the document's paper. To be called again after a print dialog, which may have changed it.
void setPage(QPagedPaintDevice &device, const Document &document, const Look &look = {});

/// Draws all sheets onto \a device, one a page. Fails when the device takes no job. \a progress counts pages.
base::Status drawDocument(QPagedPaintDevice &device, const Document &document, const Look &look,
                          const base::Progress &progress = base::unwatched);

/// Prints the pages and copies that \a printer was set up for. No job is started when the printer is missing;
/// one that \a progress stops is withdrawn where the system can, else the pages so far come out.
base::Status printDocument(QPrinter &printer, const Document &document, const Look &look,
                           const base::Progress &progress = base::unwatched);

} // namespace printing
