#include "app/files/backup_origin.h"

#include "base/replacement.h"
#include "db/care/plain_handle.h"
#include "db/connection.h"
#include "db/schema.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

const QString ofAnotherFile = u"別のファイル"_s;

namespace
{

QString noteFor(const QString &backup)
{
    const QFileInfo info(backup);
    return info.path() + u'/' + info.completeBaseName() + u".origin"_s;
}

QByteArray pathOf(const QString &database)
{
    const QFileInfo info(database);
    return (info.canonicalFilePath().isEmpty() ? info.absoluteFilePath() : info.canonicalFilePath()).toUtf8();
}

QByteArray note(const QByteArray &path, const QByteArray &state) { return path + '\n' + state + '\n'; }

// By a tenth in any table, and by so many rows as a day's work does not delete; or the table was emptied.
bool hasMore(const QString &backup, db::Connection &connection)
{
    constexpr qint64 fewestRows = 10;
    db::PlainHandle file;
    if (!file.open(backup))
        return false;
    const auto &tables = db::tables();
    return std::any_of(tables.begin(), tables.end(), [&](const db::Table &table) {
        const QString counting = u"SELECT count(*) FROM "_s + table.name;
        const auto then = file.number(counting.toUtf8());
        const auto now = connection.select(counting);
        if (!then || !now)
            return false;
        const qint64 rows = now->rows.front().front().toLongLong();
        const bool isMuchLess = *then - rows >= fewestRows && *then * 10 > rows * 11;
        return *then > 0 && (rows == 0 || isMuchLess);
    });
}

} // namespace

// SQLite counts the changes of a file in its header.
QByteArray stateOf(const QString &fileName)
{
    constexpr qint64 headerSize = 100; // bytes
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.read(headerSize).toHex() : QByteArray();
}

void noteOrigin(const QString &backup, const QString &database, const QString &copy)
{
    base::Replacement file(noteFor(backup));
    const QByteArray text = note(pathOf(database), stateOf(copy));
    QFile writing(file.name());
    if (file.begin() && writing.open(QIODevice::WriteOnly) && writing.write(text) == text.size()) {
        writing.close();
        (void)file.finish(); // without it the backup is kept
    }
}

QString reasonToKeepLast(const QString &backup, db::Connection &connection)
{
    QFile file(noteFor(backup));
    const QByteArray noted = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const QByteArray state = stateOf(backup);
    if (state.isEmpty() || !noted.endsWith('\n' + state + '\n'))
        return u"変更あり"_s;
    if (noted != note(pathOf(connection.fileName()), state))
        return ofAnotherFile;
    return reasonToKeepDated(backup, connection);
}

QString reasonToKeepDated(const QString &backup, db::Connection &connection)
{
    return hasMore(backup, connection) ? u"削除前"_s : QString();
}

} // namespace app
