#include "text/format_value.h"

#include "text/numbers.h"
#include "text/shown_text.h"

using base::Format;

namespace text
{

namespace
{

QString shown(const QString &whole)
{
    return whole.size() <= longestShown ? whole : beginningOf(whole, longestShown) + QChar(u'…');
}

} // namespace

QString formatValue(Format format, const QVariant &value)
{
    if (value.isNull())
        return {};
    if (format == Format::Date)
        return shown(value.toString()).replace(u'-', u'/');
    const int type = value.typeId();
    const bool isText = type == QMetaType::QString || type == QMetaType::QByteArray;
    if (!isText && format == Format::Amount)
        return formatAmount(value.toDouble());
    if (!isText && format == Format::Quantity)
        return formatQuantity(value.toDouble());
    if (type == QMetaType::Double)
        return formatPlain(value.toDouble());
    return shown(value.toString());
}

} // namespace text
