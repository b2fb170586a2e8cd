#include "base/replacement.h"

#include "base/file_rights.h"
#include "base/flush.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace base
{

namespace
{

const QString companions[] = {QString(), u"-journal"_s};

// What programs left that were killed while they wrote; no file takes a day to be written. The time is the
// one that the disk gave the new file \a made, which may be another machine's.
void removeLeftovers(const QFileInfo &made, const QString &label)
{
    const QDateTime dayBefore = made.lastModified().addDays(-1);
    const auto left = made.dir().entryInfoList({label + u"~????????.tmp*"_s}, QDir::Files);
    for (const QFileInfo &file : left) {
        if (file.lastModified() < dayBefore)
            QFile::remove(file.filePath());
    }
}

} // namespace

Replacement::Replacement(const QString &target, const QString &label)
    : m_target(QFileInfo(linkedFile(QFileInfo(target).absoluteFilePath())).absoluteFilePath())
    , m_label(label)
{
    const QDir folder(QFileInfo(m_target).path());
    m_name = folder.filePath(label + u'~' + QUuid::createUuid().toString(QUuid::Id128).first(8) + u".tmp"_s);
}

Replacement::~Replacement()
{
    if (!m_isThere)
        return;
    for (const QString &companion : companions)
        QFile::remove(m_name + companion);
}

Status Replacement::begin()
{
    const Status made = makePrivateFile(m_name);
    m_isThere = bool(made);
    if (made)
        removeLeftovers(QFileInfo(m_name), m_label);
    return made;
}

Status Replacement::finish()
{
    if (const Status flushed = flushFile(m_name); !flushed)
        return flushed;
    if (QFileInfo::exists(m_target))
        giveRightsOf(m_target, m_name);
    else
        giveRightsOfNewFile(m_name);
    const Status replaced = replaceFile(m_name, m_target);
    m_isThere = !replaced;
    return replaced;
}

} // namespace base
