#pragma once

#include "app/shop_window.h"
#include "db/care/plain_handle.h"

#include <QTest>

// The files of a shop, looked at and changed behind the program's back.

inline void write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

/// \return -1 when the file cannot be read
inline int customersIn(const QString &fileName)
{
    db::PlainHandle file;
    if (!file.open(fileName))
        return -1;
    const auto count = file.number("SELECT count(*) FROM 納品先");
    return count ? int(*count) : -1;
}

inline void change(const QString &fileName, const QByteArray &sql)
{
    db::PlainHandle file;
    if (!file.open(fileName) || !file.run(sql))
        qFatal("cannot change %s", qPrintable(fileName));
}

/// The clerk's hands at the next start and end of the program.
inline void openAndClose(Stage &stage, const QString &fileName)
{
    stage.file = fileName;
    stage.load();
    QVERIFY(stage.window->close());
    stage.window.reset();
    stage.shop.connection.close();
}
