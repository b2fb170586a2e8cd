#include "db/create.h"

#include "db/errors.h"
#include "db/flush.h"
#include "db/schema.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

Status createDatabase(const QString &fileName)
{
    if (QFileInfo::exists(fileName))
        return Error{u"同じ名前のファイルがあるため、作成できませんでした。("_s + fileName + u")"_s};
    sqlite3 *handle = nullptr;
    const QByteArray utf8 = fileName.toUtf8();
    const QByteArray statements =
        "BEGIN;" + schemaSql().toUtf8() + QByteArrayLiteral("PRAGMA application_id = ") +
        QByteArray::number(applicationId) + ";" + QByteArrayLiteral("PRAGMA user_version = ") +
        QByteArray::number(schemaVersion) + "; COMMIT";
    int code =
        sqlite3_open_v2(utf8.constData(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (code == SQLITE_OK)
        code = sqlite3_exec(handle, statements.constData(), nullptr, nullptr, nullptr);
    Status created = code == SQLITE_OK ? Status() : Status(errorFrom(handle));
    sqlite3_close(handle);
    if (created)
        created = flushFile(fileName);
    if (!created)
        QFile::remove(fileName);
    return created;
}

} // namespace db
