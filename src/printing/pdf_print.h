#pragma once

#include "printing/purposes.h"

#include <QByteArray>
#include <QSizeF>

#include <optional>

class QWidget;

namespace workspace
{
class Workspace;
}

// Printing a PDF of this program's once more, as it is.
namespace printing
{

struct PdfPages
{
    int count = 0;
    QSizeF paper; // millimetres, as it is fed
};

/// The pages of \a pdf; nothing where it is none that pdfOf() made.
std::optional<PdfPages> pagesOf(const QByteArray &pdf);

/// Asks for printer and copies and hands all of \a pdf over as a job called \a title. Tells its failures
/// itself. \return whether a queue took it
bool printPdf(workspace::Workspace &workspace, QWidget *parent, const QByteArray &pdf, const QString &title,
              Purpose purpose);

} // namespace printing
