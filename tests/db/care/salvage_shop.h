#pragma once

#include "db/care/salvage.h"
#include "support/fresh_shop.h"

#include <QFile>
#include <QtGlobal>

/// A shop whose file is damaged in many ways and rebuilt into a second one.
class SalvageShop
{
public:
    static void write(const QString &fileName, const QByteArray &content)
    {
        QFile file(fileName);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(fileName));
    }

    static QByteArray read(const QString &fileName)
    {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// To be called once the shop is filled: closes both files. \return the shop's, as it is now
    QByteArray close()
    {
        shop.connection.close();
        result.connection.close();
        return read(shop.path(QStringLiteral("shop.cdb")));
    }

    /// Rebuilds the file \a bytes and opens what comes of it in `result`.
    db::Salvage rebuilt(const QByteArray &bytes)
    {
        const QString damaged = shop.path(QStringLiteral("damaged.cdb"));
        const QString target = result.path(QStringLiteral("rebuilt.cdb"));
        result.connection.close();
        QFile::remove(target);
        write(damaged, bytes);
        const auto done = db::rebuild(damaged, target, base::unwatched);
        if (!done)
            qFatal("%s", qPrintable(done.error().text));
        if (!result.connection.open(target))
            qFatal("the result cannot be opened");
        return *done;
    }

    FreshShop shop;
    FreshShop result;
};
