#include "db/condition.h"

#include "text/search_pattern.h"

using namespace Qt::StringLiterals;

namespace db
{

Condition &Condition::operator&=(const Condition &other)
{
    if (!sql.isEmpty() && !other.sql.isEmpty())
        sql += u" AND "_s;
    sql += other.sql;
    values += other.values;
    return *this;
}

QString dayIn(const QString &column) { return u"day_in("_s + column + u')'; }

Condition keyHolds(const QString &column, const QString &typed)
{
    const QStringList words = text::searchWords(typed);
    Condition condition;
    for (const QString &word : words.isEmpty() ? QStringList(QString()) : words) {
        QStringList terms;
        QVariantList values;
        for (const QString &pattern : text::keyPatterns(word)) {
            terms += column + u" LIKE ? ESCAPE '\\'"_s;
            values += pattern;
        }
        condition &= {u'(' + terms.join(u" OR "_s) + u')', values};
    }
    return condition;
}

} // namespace db
