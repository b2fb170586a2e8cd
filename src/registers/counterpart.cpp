#include "registers/counterpart.h"

#include "book/tax.h"
#include "db/recordset.h"
#include "db/schema.h"
#include "registers/postal/postal_lookup.h"
#include "text/width.h"

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int keyLength = 150; // characters

} // namespace

QString firstCharacters(const QString &text, int count)
{
    const QString head = text.left(count);
    return head.size() == count && head.back().isHighSurrogate() ? head.chopped(1) : head;
}

QString counterpartKey(const QString &name1, const QString &name2, const QStringList &others)
{
    const QString name = text::withoutFullWidthBlanks(name1 + name2);
    return firstCharacters((QStringList{name} + others).join(u' '), keyLength);
}

QStringList taxClassNames()
{
    using book::TaxClass;
    return {nameOf(TaxClass::OnDelivery), nameOf(TaxClass::OnBill), nameOf(TaxClass::Included)};
}

base::Status saveCounterpart(db::Recordset &rows, const QString &keyColumn,
                             QString (*keyOf)(const db::Recordset &), QVariantMap values)
{
    values.insert(keyColumn, keyOf(rows));
    const QString zip = u"郵便番号"_s;
    if (const auto code = completePostalCode(rows.text(zip)); code && rows.isEdited(zip))
        values.insert(zip, *code);
    QVariantMap old;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        old.insert(value.key(), rows.value(value.key()));
        rows.setValue(value.key(), value.value());
    }
    const base::Status saved = rows.update();
    if (!saved) {
        for (auto value = old.cbegin(); value != old.cend(); ++value)
            rows.setValue(value.key(), value.value());
        return saved;
    }
    return {};
}

} // namespace registers
