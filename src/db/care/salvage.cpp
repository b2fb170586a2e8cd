#include "db/care/salvage.h"

#include "base/flush.h"
#include "db/care/page_reader.h"
#include "db/care/plain_handle.h"
#include "db/create.h"
#include "db/errors.h"
#include "db/schema.h"

#include <QFile>

#include <algorithm>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// Far beyond what a shop reaches, far below where numbers end: a greater one is damage.
constexpr qint64 highestCounter = qint64(1) << 50;

constexpr int deepestTree = 40; // levels; SQLite's own limit is 20

QString textIn(const StoredRecord &record, std::size_t index, int encoding)
{
    if (!record.isText(index))
        return {};
    const QByteArray bytes = record.bytes(index);
    if (encoding == SQLITE_UTF8)
        return QString::fromUtf8(bytes);
    return QStringDecoder(encoding == SQLITE_UTF16LE ? QStringDecoder::Utf16LE
                                                     : QStringDecoder::Utf16BE)(bytes);
}

/// One of our tables in the damaged file.
struct SourceTable
{
    const Table *table = nullptr;
    QStringList columns; // as the file has them
    quint32 root = 0;    // 0: lost
    std::vector<quint32> indexRoots;
    bool isDamaged = false; // pages are missing from its tree
    bool isAbsent = false;  // the file is of a version that had no such table
    std::vector<qint64> carried;
    SalvagedTable outcome;

    [[nodiscard]] bool canHold(const StoredRecord &record) const;
};

// Whether a loose row looks like one of this table: a key is stored as NULL, the row's number stands for it;
// numbers and texts stand in columns of their kind. A row that was written before columns were added ends
// where the table ended then.
bool SourceTable::canHold(const StoredRecord &record) const
{
    const auto size = static_cast<qsizetype>(record.values.size());
    if (size > columns.size() || size < (table->firstColumns > 0 ? table->firstColumns : columns.size()))
        return false;
    // Whose row it is stands first where that is not the key: a line is a slip's.
    if (columns.front() != table->key && record.isNull(0))
        return false;
    for (std::size_t i = 0; i < record.values.size(); ++i) {
        const QString &column = columns.at(qsizetype(i));
        const bool isNumber = record.isInteger(i) || record.isReal(i);
        if (column == table->key) {
            if (!record.isNull(i))
                return false;
        } else if (!record.isNull(i) && isNumber != table->numbers.contains(column)) {
            return false;
        }
    }
    return true;
}

/// Writes rows of one table into the new file.
class RowWriter
{
public:
    RowWriter(const PlainHandle &target, const SourceTable &table, int encoding)
        : m_target(target)
        , m_encoding(encoding)
        , m_insert(target, statementFor(table))
    {}

    /// \return whether the row was new; false also when a row of its key is there already
    base::Result<bool> write(const StoredRecord &record)
    {
        sqlite3_stmt *insert = m_insert.get();
        if (!insert)
            return m_target.error();
        sqlite3_reset(insert);
        sqlite3_clear_bindings(insert);
        sqlite3_bind_int64(insert, 1, record.rowid);
        for (std::size_t i = 0; i < m_sources.size() && int(i) < sqlite3_bind_parameter_count(insert) - 1;
             ++i) {
            if (m_sources[i] < record.values.size())
                bind(static_cast<int>(i) + 2, record, m_sources[i]);
        }
        if (sqlite3_step(insert) != SQLITE_DONE)
            return m_target.error();
        return sqlite3_changes(m_target.get()) == 1;
    }

private:
    // The columns' names are our own; one that the file calls otherwise stays empty.
    QByteArray statementFor(const SourceTable &table)
    {
        QStringList names = {u"rowid"_s};
        for (qsizetype i = 0; i < table.columns.size(); ++i) {
            const QString &column = table.columns.at(i);
            if (column == table.table->key || !table.table->columns.contains(column))
                continue;
            names << column;
            m_sources.push_back(std::size_t(i));
        }
        const QString marks = QStringList(names.size(), u"?"_s).join(u", "_s);
        return u"INSERT OR IGNORE INTO %1 (%2) VALUES (%3)"_s
            .arg(table.table->name, names.join(u", "_s), marks)
            .toUtf8();
    }

    void bind(int parameter, const StoredRecord &record, std::size_t index)
    {
        sqlite3_stmt *insert = m_insert.get();
        if (record.isInteger(index)) {
            sqlite3_bind_int64(insert, parameter, record.integer(index));
        } else if (record.isReal(index)) {
            sqlite3_bind_double(insert, parameter, record.real(index));
        } else if (!record.isNull(index)) {
            QByteArray bytes = record.bytes(index);
            // No text of ours holds a NUL: from there on it stood on an emptied page.
            if (record.isText(index) && m_encoding == SQLITE_UTF8 && bytes.contains('\0'))
                bytes.truncate(bytes.indexOf('\0'));
            const auto size = static_cast<sqlite3_uint64>(bytes.size());
            if (record.isText(index))
                sqlite3_bind_text64(insert, parameter, bytes.constData(), size, SQLITE_TRANSIENT,
                                    static_cast<unsigned char>(m_encoding));
            else
                sqlite3_bind_blob64(insert, parameter, bytes.constData(), size, SQLITE_TRANSIENT);
        }
    }

    const PlainHandle &m_target;
    int m_encoding;
    std::vector<std::size_t> m_sources; // for each parameter after the row's number, the value of the record
    PlainStatement m_insert;            // built after m_sources, which its text fills
};

class Salvager
{
public:
    Salvager(sqlite3 *source, PlainHandle &target, const base::Progress &progress)
        : m_reader(source)
        , m_target(target)
        , m_progress(progress)
        , m_seen(m_reader.pageCount() + 1u)
    {}

    base::Result<Salvage> run();

private:
    using Visitor = std::function<base::Status(const TreePage &)>;

    void readSchema();
    base::Status settleCounter();
    base::Status walk(quint32 root, bool isTable, bool &isDamaged, const Visitor &visit, int depth = 0);
    base::Status carry(SourceTable &table, const StoredRecord &record);
    base::Status carryTree(SourceTable &table);
    base::Status carryLooseLeaves();
    SourceTable *ownerOf(const TreePage &leaf, std::vector<StoredRecord> &records);
    base::Status countUnread(SourceTable &table);
    base::Status looked();

    PageReader m_reader;
    PlainHandle &m_target;
    const base::Progress &m_progress;
    std::vector<bool> m_seen; // pages that some tree has reached
    qint64 m_looks = 0;
    std::vector<SourceTable> m_tables;
    std::vector<std::unique_ptr<RowWriter>> m_writers;
    bool m_lostSchema = false;
    Salvage m_outcome;
};

base::Status Salvager::looked()
{
    return m_progress(qMin<qint64>(++m_looks, m_reader.pageCount()), m_reader.pageCount())
               ? base::Status()
               : base::cancelled();
}

// Visits the sound leaves, and of an index its inner pages too, in order. No page is visited twice.
base::Status Salvager::walk(quint32 root, bool isTable, bool &isDamaged, const Visitor &visit, int depth)
{
    const auto page = root < m_seen.size() && !m_seen[root] ? m_reader.page(root) : std::nullopt;
    const bool isOurs =
        page && isTable == (page->kind == TreePage::TableLeaf || page->kind == TreePage::TableInterior);
    if (!isOurs || depth > deepestTree) {
        isDamaged = true;
        return {};
    }
    m_seen[root] = true;
    if (const base::Status going = looked(); !going)
        return going;
    if (page->kind != TreePage::TableInterior) {
        if (const base::Status visited = visit(*page); !visited)
            return visited;
    }
    for (const quint32 child : page->children) {
        if (const base::Status walked = walk(child, isTable, isDamaged, visit, depth + 1); !walked)
            return walked;
    }
    return {};
}

// The list of tables is itself a table, whose root is the first page: type, name, table, root page,
// statement.
void Salvager::readSchema()
{
    struct Entry
    {
        QString type, name, table, statement;
        quint32 root;
    };
    std::vector<Entry> entries;
    const auto note = [&](const TreePage &page) -> base::Status {
        for (const quint32 cell : page.cells) {
            const auto record = m_reader.record(page, cell);
            if (!record || record->values.size() != 5 || !record->isInteger(3)) {
                m_lostSchema = true;
                continue;
            }
            const auto text = [&](std::size_t index) { return textIn(*record, index, m_reader.encoding()); };
            entries.push_back({text(0), text(1), text(2), text(4), static_cast<quint32>(record->integer(3))});
        }
        return {};
    };
    (void)walk(1, true, m_lostSchema, note);
    for (const Table &known : declaredTables()) {
        SourceTable table;
        table.table = &known;
        table.columns = known.columns;
        table.outcome.table = known.name;
        for (const Entry &entry : entries) {
            if (entry.type == "table"_L1 && entry.name == known.name) {
                table.root = entry.root;
                const auto declared = tablesDeclaredBy(entry.statement.toUtf8());
                if (declared.size() == 1 && declared.front().name == known.name)
                    table.columns = declared.front().columns;
            } else if (entry.type == "index"_L1 && entry.table == known.name) {
                table.indexRoots.push_back(entry.root);
            }
        }
        const bool isOlder = m_reader.hasHeader() && m_reader.version() < 2;
        table.isAbsent = table.root == 0 && known.firstColumns == 0 && (isOlder || !m_lostSchema);
        m_tables.push_back(std::move(table));
    }
}

base::Status Salvager::carry(SourceTable &table, const StoredRecord &record)
{
    const auto index = static_cast<std::size_t>(&table - m_tables.data());
    // The rows that a new file begins with make room for those of the old one.
    if (table.outcome.carried == 0) {
        if (const base::Status cleared = m_target.run("DELETE FROM " + table.table->name.toUtf8()); !cleared)
            return cleared;
    }
    const auto isNew = m_writers[index]->write(record);
    if (!isNew)
        return isNew.error();
    if (*isNew) {
        ++table.outcome.carried;
        table.carried.push_back(record.rowid);
    } else {
        ++table.outcome.unread;
    }
    return {};
}

base::Status Salvager::carryTree(SourceTable &table)
{
    if (table.root == 0) {
        table.isDamaged = !table.isAbsent;
        return {};
    }
    return walk(table.root, true, table.isDamaged, [&](const TreePage &page) -> base::Status {
        for (const quint32 cell : page.cells) {
            const auto record = m_reader.record(page, cell);
            if (!record || record->values.size() > std::size_t(table.columns.size()))
                ++table.outcome.unread;
            else if (const base::Status carried = carry(table, *record); !carried)
                return carried;
        }
        return {};
    });
}

// The one damaged table that can hold all the rows of a loose leaf; null when there is none, or several.
SourceTable *Salvager::ownerOf(const TreePage &leaf, std::vector<StoredRecord> &records)
{
    for (const quint32 cell : leaf.cells) {
        if (auto record = m_reader.record(leaf, cell))
            records.push_back(std::move(*record));
    }
    SourceTable *owner = nullptr;
    for (SourceTable &table : m_tables) {
        const bool fits = table.isDamaged && !records.empty() &&
                          std::all_of(records.begin(), records.end(),
                                      [&](const StoredRecord &record) { return table.canHold(record); });
        if (fits && std::exchange(owner, &table))
            return nullptr;
    }
    return owner;
}

// Leaves that no tree leads to any more. Emptied pages still hold what was deleted: without the list of them
// nothing is taken, unless the whole header is lost and there is nothing else to go by.
base::Status Salvager::carryLooseLeaves()
{
    const auto free = m_reader.freePages();
    const bool isAnyDamaged = std::any_of(m_tables.begin(), m_tables.end(),
                                          [](const SourceTable &table) { return table.isDamaged; });
    if (!isAnyDamaged || (!free && m_reader.hasHeader()))
        return {};
    for (quint32 number = 2; number <= m_reader.pageCount(); ++number) {
        if (m_seen[number] || (free && (*free)[number]))
            continue;
        if (const base::Status going = looked(); !going)
            return going;
        const auto page = m_reader.page(number);
        if (!page || page->kind != TreePage::TableLeaf)
            continue;
        std::vector<StoredRecord> records;
        SourceTable *owner = ownerOf(*page, records);
        if (!owner)
            m_outcome.strayRows += static_cast<qint64>(records.size());
        for (const StoredRecord &record : records) {
            if (const base::Status carried = owner ? carry(*owner, record) : base::Status(); !carried)
                return carried;
        }
        if (owner)
            owner->outcome.unread += static_cast<qint64>(page->cells.size() - records.size());
    }
    return {};
}

// An index that is sound names every row of its table, also those that were lost.
base::Status Salvager::countUnread(SourceTable &table)
{
    std::sort(table.carried.begin(), table.carried.end());
    table.outcome.isOpenEnd = true;
    for (const quint32 root : table.indexRoots) {
        qint64 missing = 0;
        bool isDamaged = false;
        const base::Status walked = walk(root, false, isDamaged, [&](const TreePage &page) -> base::Status {
            for (const quint32 cell : page.cells) {
                const auto entry = m_reader.record(page, cell);
                if (!entry || entry->values.empty() || !entry->isInteger(entry->values.size() - 1))
                    isDamaged = true;
                else if (!std::binary_search(table.carried.begin(), table.carried.end(),
                                             entry->integer(entry->values.size() - 1)))
                    ++missing;
            }
            return {};
        });
        if (!walked)
            return walked;
        table.outcome.unread = qMax(table.outcome.unread, missing);
        table.outcome.isOpenEnd = table.outcome.isOpenEnd && isDamaged;
    }
    return {};
}

base::Result<Salvage> Salvager::run()
{
    readSchema();
    for (const SourceTable &table : m_tables)
        m_writers.push_back(std::make_unique<RowWriter>(m_target, table, m_reader.encoding()));
    for (SourceTable &table : m_tables) {
        if (const base::Status carried = carryTree(table); !carried)
            return carried.error();
    }
    if (const base::Status carried = carryLooseLeaves(); !carried)
        return carried.error();
    for (SourceTable &table : m_tables) {
        if (table.isDamaged) {
            if (const base::Status counted = countUnread(table); !counted)
                return counted.error();
        }
        if (table.table->name != counterTable)
            m_outcome.tables.push_back(table.outcome);
    }
    if (const base::Status settled = settleCounter(); !settled)
        return settled.error();
    return m_outcome;
}

// One number, not below any that a row bears: of a damaged file the counter may be lost, or be any value.
base::Status Salvager::settleCounter()
{
    QStringList highest;
    for (const SourceTable &table : m_tables) {
        const bool isCounter = table.table->name == counterTable;
        if (isCounter || table.table->columns.contains(versionColumn))
            highest << u"SELECT max(%1) AS n FROM %2 WHERE typeof(%1) = 'integer' AND %1 BETWEEN 0 AND %3"_s
                           .arg(isCounter ? u"最終"_s : QString::fromUtf16(versionColumn), table.table->name,
                                QString::number(highestCounter));
    }
    const QString counter = QString::fromUtf16(counterTable);
    const auto last = m_target.number(
        u"SELECT coalesce(max(n), 0) FROM (%1)"_s.arg(highest.join(u" UNION ALL "_s)).toUtf8());
    if (!last)
        return last.error();
    return m_target.run(
        u"DELETE FROM %1; INSERT INTO %1 (版数ID, 最終) VALUES (1, %2)"_s.arg(counter).arg(*last).toUtf8());
}

base::Result<Salvage> carryOver(sqlite3 *source, const QString &target, const base::Progress &progress)
{
    PlainHandle written;
    // The file is nobody's until it is complete, and is flushed as a whole then.
    if (const base::Status opened = written.open(target); !opened)
        return opened.error();
    if (const base::Status begun =
            written.run("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF; BEGIN");
        !begun)
        return begun.error();
    const auto done = Salvager(source, written, progress).run();
    if (!done)
        return done;
    if (const base::Status committed = written.run("COMMIT"); !committed)
        return committed.error();
    return done;
}

} // namespace

bool Salvage::isComplete() const
{
    return strayRows == 0 && std::all_of(tables.begin(), tables.end(), [](const SalvagedTable &table) {
               return table.unread == 0 && !table.isOpenEnd;
           });
}

qint64 Salvage::carried() const
{
    qint64 sum = 0;
    for (const SalvagedTable &table : tables)
        sum += table.carried;
    return sum;
}

QString unreadText(const SalvagedTable &table)
{
    if (!table.isOpenEnd)
        return QString::number(table.unread);
    return table.unread == 0 ? u"不明"_s : u"%1 以上"_s.arg(table.unread);
}

base::Result<Salvage> salvage(const PlainHandle &source, const QString &target,
                              const base::Progress &progress)
{
    if (const base::Status created = createDatabase(target); !created)
        return created.error();
    auto done = carryOver(source.get(), target, progress);
    if (done) {
        if (const base::Status flushed = base::flushFile(target); !flushed)
            done = flushed.error();
    }
    if (!done)
        QFile::remove(target);
    return done;
}

base::Result<Salvage> rebuild(const QString &source, const QString &target, const base::Progress &progress)
{
    PlainHandle handle;
    // Opening plays back what a program that broke off left behind. The reading transaction keeps other
    // programs from writing into the pages meanwhile; a file too damaged for one is nobody's to write in.
    if (const base::Status opened = handle.open(source); !opened)
        return opened.error();
    (void)handle.run("PRAGMA journal_mode = DELETE; BEGIN; SELECT count(*) FROM sqlite_schema");
    return salvage(handle, target, progress);
}

} // namespace db
