#pragma once

#include <QByteArray>
#include <QString>
#include <QtEndian>

#include <algorithm>
#include <utility>
#include <vector>

/// Changes single structures of a file of the old engine (version 4), for samples that no program at hand
/// writes.
class JetFile
{
public:
    static constexpr qsizetype pageSize = 4096;
    using Slot = std::pair<qsizetype, int>; // page, row

    explicit JetFile(QByteArray content)
        : bytes(std::move(content))
    {}

    /// The page that defines the table with the column \a column.
    qsizetype definitionWith(const QString &column) const
    {
        for (qsizetype page = 0; page < bytes.size(); page += pageSize) {
            if (bytes.at(page) == 2 && bytes.mid(page, pageSize).contains(utf16(column)))
                return page / pageSize;
        }
        qFatal("no table with the column %s", qPrintable(column));
    }

    /// The rows of the table defined in \a definition, those not deleted.
    std::vector<Slot> rows(qsizetype definition) const
    {
        std::vector<Slot> found;
        for (qsizetype page = 0; page < bytes.size() / pageSize; ++page) {
            if (bytes.at(page * pageSize) != 1 || get32(page * pageSize + 4) != quint32(definition))
                continue;
            for (int row = 0; row < get16(page * pageSize + 12); ++row) {
                if ((slot({page, row}) & 0xc000) == 0)
                    found.emplace_back(page, row);
            }
        }
        return found;
    }

    quint16 slot(const Slot &row) const { return get16(slotAt(row)); }
    void setSlot(const Slot &row, int value) { put16(slotAt(row), value); }
    qsizetype start(const Slot &row) const { return row.first * pageSize + (slot(row) & 0x1fff); }

    QByteArray row(const Slot &row) const
    {
        const qsizetype end =
            row.second == 0 ? (row.first + 1) * pageSize : start({row.first, row.second - 1});
        return bytes.mid(start(row), end - start(row));
    }

    /// Adds a row to a page with room for it. \a flags go into its slot.
    Slot addRow(qsizetype page, const QByteArray &content, int flags = 0)
    {
        const int count = get16(page * pageSize + 12);
        const qsizetype end = count == 0 ? pageSize : slot({page, count - 1}) & 0x1fff;
        bytes.replace(page * pageSize + end - content.size(), content.size(), content);
        put16(page * pageSize + 12, count + 1);
        setSlot({page, count}, static_cast<int>(end - content.size()) | flags);
        return {page, count};
    }

    /// A page for pieces of long texts. \return its number
    qsizetype addPage()
    {
        bytes += QByteArray("\1\1\0\0LVAL", 8) + QByteArray(pageSize - 8, '\0');
        return bytes.size() / pageSize - 1;
    }

    /// \a row as a place in the file: page in the upper three bytes.
    static quint32 place(const Slot &row) { return quint32(row.first) << 8 | quint32(row.second); }

    /// Replaces the UTF-16 text \a from by \a to, of the same length, in all pages of \a type.
    void rename(char type, const QString &from, const QString &to)
    {
        for (qsizetype page = 0; page < bytes.size(); page += pageSize) {
            if (bytes.at(page) == type)
                bytes.replace(page, pageSize, bytes.mid(page, pageSize).replace(utf16(from), utf16(to)));
        }
    }

    quint16 get16(qsizetype at) const { return qFromLittleEndian<quint16>(bytes.constData() + at); }
    quint32 get32(qsizetype at) const { return qFromLittleEndian<quint32>(bytes.constData() + at); }
    void put16(qsizetype at, qsizetype value) { qToLittleEndian(quint16(value), bytes.data() + at); }
    void put32(qsizetype at, quint32 value) { qToLittleEndian(value, bytes.data() + at); }

    static QByteArray utf16(const QString &text)
    {
        return {reinterpret_cast<const char *>(text.utf16()), text.size() * 2};
    }

    QByteArray bytes;

private:
    static qsizetype slotAt(const Slot &row) { return row.first * pageSize + 14 + 2 * row.second; }
};
