#include "db/create.h"

#include "base/flush.h"
#include "db/errors.h"
#include "db/schema.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

base::Status createDatabase(const QString &fileName)
{
    if (QFileInfo::exists(fileName) && QFileInfo(fileName).size() > 0)
        return base::Error{u"同じ名前のファイルがあるため、作成できませんでした。("_s + fileName + u")"_s};
    sqlite3 *handle = nullptr;
    const QByteArray utf8 = QFileInfo(fileName).absoluteFilePath().toUtf8();
    const QByteArray statements =
        "BEGIN;" + schemaSql().toUtf8() + QByteArrayLiteral("PRAGMA application_id = ") +
        QByteArray::number(applicationId) + ";" + QByteArrayLiteral("PRAGMA user_version = ") +
        QByteArray::number(schemaVersion) + "; COMMIT";
    int code =
        sqlite3_open_v2(utf8.constData(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (code == SQLITE_OK)
        code = sqlite3_exec(handle, statements.constData(), nullptr, nullptr, nullptr);
    base::Status created = code == SQLITE_OK ? base::Status() : base::Status(errorFrom(handle));
    sqlite3_close(handle);
    if (created)
        created = base::flushFile(fileName);
    if (!created)
        QFile::remove(fileName);
    return created;
}

} // namespace db
