#include "base/dated_name.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace base
{

// Qt writes no year beyond 9999 in this form.
QString isoDay(const QDate &date)
{
    return u"%1-%2-%3"_s.arg(date.year(), 4, 10, QChar(u'0'))
        .arg(date.month(), 2, 10, QChar(u'0'))
        .arg(date.day(), 2, 10, QChar(u'0'));
}

QString datedName(const QString &fileName, const QString &why, const QDate &date)
{
    const QFileInfo info(fileName);
    const QString stem = info.path() + u'/' + info.completeBaseName() + u' ' + why + u' ' + isoDay(date);
    const QString suffix = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    QString name = stem + suffix;
    for (int number = 2; QFileInfo::exists(name); ++number)
        name = stem + u" (%1)"_s.arg(number) + suffix;
    return name;
}

} // namespace base
