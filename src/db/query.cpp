#include "db/query.h"

#include "db/schema.h"

using namespace Qt::StringLiterals;

namespace db
{

QString inJapaneseOrder(const QString &column) { return column + u" COLLATE japanese"_s; }

QString Query::key() const { return keyOf(table); }

QString Query::from() const
{
    QString tables = table;
    if (fromAllOver)
        tables += u" NOT INDEXED"_s;
    if (!alongside.isEmpty())
        tables += u", "_s + alongside;
    return tables;
}

QStringList Query::fullOrder() const
{
    QStringList terms = order;
    if (terms.isEmpty() || (terms.last() != key() && terms.last() != key() + u" DESC"_s))
        terms << (alongside.isEmpty() ? key() : table + u'.' + key());
    return terms;
}

QString Query::selecting(const QString &selected) const
{
    const QString condition = where.isEmpty() ? QString() : u" WHERE "_s + where;
    return u"SELECT "_s + selected + u" FROM "_s + from() + condition + u" ORDER BY "_s +
           fullOrder().join(u", "_s);
}

} // namespace db
