#include "base/same_file.h"

#include <QDir>
#include <QFileInfo>

namespace base
{

namespace
{

QString cleaned(const QString &fileName) { return QDir::cleanPath(QFileInfo(fileName).absoluteFilePath()); }

} // namespace

bool isSameFile(const QString &one, const QString &other)
{
    if (one.isEmpty() || other.isEmpty())
        return false;
    if (cleaned(one).compare(cleaned(other), Qt::CaseInsensitive) == 0)
        return true;
    const QString real = QFileInfo(one).canonicalFilePath();
    return !real.isEmpty() && real == QFileInfo(other).canonicalFilePath();
}

} // namespace base
