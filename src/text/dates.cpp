#include "text/dates.h"

#include "text/width.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace text
{

std::optional<QDate> parseDate(QStringView s)
{
    static const QRegularExpression form(
        uR"(\A([0-9]{4})(?:([/.-])([0-9]{1,2})\g2([0-9]{1,2})|([0-9]{2})([0-9]{2}))\z)"_s);
    const auto match = form.match(toHalfWidthAscii(s).trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    const int first = match.hasCaptured(5) ? 5 : 3;
    const QDate date(match.captured(1).toInt(), match.captured(first).toInt(),
                     match.captured(first + 1).toInt());
    return date.isValid() ? std::optional(date) : std::nullopt;
}

QString formatDate(const QDate &date) { return date.toString(u"yyyy/MM/dd"_s); }

} // namespace text
