#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>
#include <vector>

struct sqlite3;

// The pages of a database file, read past SQLite: what is sound in a damaged file can be told only there.
// Offsets and kinds are those of SQLite's description of its file format. Every number in a page is
// distrusted.
namespace db
{

/// A page of a table or an index whose frame is sound; the cells are checked one by one.
struct TreePage
{
    enum Kind : quint8 { IndexInterior = 2, TableInterior = 5, IndexLeaf = 10, TableLeaf = 13 };

    quint32 number;
    Kind kind;
    QByteArray bytes;
    std::vector<quint32> cells;    // their offsets, each once
    quint32 repeated = 0;          // places that lead to the cell of another one
    std::vector<quint32> children; // page numbers, from left to right
    std::vector<qint64> keys;      // of a table's inner page: the highest key below each child but the last
};

/// A row, or an index's entry, as stored.
struct StoredRecord
{
    struct Value
    {
        quint64 type; // SQLite's serial type
        qsizetype offset;
        qsizetype size;
    };

    qint64 rowid = 0; // of a row
    QByteArray payload;
    std::vector<Value> values;

    [[nodiscard]] bool isNull(std::size_t index) const { return values[index].type == 0; }
    [[nodiscard]] bool isText(std::size_t index) const;
    [[nodiscard]] bool isInteger(std::size_t index) const;
    [[nodiscard]] bool isReal(std::size_t index) const { return values[index].type == 7; }
    [[nodiscard]] qint64 integer(std::size_t index) const;
    [[nodiscard]] double real(std::size_t index) const;
    [[nodiscard]] QByteArray bytes(std::size_t index) const;
};

class PageReader
{
public:
    /// Reads through \a handle, so that no second handle on the file drops its locks.
    explicit PageReader(sqlite3 *handle);

    [[nodiscard]] quint32 pageCount() const { return m_pageCount; }
    /// Whether the file's header is one of SQLite's; else the page size is taken to be the usual one.
    [[nodiscard]] bool hasHeader() const { return m_hasHeader; }
    /// The schema version in the header.
    [[nodiscard]] int version() const { return m_version; }
    /// SQLITE_UTF8, SQLITE_UTF16LE or SQLITE_UTF16BE.
    [[nodiscard]] int encoding() const { return m_encoding; }

    /// Nothing when the page cannot be read or is none of a table or index.
    [[nodiscard]] std::optional<TreePage> page(quint32 number) const;

    /// The row or entry in a cell of a leaf, or the entry in one of an index's interior pages; nothing when
    /// it is damaged. A page of a long row belongs to the cell alone whose row was found whole with it first,
    /// so that chains that run into each other cannot be followed for ever.
    [[nodiscard]] std::optional<StoredRecord> record(const TreePage &page, quint32 cell);

    /// Which pages hold nothing any more, by their numbers; nothing when their list is damaged.
    [[nodiscard]] std::optional<std::vector<bool>> freePages() const;

private:
    [[nodiscard]] QByteArray read(quint32 number) const;
    [[nodiscard]] static bool addChild(TreePage &page, quint32 cell);
    // What goes on in further pages, which are noted in the chain.
    struct Chain
    {
        quint64 owner; // the cell
        std::vector<quint32> pages;
    };

    [[nodiscard]] std::optional<QByteArray> payload(const TreePage &page, qsizetype at, quint64 size,
                                                    Chain &chain);
    [[nodiscard]] bool isFreeFor(quint64 owner, quint32 number) const;
    void claim(const Chain &chain);
    void readHeader();

    sqlite3 *m_handle;
    quint32 m_pageSize = 4096;
    quint32 m_usable = 4096; // of a page, bytes
    quint32 m_pageCount = 0;
    quint32 m_firstFree = 0;
    quint32 m_freeCount = 0;
    int m_encoding;
    int m_version = 0;
    std::vector<quint64> m_chained; // for each page the cell whose long row goes on in it; 0: none
    quint64 m_followedInVain = 0;   // pages of chains that came to nothing
    bool m_hasHeader = false;
};

} // namespace db
