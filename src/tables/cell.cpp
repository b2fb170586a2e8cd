#include "tables/cell.h"

#include "text/numbers.h"

#include <QDate>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tables
{

namespace
{

// Where a double no longer holds every integer.
constexpr qint64 highestExact = qint64(1) << 53;

bool isWritable(QStringView text, qsizetype at)
{
    const QChar c = text[at];
    if (c.isHighSurrogate())
        return at + 1 < text.size() && text[at + 1].isLowSurrogate();
    if (c.isLowSurrogate())
        return at > 0 && text[at - 1].isHighSurrogate();
    return c != u'\0' && c.unicode() < 0xFFFE;
}

QString writable(QString text)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (!isWritable(text, at))
            text[at] = QChar::ReplacementCharacter;
    }
    return text;
}

Cell textCell(const QVariant &value) { return {Cell::Kind::Text, writable(value.toString())}; }

Cell numberCell(const QVariant &value)
{
    const int type = value.typeId();
    if (type == QMetaType::LongLong || type == QMetaType::Int) {
        const qint64 number = value.toLongLong();
        if (number >= -highestExact && number <= highestExact)
            return {Cell::Kind::Number, QString::number(number), double(number)};
    } else if (type == QMetaType::Double) {
        const double number = value.toDouble();
        if (!std::isfinite(number))
            return {Cell::Kind::Text, text::formatPlain(number)};
        // Written out, as other programs' readers expect of an amount: 100000 rather than 1e+05.
        const char form = std::abs(number) <= double(highestExact) ? 'f' : 'g';
        return {Cell::Kind::Number, QString::number(number, form, QLocale::FloatingPointShortest), number};
    }
    return textCell(value);
}

Cell dateCell(const QVariant &value)
{
    QString text = value.toString();
    const QDate date = text.size() == 10 ? QDate::fromString(text, Qt::ISODate) : QDate();
    // Spreadsheet programs count a 29th of February 1900, and not all of them alike before it.
    if (!date.isValid() || date < QDate(1900, 3, 1))
        return textCell(value);
    return {Cell::Kind::Date, text.replace(u'-', u'/'), double(QDate(1899, 12, 30).daysTo(date))};
}

} // namespace

Cell cellOf(const QVariant &value, base::Format format)
{
    if (value.isNull())
        return {};
    if (base::isNumber(format))
        return numberCell(value);
    return format == base::Format::Date ? dateCell(value) : textCell(value);
}

} // namespace tables
