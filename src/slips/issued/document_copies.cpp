#include "slips/issued/document_copies.h"

#include "db/statement.h"
#include "slips/issued/document_files.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <filesystem>
#include <system_error>
#include <vector>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

// By name alone: to read all of them at every backup would take minutes, and to ask for each whether it is a
// file seconds.
QSet<QString> pathsIn(const QStringList &folders)
{
    QSet<QString> paths;
    for (const QString &folder : folders) {
        const QStringList years = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString &year : years) {
            std::error_code failed; // a year that cannot be read has none
            const std::filesystem::path path(QFile::encodeName(QDir(folder).filePath(year)).toStdString());
            for (std::filesystem::directory_iterator at(path, failed), end; at != end; at.increment(failed))
                paths.insert(year + u'/' + QFile::decodeName(at->path().filename().string().c_str()));
        }
    }
    return paths;
}

base::Result<std::vector<DocumentPlace>> missingPlaces(db::Connection &connection, QSet<QString> present)
{
    std::vector<DocumentPlace> missing;
    const base::Status read = connection.visit(
        u"SELECT 日付, ハッシュ FROM 発行控 ORDER BY 発行ID DESC"_s, {}, [&](const db::Statement &row) {
            const DocumentPlace place{
                QDate::fromString(QString::fromUtf8(row.text(0)), Qt::ISODate),
                QString::fromUtf8(row.text(1)),
            };
            const QString path = pathOf(place);
            if (path.isEmpty() || present.contains(path))
                return;
            present.insert(path);
            missing.push_back(place);
        });
    return read ? base::Result<std::vector<DocumentPlace>>(std::move(missing)) : read.error();
}

} // namespace

base::Result<CopiedDocuments> copyDocuments(db::Connection &connection, const QStringList &from,
                                            const QStringList &to, const base::Progress &progress)
{
    const auto missing = missingPlaces(connection, pathsIn(to));
    if (!missing)
        return missing.error();
    CopiedDocuments copies;
    qint64 done = 0;
    for (const DocumentPlace &place : *missing) {
        if (!progress(done++, qint64(missing->size())))
            return base::cancelled();
        const FoundDocument found = findDocument(from, place);
        if (found.state != DocumentState::Whole) {
            ++copies.lacking;
            continue;
        }
        if (const base::Status stored = storeDocument(to.front(), place, found.pdf); !stored)
            return stored.error();
        ++copies.copied;
    }
    return copies;
}

} // namespace slips
