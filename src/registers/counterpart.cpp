#include "registers/counterpart.h"

#include "book/tax.h"
#include "db/connection.h"
#include "db/recordset.h"
#include "db/schema.h"
#include "registers/postal/postal_lookup.h"
#include "text/like.h"
#include "text/width.h"

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int keyLength = 150; // characters

} // namespace

QString foldedName(const QString &name) { return QString::fromStdU16String(text::folded(name)).remove(u' '); }

QString nameAsWritten(const QString &name)
{
    return QString::fromStdU16String(text::foldedAsWritten(name)).remove(u' ');
}

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

base::Result<QString> twinOf(db::Connection &connection, const db::Recordset &rows)
{
    const auto column = [&](const QString &name) -> QString { return rows.table() + name; };
    // It may not have been brought into form yet: its box still has the cursor.
    const QString digits = text::toHalfWidthAscii(text::withPlainHyphens(rows.text(u"TEL1"_s))).remove(u'-');
    const QString name = foldedName(rows.text(column(u"名1"_s)) + rows.text(column(u"名2"_s)));
    if (digits.isEmpty() || name.isEmpty())
        return QString();
    const auto others =
        connection.select(u"SELECT %1ID, %1名1, %1名2, TEL1 FROM %1 "
                          "WHERE replace(TEL1, '-', '') = ? AND %1ID <> ? ORDER BY %1ID"_s.arg(rows.table()),
                          {digits, rows.currentKey()});
    if (!others)
        return others.error();
    for (const QVariantList &other : others->rows) {
        if (foldedName(other.at(1).toString() + other.at(2).toString()) == name)
            return u"ID %1　%2　%3"_s.arg(other.at(0).toString(), other.at(1).toString(),
                                          other.at(3).toString());
    }
    return QString();
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
