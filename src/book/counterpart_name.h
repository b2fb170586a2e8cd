#pragma once

#include "base/result.h"
#include "book/slip_kind.h"

#include <QString>

#include <optional>

namespace db
{
class Connection;
}

namespace book
{

/// A slip's 相手先ID. A slip of a converted book may have none.
using CounterpartKey = std::optional<qint64>;

/// How lists and ledgers call the counterpart \a id that was deleted while slips refer to it.
inline QString deletedCounterpartName(qint64 id) { return QStringLiteral("(削除済み) ID %1").arg(id); }

/// How they call the counterpart of a slip that no register has. Older programs write 0 for none.
inline QString unknownCounterpartName(CounterpartKey key)
{
    return key.value_or(0) == 0 ? QStringLiteral("(相手先なし)") : deletedCounterpartName(*key);
}

/// How they call an employee who was deleted.
inline QString deletedEmployeeName(qint64 id) { return deletedCounterpartName(id); }

/// Whether \a name is what a counterpart is called that no register has. Nobody is addressed by it.
inline bool isUnknownCounterpartName(const QString &name)
{
    return name.startsWith(QStringLiteral("(削除済み)")) || name == unknownCounterpartName({});
}

/// The name of a counterpart in one line, of its two.
inline QString counterpartName(const QString &name1, const QString &name2)
{
    const QString name = name2.isEmpty() ? name1 : name1 + u'　' + name2;
    return name.simplified().isEmpty() ? QStringLiteral("(名称なし)") : name;
}

/// What the counterpart is called in lists, deleted or not.
base::Result<QString> nameOfCounterpart(db::Connection &connection, Party party, CounterpartKey counterpart);

} // namespace book
