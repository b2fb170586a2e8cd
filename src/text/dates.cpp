#include "text/dates.h"

#include "text/width.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace text
{

namespace
{

QRegularExpressionMatch matchTyped(QStringView s)
{
    static const QRegularExpression form(
        uR"(\A([0-9]{4})(?:([/.-])([0-9]{1,2})\g2([0-9]{1,2})|([0-9]{2})([0-9]{2}))\z)"_s);
    return form.match(toHalfWidthAscii(s).trimmed());
}

QRegularExpressionMatch matchWritten(QStringView s)
{
    static const QRegularExpression form(
        uR"(\A(明治|大正|昭和|平成|令和|[mtshr])?([0-9]{1,4}|元)(?:年([0-9]{1,2})月([0-9]{1,2})日|([/.-])([0-9]{1,2})\g5([0-9]{1,2}))\z)"_s);
    return form.match(toHalfWidthAscii(s).toLower().remove(u' '));
}

} // namespace

std::optional<QDate> parseDate(QStringView s)
{
    const auto match = matchTyped(s);
    if (!match.hasMatch())
        return std::nullopt;
    const int first = match.hasCaptured(5) ? 5 : 3;
    const QDate date(match.captured(1).toInt(), match.captured(first).toInt(),
                     match.captured(first + 1).toInt());
    return date.isValid() ? std::optional(date) : std::nullopt;
}

namespace
{

struct Era
{
    QStringView name;
    QChar letter;
    int yearBefore; // the first one
    QDate from;
    QDate to;
};

// The days on which the eras changed, by their cabinet orders.
const std::array<Era, 5> &eras()
{
    static const std::array<Era, 5> all{{{u"明治", u'm', 1867, QDate(1868, 1, 25), QDate(1912, 7, 29)},
                                         {u"大正", u't', 1911, QDate(1912, 7, 30), QDate(1926, 12, 24)},
                                         {u"昭和", u's', 1925, QDate(1926, 12, 25), QDate(1989, 1, 7)},
                                         {u"平成", u'h', 1988, QDate(1989, 1, 8), QDate(2019, 4, 30)},
                                         {u"令和", u'r', 2018, QDate(2019, 5, 1), QDate(9999, 12, 31)}}};
    return all;
}

} // namespace

std::optional<QDate> parseWrittenDate(QStringView s)
{
    const auto match = matchWritten(s);
    if (!match.hasMatch())
        return std::nullopt;
    const QString written = match.captured(1);
    const auto era = std::ranges::find_if(eras(), [&](const Era &each) {
        return !written.isEmpty() &&
               (each.name == written || (written.size() == 1 && each.letter == written.front()));
    });
    const bool isNumbered = match.captured(2) != u"元"_s;
    const int year = isNumbered ? match.captured(2).toInt() : 1;
    const int month = (match.hasCaptured(3) ? match.captured(3) : match.captured(6)).toInt();
    const int day = (match.hasCaptured(3) ? match.captured(4) : match.captured(7)).toInt();
    const bool hasEra = era != eras().end();
    if (!hasEra && (!isNumbered || match.captured(2).size() != 4))
        return std::nullopt;
    const QDate date(hasEra ? era->yearBefore + year : year, month, day);
    if (!date.isValid() || (hasEra && (date < era->from || date > era->to)))
        return std::nullopt;
    return date;
}

std::optional<QDate> parseAnyDate(QStringView s)
{
    const auto typed = parseDate(s);
    return typed ? typed : parseWrittenDate(s);
}

bool isWrittenAsDay(QStringView s)
{
    const auto written = matchWritten(s);
    const bool hasYear = !written.captured(1).isEmpty() || written.captured(2).size() == 4;
    return matchTyped(s).hasMatch() || (written.hasMatch() && hasYear);
}

QString storedDay(const QString &typed)
{
    const auto day = parseAnyDate(typed);
    return day ? stored(*day) : typed;
}

QString shownDay(const QString &stored)
{
    const QDate day = QDate::fromString(stored, Qt::ISODate);
    return day.isValid() && stored.size() == 10 ? formatDate(day) : stored;
}

QString formatDate(const QDate &date) { return date.toString(u"yyyy/MM/dd"_s); }

} // namespace text
