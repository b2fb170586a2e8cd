#include "base/dated_name.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace base
{

QString datedName(const QString &fileName, const QString &why, const QDate &date)
{
    const QFileInfo info(fileName);
    const QString stem =
        info.path() + u'/' + info.completeBaseName() + u' ' + why + u' ' + date.toString(Qt::ISODate);
    const QString suffix = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    QString name = stem + suffix;
    for (int number = 2; QFileInfo::exists(name); ++number)
        name = stem + u" (%1)"_s.arg(number) + suffix;
    return name;
}

} // namespace base
