#include "shipping/carriers/management_number.h"

#include "db/keys.h"
#include "text/width.h"

#include <algorithm>

namespace shipping
{

namespace
{

std::optional<qint64> keyFrom(QStringView digits)
{
    const bool isKey =
        !digits.isEmpty() && digits.size() <= 10 &&
        std::all_of(digits.begin(), digits.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    const qint64 key = isKey ? digits.toLongLong() : 0;
    return key > 0 && key <= db::highestKey ? std::optional(key) : std::nullopt;
}

} // namespace

std::optional<qint64> shipmentOfNumber(const QString &number, const QStringList &prefixes)
{
    const QString plain = text::withPlainHyphens(text::toHalfWidthAscii(number)).trimmed();
    for (const QString &prefix : prefixes) {
        if (!plain.startsWith(prefix, Qt::CaseInsensitive))
            continue;
        // "KB-12" is what "KB" is known by as well.
        QStringView rest = QStringView(plain).sliced(prefix.size());
        if (!prefix.isEmpty() && rest.startsWith(u'-'))
            rest = rest.sliced(1);
        if (const auto key = keyFrom(rest))
            return key;
    }
    return std::nullopt;
}

} // namespace shipping
