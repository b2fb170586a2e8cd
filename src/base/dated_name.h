#pragma once

#include <QDate>
#include <QString>

namespace base
{

/// "2026-04-01", for names of files. With any year that a clock can show, and for no day at all too.
QString isoDay(const QDate &date);

/// The name under which a file is kept when another one takes its place: "shop.cdb" becomes
/// "shop 破損 2026-04-01.cdb" beside it, with a number behind the date when that name is taken.
QString datedName(const QString &fileName, const QString &why, const QDate &date);

} // namespace base
