#include "book/slip_counts.h"

#include "db/keys.h"

using namespace Qt::StringLiterals;

namespace book
{

base::Result<bool> hasSlips(db::Connection &connection, const SlipKind &kind)
{
    // One row tells; a shop has a hundred thousand slips of a kind.
    const Condition condition = slipsOf({.kinds = {kind}});
    const auto found = connection.integers(
        u"SELECT ID FROM 入出庫マスター WHERE "_s + condition.sql + u" LIMIT 1"_s, condition.values);
    if (!found)
        return found.error();
    return !found->empty();
}

base::Result<qint64> countSlips(db::Connection &connection, const Selection &selection)
{
    const Condition condition = slipsOf(selection);
    const auto count = connection.integers(u"SELECT COUNT(*) FROM 入出庫マスター WHERE "_s + condition.sql,
                                           condition.values);
    if (!count)
        return count.error();
    return count->front();
}

Condition documentsOf(Party party)
{
    QVariantList letters;
    for (const SlipKind &kind : kindsOf(party))
        letters << QString(QChar(kind.letter));
    return {u"伝票種別 IN ("_s + QStringList(letters.size(), u"?"_s).join(u", "_s) + u')', letters};
}

namespace
{

std::vector<db::References> referencesTo(Party party)
{
    std::vector<db::References> all{{u"入出庫マスター"_s, u"相手先ID"_s, slipsOf({.kinds = kindsOf(party)})},
                                    {u"発行控"_s, u"相手先ID"_s, documentsOf(party)}};
    if (party == Party::Customer)
        all.insert(all.end(), {{u"発送マスター"_s, u"納品先ID"_s},
                               {u"発送マスター"_s, u"依頼主ID"_s},
                               {u"宛名印刷"_s, u"納品先ID"_s}});
    return all;
}

} // namespace

base::Result<qint64> keyWithoutSlips(db::Connection &connection, Party party, qint64 next)
{
    for (;;) {
        const qint64 first = next;
        for (const db::References &references : referencesTo(party)) {
            const auto free = db::unusedKey(connection, next, references);
            if (!free)
                return free;
            next = *free;
        }
        if (next == first)
            return next;
    }
}

base::Result<QHash<qint64, int>> slipsOfEach(db::Connection &connection, Party party)
{
    const Condition condition = slipsOf({.kinds = kindsOf(party)});
    const auto found = connection.integers(
        u"SELECT 相手先ID FROM 入出庫マスター WHERE 相手先ID IS NOT NULL AND "_s + condition.sql,
        condition.values);
    if (!found)
        return found.error();
    QHash<qint64, int> slips;
    for (const qint64 counterpart : *found)
        ++slips[counterpart];
    return slips;
}

} // namespace book
