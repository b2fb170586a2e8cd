#include "book/counterpart_name.h"

#include "db/connection.h"

using namespace Qt::StringLiterals;

namespace book
{

base::Result<QString> nameOfCounterpart(db::Connection &connection, Party party, CounterpartKey counterpart)
{
    const auto found = connection.select(
        party == Party::Customer ? u"SELECT 納品先名1, 納品先名2 FROM 納品先 WHERE 納品先ID = ?"_s
                                 : u"SELECT 仕入先名1, 仕入先名2 FROM 仕入先 WHERE 仕入先ID = ?"_s,
        {counterpart ? QVariant(*counterpart) : QVariant()});
    if (!found)
        return found.error();
    if (found->isEmpty())
        return unknownCounterpartName(counterpart);
    return counterpartName(found->rows.front().at(0).toString(), found->rows.front().at(1).toString());
}

} // namespace book
