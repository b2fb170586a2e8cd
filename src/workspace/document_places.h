#pragma once

#include <QStringList>

// Where the documents lie that were issued out of a database. They are many and never change, so that they
// stand beside the file and not in it: a backup then copies what is new.
namespace workspace
{

/// The folder in which new documents of \a database are kept: "shop.発行控" beside "shop.cdb". What was kept
/// of it beside it ("shop 復元前 2026-04-01.cdb") and the backups of one file in one folder share theirs.
QString documentFolderOf(const QString &database);

/// Where a document that is named in \a database may lie: its own folder first, then those of its backups, or
/// of the file of which it is one.
QStringList documentFoldersOf(const QString &database, const QString &applicationFolder);

} // namespace workspace
