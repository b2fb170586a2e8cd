#include "db/care/page_reader.h"

#include <QtEndian>

#include <bit>
#include <sqlite3.h>
#include <unordered_set>

namespace db
{

namespace
{

constexpr qsizetype fileHeaderSize = 100;

quint32 number16(const QByteArray &bytes, qsizetype at)
{
    return qFromBigEndian<quint16>(bytes.constData() + at);
}

quint32 number32(const QByteArray &bytes, qsizetype at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

/// Reads a number of one to nine bytes at \a at, and moves on. \return false when the bytes end before it
bool readVarint(const QByteArray &bytes, qsizetype &at, quint64 &value)
{
    value = 0;
    for (int i = 0; i < 9; ++i) {
        if (at >= bytes.size())
            return false;
        const auto byte = static_cast<quint8>(bytes.at(at++));
        if (i == 8) {
            value = (value << 8) | byte;
            return true;
        }
        value = (value << 7) | (byte & 0x7fu);
        if (byte < 0x80)
            return true;
    }
    return true;
}

std::optional<quint64> sizeOf(quint64 type)
{
    constexpr quint64 sizes[] = {0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
    if (type < std::size(sizes))
        return sizes[type];
    if (type < 12)
        return std::nullopt; // kept for SQLite's own use
    return (type - 12) / 2;
}

// A record is its header (own size, then a type for each value) and the values; both must fill it exactly.
bool takeApart(StoredRecord &record)
{
    qsizetype at = 0;
    quint64 headerSize = 0;
    if (!readVarint(record.payload, at, headerSize) || headerSize > quint64(record.payload.size()))
        return false;
    auto offset = static_cast<qsizetype>(headerSize);
    while (at < static_cast<qsizetype>(headerSize)) {
        quint64 type = 0;
        if (!readVarint(record.payload, at, type))
            return false;
        const auto size = sizeOf(type);
        if (!size || *size > quint64(record.payload.size() - offset))
            return false;
        record.values.push_back({type, offset, static_cast<qsizetype>(*size)});
        offset += static_cast<qsizetype>(*size);
    }
    return at == static_cast<qsizetype>(headerSize) && offset == record.payload.size();
}

} // namespace

bool StoredRecord::isText(std::size_t index) const
{
    return values[index].type >= 13 && values[index].type % 2 == 1;
}

bool StoredRecord::isInteger(std::size_t index) const
{
    const quint64 type = values[index].type;
    return (type >= 1 && type <= 6) || type == 8 || type == 9;
}

qint64 StoredRecord::integer(std::size_t index) const
{
    const Value &value = values[index];
    if (value.type == 8 || value.type == 9)
        return value.type == 9;
    qint64 number = value.size > 0 && payload.at(value.offset) < 0 ? -1 : 0; // the sign of the first byte
    for (qsizetype i = 0; i < value.size; ++i)
        number = static_cast<qint64>((static_cast<quint64>(number) << 8) |
                                     static_cast<quint8>(payload.at(value.offset + i)));
    return number;
}

double StoredRecord::real(std::size_t index) const
{
    return std::bit_cast<double>(qFromBigEndian<quint64>(payload.constData() + values[index].offset));
}

QByteArray StoredRecord::bytes(std::size_t index) const
{
    return payload.mid(values[index].offset, values[index].size);
}

PageReader::PageReader(sqlite3 *handle)
    : m_handle(handle)
    , m_encoding(SQLITE_UTF8)
{
    readHeader();
}

void PageReader::readHeader()
{
    const QByteArray first = read(1);
    if (first.size() >= fileHeaderSize && first.startsWith(QByteArrayView("SQLite format 3\0", 16))) {
        const quint32 stored = number16(first, 16);
        const quint32 size = stored == 1 ? 65536 : stored;
        const auto reserved = static_cast<quint8>(first.at(20));
        m_hasHeader = size >= 512 && std::has_single_bit(size) && size - reserved >= 480;
        if (m_hasHeader) {
            m_pageSize = size;
            m_usable = size - reserved;
            m_firstFree = number32(first, 32);
            m_freeCount = number32(first, 36);
            m_version = static_cast<int>(number32(first, 60));
            const quint32 encoding = number32(first, 56);
            m_encoding = encoding == SQLITE_UTF16LE || encoding == SQLITE_UTF16BE ? static_cast<int>(encoding)
                                                                                  : SQLITE_UTF8;
        }
    }
    sqlite3_file *file = nullptr;
    sqlite3_int64 size = 0;
    if (sqlite3_file_control(m_handle, "main", SQLITE_FCNTL_FILE_POINTER, &file) == SQLITE_OK &&
        file->pMethods && file->pMethods->xFileSize(file, &size) == SQLITE_OK)
        m_pageCount = static_cast<quint32>(qMin<sqlite3_int64>(size / m_pageSize, 0x7ffffffe));
    m_chained.resize(m_pageCount + 1u);
}

QByteArray PageReader::read(quint32 number) const
{
    sqlite3_file *file = nullptr;
    if (sqlite3_file_control(m_handle, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
        !file->pMethods)
        return {};
    QByteArray bytes(static_cast<qsizetype>(m_pageSize), Qt::Uninitialized);
    const sqlite3_int64 offset = sqlite3_int64(m_pageSize) * (number - 1);
    return file->pMethods->xRead(file, bytes.data(), static_cast<int>(m_pageSize), offset) == SQLITE_OK
               ? bytes
               : QByteArray();
}

bool PageReader::addChild(TreePage &page, quint32 cell)
{
    page.children.push_back(number32(page.bytes, cell));
    if (page.kind != TreePage::TableInterior)
        return true;
    qsizetype at = qsizetype(cell) + 4;
    quint64 key = 0;
    const bool isRead = readVarint(page.bytes, at, key);
    page.keys.push_back(static_cast<qint64>(key));
    return isRead;
}

std::optional<TreePage> PageReader::page(quint32 number) const
{
    if (number == 0 || number > m_pageCount)
        return std::nullopt;
    TreePage page{number, TreePage::TableLeaf, read(number), {}, 0, {}, {}};
    if (page.bytes.isEmpty())
        return std::nullopt;
    const qsizetype start = number == 1 ? fileHeaderSize : 0;
    const auto kind = static_cast<quint8>(page.bytes.at(start));
    if (kind != TreePage::IndexInterior && kind != TreePage::TableInterior && kind != TreePage::IndexLeaf &&
        kind != TreePage::TableLeaf)
        return std::nullopt;
    page.kind = static_cast<TreePage::Kind>(kind);
    const bool isLeaf = kind == TreePage::IndexLeaf || kind == TreePage::TableLeaf;
    const quint32 count = number16(page.bytes, start + 3);
    const qsizetype cells = start + (isLeaf ? 8 : 12);
    if (cells + 2 * qsizetype(count) > qsizetype(m_usable))
        return std::nullopt;
    std::vector<bool> seen(m_usable);
    for (quint32 i = 0; i < count; ++i) {
        const quint32 cell = number16(page.bytes, cells + 2 * qsizetype(i));
        if (cell + 4 > m_usable || qsizetype(cell) < cells + 2 * qsizetype(count))
            return std::nullopt;
        // A page whose places all lead to one long row would fill the memory with it.
        if (seen[cell])
            ++page.repeated;
        else
            page.cells.push_back(cell);
        seen[cell] = true;
        if (!isLeaf && !addChild(page, cell))
            return std::nullopt;
    }
    if (!isLeaf)
        page.children.push_back(number32(page.bytes, start + 8));
    return page;
}

std::optional<StoredRecord> PageReader::record(const TreePage &page, quint32 cell)
{
    StoredRecord record;
    qsizetype at = cell + (page.kind == TreePage::IndexInterior ? 4 : 0);
    quint64 size = 0;
    if (!readVarint(page.bytes, at, size))
        return std::nullopt;
    if (page.kind == TreePage::TableLeaf) {
        quint64 rowid = 0;
        if (!readVarint(page.bytes, at, rowid))
            return std::nullopt;
        record.rowid = static_cast<qint64>(rowid);
    }
    Chain chain{(quint64(page.number) << 32) | cell, {}};
    const auto payload = this->payload(page, at, size, chain);
    record.payload = payload.value_or(QByteArray());
    if (payload && takeApart(record)) {
        claim(chain);
        return record;
    }
    // A damaged row leaves the pages of sound ones alone. A file made so that all its rows run through the
    // same pages in vain is not followed for ever: from some number on they are taken all the same.
    m_followedInVain += chain.pages.size();
    if (m_followedInVain > 4 * quint64(m_pageCount))
        claim(chain);
    return std::nullopt;
}

bool PageReader::isFreeFor(quint64 owner, quint32 number) const
{
    return number != 0 && number <= m_pageCount && (m_chained[number] == 0 || m_chained[number] == owner);
}

void PageReader::claim(const Chain &chain)
{
    for (const quint32 number : chain.pages)
        m_chained[number] = chain.owner;
}

// What does not fit into the page goes on in a chain of further pages.
std::optional<QByteArray> PageReader::payload(const TreePage &page, qsizetype at, quint64 size, Chain &chain)
{
    std::unordered_set<quint32> passed;
    if (size > quint64(m_pageCount) * m_usable || size > 0x7fffffff)
        return std::nullopt;
    const quint32 most = page.kind == TreePage::TableLeaf ? m_usable - 35 : (m_usable - 12) * 64 / 255 - 23;
    const quint32 least = (m_usable - 12) * 32 / 255 - 23;
    quint64 local = size;
    if (size > most) {
        const quint64 fitting = least + (size - least) % (m_usable - 4);
        local = fitting <= most ? fitting : least;
    }
    if (quint64(at) + local + (local < size ? 4 : 0) > m_usable)
        return std::nullopt;
    QByteArray whole = page.bytes.mid(at, static_cast<qsizetype>(local));
    quint32 next = local < size ? number32(page.bytes, at + static_cast<qsizetype>(local)) : 0;
    while (quint64(whole.size()) < size) {
        if (!isFreeFor(chain.owner, next) || !passed.insert(next).second)
            return std::nullopt;
        chain.pages.push_back(next);
        const QByteArray more = read(next);
        if (more.isEmpty())
            return std::nullopt;
        next = number32(more, 0);
        whole += more.mid(4, qMin<qsizetype>(m_usable - 4, static_cast<qsizetype>(size) - whole.size()));
    }
    return next == 0 ? std::optional(whole) : std::nullopt;
}

std::optional<std::vector<bool>> PageReader::freePages() const
{
    if (!m_hasHeader)
        return std::nullopt;
    std::vector<bool> free(m_pageCount + 1u);
    quint32 found = 0;
    const auto take = [&](quint32 number) {
        if (number == 0 || number > m_pageCount || free[number])
            return false;
        free[number] = true;
        ++found;
        return true;
    };
    for (quint32 trunk = m_firstFree; trunk != 0;) {
        const QByteArray bytes = trunk <= m_pageCount ? read(trunk) : QByteArray();
        if (bytes.isEmpty() || !take(trunk))
            return std::nullopt;
        const quint32 leaves = number32(bytes, 4);
        if (leaves > m_usable / 4 - 2)
            return std::nullopt;
        for (quint32 i = 0; i < leaves; ++i) {
            if (!take(number32(bytes, 8 + 4 * qsizetype(i))))
                return std::nullopt;
        }
        trunk = number32(bytes, 0);
    }
    return found == m_freeCount ? std::optional(free) : std::nullopt;
}

} // namespace db
