#include "base/same_file.h"
#include "db/connection.h"
#include "db/foreign_table.h"
#include "shipping/addresses/addressee.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr std::size_t keysAtOnce = 500;

const QStringList &columns()
{
    static const QStringList all{u"納品先ID"_s, u"納品先名1"_s, u"納品先名2"_s, u"納品先名3"_s, u"郵便番号"_s,
                                 u"住所1"_s,    u"住所2"_s,     u"担当者名"_s,  u"敬称"_s};
    return all;
}

AddressRow rowOf(const QStringList &values)
{
    return {values.value(0).toLongLong(),
            values.value(1),
            values.value(2),
            values.value(3),
            values.value(4),
            values.value(5),
            values.value(6),
            values.value(7),
            values.value(8)};
}

base::Status readInto(QHash<qint64, AddressRow> &rows, db::Connection &connection, const QVariantList &keys)
{
    const auto found =
        connection.select(u"SELECT %1 FROM 納品先 WHERE 納品先ID IN (%2) ORDER BY 納品先ID"_s.arg(
                              columns().join(u", "_s), QStringList(keys.size(), u"?"_s).join(u", "_s)),
                          keys);
    if (!found)
        return found.error();
    for (const QVariantList &values : found->rows) {
        QStringList texts;
        for (const QVariant &value : values)
            texts << value.toString();
        rows.insert(texts.front().toLongLong(), rowOf(texts));
    }
    return {};
}

// A name may have been put right meanwhile, and somebody may have moved; both at once is somebody else.
bool isSame(const AddressRow &one, const AddressRow &other)
{
    const bool livesThere = !one.zip.isEmpty() && !one.address1.isEmpty() && one.address1 == other.address1 &&
                            one.address2 == other.address2 && one.zip == other.zip;
    return one.name1 == other.name1 || livesThere;
}

// Files of the earlier program have no 敬称.
base::Result<std::vector<AddressRow>> rowsOf(const db::ForeignTable &table, const QString &fileName)
{
    QList<qsizetype> places;
    for (const QString &column : columns())
        places << table.columns.indexOf(column);
    if (places[0] < 0 || places[1] < 0 || places[5] < 0)
        return base::Error{
            u"「%1」は補助名簿ではありません。「補助名簿作成」で作ったファイルを選んでください。"_s.arg(
                fileName)};
    std::vector<AddressRow> rows;
    for (const QStringList &values : table.rows) {
        QStringList ours;
        for (const qsizetype place : places)
            ours << (place < 0 ? QString() : values.value(place));
        rows.push_back(rowOf(ours));
    }
    return rows;
}

} // namespace

base::Result<std::vector<AddressRow>> readAddressRows(db::Connection &connection,
                                                      const std::vector<qint64> &ids)
{
    QHash<qint64, AddressRow> found;
    for (std::size_t first = 0; first < ids.size(); first += keysAtOnce) {
        QVariantList keys;
        for (std::size_t i = first; i < std::min(first + keysAtOnce, ids.size()); ++i)
            keys << ids[i];
        if (const base::Status read = readInto(found, connection, keys); !read)
            return read.error();
    }
    std::vector<AddressRow> rows;
    for (const qint64 id : ids) {
        if (const auto row = found.constFind(id); row != found.constEnd())
            rows.push_back(*row);
    }
    return rows;
}

base::Result<std::vector<AddressRow>> readRosterRows(db::Connection &connection, const QString &fileName)
{
    if (base::isSameFile(fileName, connection.fileName()))
        return base::Error{u"使用中のファイルです。検索欄から納品先を選んでください。"_s};
    if (!db::isForeignDatabase(fileName))
        return base::Error{
            u"「%1」は補助名簿ではありません。「補助名簿作成」で作ったファイルを選んでください。"_s.arg(
                fileName)};
    const auto table = db::readForeignTable(fileName, u"納品先"_s, base::unwatched);
    if (!table)
        return table.error();
    auto rows = rowsOf(*table, fileName);
    if (!rows)
        return rows;
    std::vector<qint64> ids;
    for (const AddressRow &row : *rows)
        ids.push_back(row.id);
    const auto known = readAddressRows(connection, ids);
    if (!known)
        return known;
    QHash<qint64, AddressRow> registered;
    for (const AddressRow &row : *known)
        registered.insert(row.id, row);
    for (AddressRow &row : *rows) {
        const auto own = registered.constFind(row.id);
        if (own == registered.constEnd() || !isSame(*own, row))
            row.id = 0;
    }
    return rows;
}

} // namespace shipping
