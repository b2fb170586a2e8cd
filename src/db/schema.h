#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <vector>

// The tables of a database file of this program. schema.sql holds their columns.
namespace db
{

inline constexpr quint32 applicationId = 0x4B414E42; // "KANB"
inline constexpr int schemaVersion = 4;

/// The name of the initial file, which is copied and never worked in.
inline constexpr const char16_t *initialFileName = u"Kanbalore.cdb";
/// The name of the backup that is written at every exit.
inline constexpr const char16_t *backupFileName = u"BackupKanbalore.cdb";

struct Table
{
    QString name;
    QString key;
    QStringList columns;        // those that are stored, in the order of schema.sql
    QStringList numbers;        // the columns that hold numbers
    qsizetype firstColumns = 0; // how many of the columns version 1 had; 0: it had no such table

    /// Whether \a column was in version 1, and so in the files of the earlier program.
    [[nodiscard]] bool isFirst(const QString &column) const;
    /// The version that brought \a column; 0 when none of ours did.
    [[nodiscard]] int versionOf(const QString &column) const;
    /// Whether the key is given out by the database, in the order in which rows are added.
    [[nodiscard]] bool hasOwnKeys() const { return !isFirst(key); }
};

/// The tables of a shop, as schema.sql declares them.
const std::vector<Table> &tables();

/// These and the table of the file's counter.
const std::vector<Table> &declaredTables();

/// The column, in each table that screens edit, of the number that tells one state of a row from another.
inline constexpr const char16_t *versionColumn = u"版";
/// The table of the file's counter; its one row holds the last 版 that was given.
inline constexpr const char16_t *counterTable = u"版数";

/// The one column that is worked out from another one: the table and the column's name.
inline constexpr const char16_t *generatedTable = u"入出庫マスター";
inline constexpr const char16_t *generatedColumn = u"種別";

/// Whether \a statement, which declares generatedTable with its generated column, declares that column just
/// as schema.sql does.
bool declaresOwnGeneratedColumn(const QString &statement);

/// The tables that \a statements declare; empty when they cannot be carried out. They may come out of a
/// damaged or hostile file: what is no declaration is not carried out.
std::vector<Table> tablesDeclaredBy(const QByteArray &statements);

/// The key column of \a table; empty when the table is unknown.
QString keyOf(const QString &table);

/// Whether the rows of \a table bear a 版.
bool bearsVersion(const QString &table);

/// The statements of schema.sql.
QString schemaSql();

/// Those of them that make an index, by its name.
const QMap<QString, QString> &declaredIndexes();

} // namespace db
