#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QDate>
#include <QString>

#include <vector>

namespace db
{

/// One step of the schema: the statements that turn a file of the version before into one of \a version.
struct Migration
{
    int version;
    QByteArray statements;
};

using Migrations = std::vector<Migration>;

/// The steps since version 1, in order; the last one leads to schemaVersion.
const Migrations &migrations();

/// Brings the closed database file \a fileName up to the version of the last step: all steps and the version
/// number in one transaction, after a copy was kept beside the file under a dated name. Nothing is done with
/// a file that is up to date, newer or not ours; opening it tells. After a failure the file is as it was.
base::Status migrate(const QString &fileName, const QDate &today, const Migrations &steps = migrations());

} // namespace db
