#pragma once

#include <QByteArray>
#include <QByteArrayView>

class QCryptographicHash;

// What tells two PDFs that say the same from two that do not, whatever printer, font or position they were
// drawn for: a mark among what a PDF tells of itself.
namespace printing
{

/// Puts the mark of what \a said has hashed in the place of the time of drawing, which the toolkit writes;
/// where \a said is null, nothing. The PDF counts its bytes, so that the length stays.
void markPdf(QByteArray &pdf, const QCryptographicHash *said);

/// The mark of \a pdf; empty where it has none.
QByteArray markIn(QByteArrayView pdf);

} // namespace printing
