#pragma once

#include <QByteArray>
#include <QProcess>
#include <QRectF>
#include <QRegularExpression>
#include <QString>

#include <vector>

/// A word as it lies on a page, millimetres from the upper left corner.
struct PdfWord
{
    QString text;
    QRectF area;
};

struct PdfPage
{
    QSizeF size;
    std::vector<PdfWord> words;
};

/// The pages of \a pdf, as another program reads them.
inline std::vector<PdfPage> wordsOfPages(const QByteArray &pdf)
{
    constexpr double mm = 25.4 / 72;
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"),
                 {QStringLiteral("-bbox"), QStringLiteral("-"), QStringLiteral("-")});
    reader.write(pdf);
    reader.closeWriteChannel();
    reader.waitForFinished();
    static const QRegularExpression line(QStringLiteral(
        R"x(<page width="([0-9.]+)" height="([0-9.]+)">|)x"
        R"x(<word xMin="([-0-9.]+)" yMin="([-0-9.]+)" xMax="([-0-9.]+)" yMax="([-0-9.]+)">(.*)</word>)x"));
    std::vector<PdfPage> pages;
    auto found = line.globalMatch(QString::fromUtf8(reader.readAll()));
    while (found.hasNext()) {
        const auto match = found.next();
        const auto number = [&](int group) { return match.captured(group).toDouble() * mm; };
        if (match.captured(7).isEmpty())
            pages.push_back({{number(1), number(2)}, {}});
        else
            pages.back().words.push_back(
                {match.captured(7), QRectF(QPointF(number(3), number(4)), QPointF(number(5), number(6)))});
    }
    return pages;
}
