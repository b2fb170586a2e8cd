#pragma once

#include <QString>

namespace slips
{

/// How lists and ledgers call the counterpart \a id that was deleted while slips refer to it.
inline QString deletedCounterpartName(qint64 id) { return QStringLiteral("(削除済み) ID %1").arg(id); }

/// The same for an employee.
inline QString deletedEmployeeName(qint64 id) { return deletedCounterpartName(id); }

/// The name of a counterpart in one line, of its two.
inline QString counterpartName(const QString &name1, const QString &name2)
{
    const QString name = name2.isEmpty() ? name1 : name1 + u'　' + name2;
    return name.simplified().isEmpty() ? QStringLiteral("(名称なし)") : name;
}

} // namespace slips
