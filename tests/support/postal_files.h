#pragma once

#include "text/cp932.h"

#include <QDir>
#include <QFile>

/// Writes postal-code data files into a folder: groups with their areas, entries of the two tables.
class PostalFiles
{
public:
    struct Area
    {
        QByteArray code; // seven digits
        QString address;
    };
    struct Group
    {
        QString name;
        QString shortName;
        QList<Area> areas;
    };

    /// One record of 70 bytes.
    static QByteArray record(const Area &area)
    {
        return area.code.leftJustified(10, ' ', true) +
               text::toCp932(area.address).value_or(QByteArray()).leftJustified(60, ' ', true);
    }

    static void write(const QString &folder, const QString &name, const QByteArray &content)
    {
        QFile file(QDir(folder).filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("no file %s", qPrintable(name));
    }

    /// "ZIPCODE.txt" and "ZIPID1.txt".
    static void writeAreas(const QString &folder, const QList<Group> &groups)
    {
        QByteArray areas;
        QByteArray index;
        for (const Group &group : groups) {
            index += text::toCp932(group.name + u',' + group.shortName).value_or(QByteArray()) + ',' +
                     QByteArray::number(areas.size() / 70 + 1) + "\r\n";
            for (const Area &area : group.areas)
                areas += record(area);
        }
        write(folder, QStringLiteral("ZIPCODE.txt"), areas);
        write(folder, QStringLiteral("ZIPID1.txt"), index);
    }

    /// One entry a line.
    static void writeEntries(const QString &folder, const QString &name, const QStringList &entries)
    {
        write(folder, name,
              text::toCp932(entries.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).value());
    }
};
