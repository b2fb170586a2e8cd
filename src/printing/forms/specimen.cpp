#include "printing/forms/specimen.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr double longAmount = 1'234'567;
constexpr int longDay[3] = {2026, 12, 31};

FormValue specimen(const QString &name, FormItemKind kind)
{
    switch (kind) {
    case FormItemKind::Number:
        return longAmount;
    case FormItemKind::Date:
        return QDate(longDay[0], longDay[1], longDay[2]);
    case FormItemKind::Text:
    case FormItemKind::RichText:
        break;
    }
    return name;
}

FormRecord specimens(const std::map<QString, FormItemKind> &items)
{
    FormRecord record;
    for (const auto &[name, kind] : items)
        record.insert(name, specimen(name, kind));
    return record;
}

} // namespace

FormValues specimenValues(const FormItems &items, int rows, const QStringList &without)
{
    FormValues values;
    values.items = specimens(items.items);
    for (const QString &item : without)
        values.items.remove(item);
    FormRecord row = specimens(items.columns);
    for (FormValue &value : row) {
        // Of the name's last part the first letter: a longer text would break in a narrow column, and make
        // the row higher than it is in use.
        if (auto *text = std::get_if<QString>(&value))
            *text = text->section(u'.', -1).left(1);
    }
    values.rows.assign(static_cast<std::size_t>(std::max(rows, 0)), row);
    return values;
}

} // namespace printing
