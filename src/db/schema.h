#pragma once

#include <QString>
#include <QStringList>

#include <vector>

// The tables of a database file of this program. schema.sql holds their columns.
namespace db
{

inline constexpr quint32 applicationId = 0x4B414E42; // "KANB"
inline constexpr int schemaVersion = 1;

/// The name of the initial file, which is copied and never worked in.
inline constexpr const char16_t *initialFileName = u"Kanbalore.cdb";
/// The name of the backup that is written at every exit.
inline constexpr const char16_t *backupFileName = u"BackupKanbalore.cdb";

struct Table
{
    QString name;
    QString key;         // empty for the slip lines, which have none
    QStringList columns; // in the order of schema.sql
    QStringList numbers; // the columns that hold numbers, not text
};

/// The 13 tables, as schema.sql declares them.
const std::vector<Table> &tables();

/// The tables that \a statements declare; empty when they cannot be carried out.
std::vector<Table> tablesDeclaredBy(const QByteArray &statements);

/// The key column of \a table; empty when the table is unknown or has none.
QString keyOf(const QString &table);

/// The statements of schema.sql.
QString schemaSql();

} // namespace db
