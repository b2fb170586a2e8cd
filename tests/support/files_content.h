#pragma once

#include "db/care/plain_handle.h"
#include "support/fresh_shop.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QMap>

#include <sqlite3.h>

inline QByteArray bytesOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The rows of all tables of a sound file, the bytes of another one; as a digest.
inline QByteArray contentOf(const QString &fileName)
{
    QCryptographicHash digest(QCryptographicHash::Md5);
    db::PlainHandle file;
    QString check = QStringLiteral("not to be opened");
    if (file.open(fileName)) {
        db::PlainStatement checking(file, "PRAGMA integrity_check");
        check = checking && checking.step() == SQLITE_ROW ? checking.text(0) : QString();
    }
    if (check != QStringLiteral("ok")) {
        file.close();
        return "damaged " + QCryptographicHash::hash(bytesOf(fileName), QCryptographicHash::Md5).toHex();
    }
    db::PlainStatement tables(file, "SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY name");
    while (tables.step() == SQLITE_ROW) {
        digest.addData(tables.text(0).toUtf8());
        db::PlainStatement rows(file, "SELECT * FROM \"" + tables.text(0).toUtf8() + "\" ORDER BY rowid");
        while (rows.step() == SQLITE_ROW) {
            for (int column = 0; column < sqlite3_column_count(rows.get()); ++column)
                digest.addData(rows.text(column).toUtf8() + '\0');
        }
    }
    return digest.result().toHex();
}

using World = QMap<QString, QByteArray>; ///< content by file

/// Of the database files in its folder.
inline World worldOf(const FreshShop &shop)
{
    World world;
    QDirIterator files(shop.folder.path(), {QStringLiteral("*.cdb")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString name = files.next();
        world[name.mid(shop.folder.path().size() + 1)] = contentOf(name);
    }
    // Named by the place of the shop, which is another one each time.
    for (const QString &name : world.keys()) {
        if (const auto at = name.indexOf(QLatin1Char('~')); at > 0)
            world[name.left(at) + name.mid(at + 7)] = world.take(name);
    }
    return world;
}
