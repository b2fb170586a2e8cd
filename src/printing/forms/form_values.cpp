#include "printing/forms/form_values.h"

#include "printing/forms/form.h"
#include "printing/text_fit.h"
#include "text/numbers.h"

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

const QString amountFormat = u"#,##0"_s;
const QString quantityFormat = u"#,##0.##"_s;
const QString plainFormat = u"0"_s;
const QString usualDateFormat = u"yyyy年M月d日"_s;

struct Writer
{
    const QString &format;

    QString operator()(const QString &text) const { return text; }
    QString operator()(double number) const
    {
        if (format == amountFormat)
            return text::formatAmount(number);
        return format == plainFormat ? text::formatPlain(number) : text::formatQuantity(number);
    }
    QString operator()(QDate date) const
    {
        return date.isValid() ? date.toString(format.isEmpty() ? usualDateFormat : format) : QString();
    }
};

} // namespace

QString formText(const FormSource &source, const FormRecord &record, bool lines)
{
    if (source.item.isEmpty())
        return source.text;
    const auto value = record.constFind(source.item);
    QString text = value == record.constEnd() ? QString() : std::visit(Writer{source.format}, *value);
    if (text.isEmpty() && !source.always)
        return {};
    text = source.before + text + source.after;
    return lines ? text : singleLine(text);
}

bool formHas(const QString &item, const FormRecord &record)
{
    return item.isEmpty() || !formText({.item = item}, record, true).isEmpty();
}

bool isFormFormat(const QString &format, FormItemKind kind)
{
    switch (kind) {
    case FormItemKind::Number:
        return format == amountFormat || format == quantityFormat || format == plainFormat;
    case FormItemKind::Date:
        return format.contains(u'y') || format.contains(u'M') || format.contains(u'd');
    case FormItemKind::Text:
    case FormItemKind::RichText:
        break;
    }
    return false;
}

} // namespace printing
