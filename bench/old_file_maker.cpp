#include "old_file_maker.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

#include <vector>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

constexpr qsizetype pageSize = 4096;
constexpr char dataPage = 1;
constexpr char definitionPage = 2;

// Offsets within a definition page, a data page and a map's page.
constexpr qsizetype rowCountAt = 16;
constexpr qsizetype mapPlaceAt = 55; // row in the lowest byte, page in the three above
constexpr qsizetype ownerAt = 4;
constexpr qsizetype slotsAt = 14;
constexpr qsizetype bitsAt = 4;

quint32 numberAt(const QByteArray &file, qsizetype at)
{
    return qFromLittleEndian<quint32>(file.constData() + at);
}

void setNumber(QByteArray &file, qsizetype at, quint32 value) { qToLittleEndian(value, file.data() + at); }

qsizetype definitionWith(const QByteArray &file, const QString &column)
{
    const QByteArray name(reinterpret_cast<const char *>(column.utf16()), column.size() * 2);
    for (qsizetype page = 0; page < file.size(); page += pageSize) {
        if (file.at(page) == definitionPage && file.mid(page, pageSize).contains(name))
            return page;
    }
    qFatal("the sample has no column %s", qPrintable(column));
}

std::vector<qsizetype> dataPages(const QByteArray &file, qsizetype definition)
{
    std::vector<qsizetype> pages;
    for (qsizetype page = 0; page < file.size(); page += pageSize) {
        if (file.at(page) == dataPage && numberAt(file, page + ownerAt) == quint32(definition / pageSize))
            pages.push_back(page);
    }
    return pages;
}

// The table's map becomes one whose bits fill a page of their own; \a pages are those that it owns.
void writeMap(QByteArray &file, qsizetype definition, const std::vector<qsizetype> &pages)
{
    QByteArray map("\5\1\0\0", bitsAt);
    map.resize(pageSize, '\0');
    for (const qsizetype page : pages) {
        const qsizetype bit = page / pageSize;
        const qsizetype byte = bitsAt + bit / 8;
        map[byte] = static_cast<char>(map.at(byte) | (1 << (bit % 8)));
    }
    const quint32 place = numberAt(file, definition + mapPlaceAt);
    const qsizetype page = qsizetype(place >> 8) * pageSize;
    const qsizetype row = qsizetype(place & 0xff);
    const auto slot = [&](qsizetype number) {
        return qFromLittleEndian<quint16>(file.constData() + page + slotsAt + 2 * number) & 0x1fff;
    };
    const qsizetype end = row == 0 ? pageSize : slot(row - 1);
    const qsizetype start = slot(row);
    file.replace(page + start, end - start, QByteArray(end - start, '\0'));
    file[page + start] = 1; // the kind whose numbers name pages of bits
    setNumber(file, page + start + 1, quint32(file.size() / pageSize));
    file += map;
}

} // namespace

int enlargeOldFile(const QString &sample, const QString &target, int times)
{
    QFile source(sample);
    if (!source.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(sample));
    QByteArray file = source.readAll();
    const qsizetype definition = definitionWith(file, u"数量"_s);
    std::vector<qsizetype> pages = dataPages(file, definition);
    const std::vector<qsizetype> original = pages;
    for (int copy = 1; copy < times; ++copy) {
        for (const qsizetype page : original) {
            pages.push_back(file.size());
            file += file.mid(page, pageSize);
        }
    }
    const quint32 lines = numberAt(file, definition + rowCountAt) * quint32(times);
    setNumber(file, definition + rowCountAt, lines);
    writeMap(file, definition, pages);
    QFile made(target);
    if (!made.open(QIODevice::WriteOnly) || made.write(file) != file.size())
        qFatal("%s cannot be written", qPrintable(target));
    return int(lines);
}

} // namespace bench
