#include "text/format_value.h"

#include "text/numbers.h"

using base::Format;

namespace text
{

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
    return type == QMetaType::Double ? formatPlain(value.toDouble()) : value.toString();
}

} // namespace text
