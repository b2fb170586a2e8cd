#include "printing/pdf_mark.h"

#include <QCryptographicHash>

#include <algorithm>

namespace printing
{

namespace
{

constexpr QByteArrayView timeEntry("/CreationDate (");
constexpr QByteArrayView markEntry("/Said (");
constexpr qsizetype markLength = 20; // hexadecimal digits; the time leaves room for 25 at least

} // namespace

void markPdf(QByteArray &pdf, const QCryptographicHash *said)
{
    const qsizetype from = pdf.indexOf(timeEntry);
    const qsizetype to = pdf.indexOf(')', from);
    if (from < 0 || to < 0)
        return;
    std::fill(pdf.begin() + from, pdf.begin() + to + 1, ' ');
    if (!said)
        return;
    const QByteArray entry = markEntry.toByteArray() + said->result().toHex().first(markLength) + ')';
    std::copy(entry.begin(), entry.end(), pdf.begin() + from);
}

QByteArray markIn(QByteArrayView pdf)
{
    const qsizetype from = pdf.indexOf(markEntry);
    const qsizetype to = from < 0 ? -1 : pdf.indexOf(')', from);
    return to < 0 ? QByteArray()
                  : pdf.sliced(from + markEntry.size(), to - from - markEntry.size()).toByteArray();
}

} // namespace printing
