#pragma once

#include "base/progress.h"

#include <QDateTime>

#include <vector>

namespace app
{

/// A backup as it is listed.
struct Backup
{
    QString fileName;
    QString database; // of which it is a copy: the name of that file
    QDateTime written;
    qint64 size = 0; // bytes
    bool isSound = false;
    QString finding;      // "正常", or what keeps it from being opened
    qint64 customers = 0; // of a sound one
    qint64 slips = 0;
};

/// All backups in \a applicationFolder and its folder Backup, the newest first, each after SQLite's integrity
/// check.
base::Result<std::vector<Backup>> checkedBackups(const QString &applicationFolder,
                                                 const base::Progress &progress);

} // namespace app
