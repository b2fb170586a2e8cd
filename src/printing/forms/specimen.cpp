#include "printing/forms/specimen.h"

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

FormValues specimenValues(const FormItems &items, int rows)
{
    FormValues values;
    values.items = specimens(items.items);
    for (int row = 0; row < rows; ++row)
        values.rows.push_back(specimens(items.columns));
    return values;
}

} // namespace printing
