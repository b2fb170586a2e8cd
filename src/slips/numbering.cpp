#include "slips/numbering.h"

#include "db/connection.h"

using namespace Qt::StringLiterals;

namespace slips
{

QString automaticNumber(const SlipKind &kind, const QString &infix, qint64 id)
{
    return QChar(kind.letter) + infix + QString::number(id);
}

db::Status checkManualNumber(db::Connection &connection, const QString &number, char16_t letter)
{
    if (!number.startsWith(QChar(letter)))
        return db::Error{u"伝票番号に誤りがあります。"_s};
    const auto found = connection.select(u"SELECT * FROM 入出庫マスター WHERE 伝票番号 = ?"_s, {number});
    if (!found)
        return found.error();
    if (!found->isEmpty())
        return db::Error{u"伝票番号が重複しています。"_s};
    return {};
}

} // namespace slips
