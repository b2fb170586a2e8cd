#include "printing/text_fit.h"

#include "printing/sheet.h"
#include "text/cp932.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr double pointStep = 0.05; // one twip
constexpr double smallestPoints = 1;

double wholeSteps(double points) { return std::floor(points / pointStep + 1e-6) * pointStep; }

constexpr int leastBytes = 2; // a full-width character

int bytesInLine(double width, double points)
{
    const double halfWidth = millimetresFromPoints(points / 2);
    return std::max(leastBytes, static_cast<int>(width / halfWidth + 1e-6));
}

bool isOfFigure(QChar c) { return c.isDigit() || c == u'-'; }

// How much of \a text goes into a line that has room for \a fitting characters of it.
qsizetype lineLength(QStringView text, qsizetype fitting)
{
    if (fitting == text.size() || !isOfFigure(text[fitting]))
        return fitting;
    qsizetype start = fitting;
    while (start > 0 && isOfFigure(text[start - 1]))
        --start;
    return start > 0 ? start : fitting;
}

QStringList broken(QStringView text, int bytes, Breaks breaks = Breaks::Anywhere)
{
    QStringList lines;
    do {
        QString line = text::leftCp932(text, bytes);
        if (breaks == Breaks::BesideFigures)
            line.truncate(lineLength(text, line.size()));
        lines << line;
        text = text.sliced(line.size());
    } while (!text.isEmpty());
    return lines;
}

// As few lines as there must be, about equally long, so that no single bracket is left over for the last.
QStringList balanced(QStringView text, double width, double points)
{
    int bytes = bytesInLine(width, points);
    QStringList lines = broken(text, bytes);
    for (const auto count = lines.size(); bytes > leastBytes;) {
        QStringList narrower = broken(text, --bytes);
        if (narrower.size() > count)
            break;
        lines = std::move(narrower);
    }
    return lines;
}

// Megabytes in a damaged or hostile file would be laid out for minutes, and nobody could read them.
QString shortened(QStringView text)
{
    constexpr qsizetype longestPrinted = 5'000; // characters; a sheet full of the smallest type
    return text.size() <= longestPrinted ? text.toString() : text.first(longestPrinted).toString() + u"…"_s;
}

QStringList blockLines(QStringView text, double width, double points, Breaks breaks)
{
    QStringList lines;
    for (const QStringView paragraph : text.split(u'\n'))
        lines << broken(singleLine(paragraph), bytesInLine(width, points), breaks);
    return lines;
}

} // namespace

double textWidth(QStringView text, double points)
{
    return text::cp932Bytes(text) * millimetresFromPoints(points / 2);
}

double fittingPoints(QStringView text, double width, double points)
{
    return fittingPoints(textWidth(text, points), width, points);
}

double fittingPoints(double natural, double room, double points)
{
    return natural <= room ? points : std::max(smallestPoints, wholeSteps(points * room / natural));
}

FittedText fitText(QStringView text, double width, double points, double minPoints)
{
    const double fitting = fittingPoints(text, width, points);
    if (fitting >= minPoints)
        return {{text.toString()}, fitting};
    return {balanced(text, width, minPoints), minPoints};
}

FittedText fitBlock(QStringView text, double width, double height, double points, double leading,
                    Breaks breaks)
{
    const QString shown = shortened(text);
    for (;; points -= 0.5) {
        const QStringList lines = blockLines(shown, width, points, breaks);
        const double needed = static_cast<double>(lines.size()) * millimetresFromPoints(points) * leading;
        if (needed <= height || points - 0.5 < smallestPoints)
            return {lines, points};
    }
}

qsizetype linesInBlock(QStringView text, double width, double points, Breaks breaks)
{
    return blockLines(shortened(text), width, points, breaks).size();
}

QString singleLine(QStringView text)
{
    QString line = shortened(text);
    line.replace(u"\r\n"_s, u" "_s);
    for (QChar &c : line) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return line;
}

} // namespace printing
