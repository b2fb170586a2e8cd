#include "text/format_value.h"

#include "text/numbers.h"

using base::Format;

namespace text
{

namespace
{

// Characters. A cell that lays out the megabytes of a damaged or hostile file stands still.
constexpr qsizetype longestShown = 5'000;

} // namespace

QString formatValue(Format format, const QVariant &value)
{
    if (value.isNull())
        return {};
    if (format == Format::Date)
        return value.toString().replace(u'-', u'/');
    const int type = value.typeId();
    const bool isText = type == QMetaType::QString || type == QMetaType::QByteArray;
    if (!isText && format == Format::Amount)
        return formatAmount(value.toDouble());
    if (!isText && format == Format::Quantity)
        return formatQuantity(value.toDouble());
    if (type == QMetaType::Double)
        return formatPlain(value.toDouble());
    const QString whole = value.toString();
    return whole.size() <= longestShown ? whole : whole.first(longestShown) + QChar(u'…');
}

} // namespace text
