#include "support/version_1.h"

#include "db/care/plain_handle.h"

#include <QFile>

void makeVersion1(const QString &fileName, const QByteArray &statements)
{
    QFile schema(QStringLiteral(VERSION_1_SCHEMA));
    QFile empty(fileName);
    db::PlainHandle file;
    if (!schema.open(QIODevice::ReadOnly) || !empty.open(QIODevice::WriteOnly) || !file.open(fileName) ||
        !file.run(schema.readAll() + "PRAGMA application_id = 0x4B414E42; PRAGMA user_version = 1"))
        qFatal("no file of version 1");
    if (const base::Status filled = file.run(statements); !filled)
        qFatal("%s", qPrintable(filled.error().text));
}
