#include "support/earlier_version.h"

#include "db/care/plain_handle.h"

#include <QFile>

using namespace Qt::StringLiterals;

void makeVersion(int version, const QString &fileName, const QByteArray &statements)
{
    QFile schema(QStringLiteral(EARLIER_SCHEMAS "/version-%1.sql").arg(version));
    QFile empty(fileName);
    db::PlainHandle file;
    if (!schema.open(QIODevice::ReadOnly) || !empty.open(QIODevice::WriteOnly) || !file.open(fileName) ||
        !file.run(schema.readAll() +
                  "PRAGMA application_id = 0x4B414E42; PRAGMA user_version = " + QByteArray::number(version)))
        qFatal("no file of version %d", version);
    if (const base::Status filled = file.run(statements); !filled)
        qFatal("%s", qPrintable(filled.error().text));
}
