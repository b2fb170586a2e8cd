#include "db/care/source_table.h"

#include "text/shown_text.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// An entry in the list of tables.
struct Entry
{
    QString type, name, table, statement;
    quint32 root;

    [[nodiscard]] bool isTable() const { return type == "table"_L1 || !declared().isEmpty(); }

    // The table that the statement declares; empty for other statements.
    [[nodiscard]] QString declared() const
    {
        static const QRegularExpression form(uR"(\ACREATE TABLE (["'`\[]?)([^\s("'`\]]+))"_s);
        return form.match(statement).captured(2);
    }

    // A table's name stands in its entry three times: damage to one of them does not make it a stranger.
    [[nodiscard]] bool isOf(const Table &known) const
    {
        return name == known.name || table == known.name || declared() == known.name;
    }
};

struct Schema
{
    std::vector<Entry> entries;
    bool isWhole = true;
};

// The list is itself a table, whose root is the first page: type, name, table, root page, statement.
base::Result<Schema> readSchema(PageReader &reader, TreeWalk &trees)
{
    Schema schema;
    const auto note = [&](const TreePage &page, const KeyRange &) -> base::Result<bool> {
        schema.isWhole = schema.isWhole && page.repeated == 0;
        for (const quint32 cell : page.cells) {
            const auto record = reader.record(page, cell);
            if (!record || record->values.size() != 5 || !record->isInteger(3)) {
                schema.isWhole = false;
                continue;
            }
            const auto text = [&](std::size_t index) { return textIn(*record, index, reader.encoding()); };
            schema.entries.push_back(
                {text(0), text(1), text(2), text(4), static_cast<quint32>(record->integer(3))});
        }
        return true;
    };
    std::vector<KeyRange> gaps;
    if (const base::Status walked = trees.table(1, note, gaps); !walked)
        return walked.error();
    schema.isWhole = schema.isWhole && gaps.empty();
    return schema;
}

bool isStranger(const Entry &entry)
{
    const auto &ours = declaredTables();
    return entry.isTable() &&
           std::none_of(ours.begin(), ours.end(), [&](const Table &table) { return entry.isOf(table); });
}

// So that their leaves do not pass for lost ones of ours.
base::Status walkOthers(const Schema &schema, TreeWalk &trees)
{
    for (const Entry &entry : schema.entries) {
        std::vector<KeyRange> gaps;
        const auto pass = [](const TreePage &, const KeyRange &) -> base::Result<bool> { return true; };
        if (!isStranger(entry))
            continue;
        if (const base::Status walked = trees.table(entry.root, pass, gaps); !walked)
            return walked;
    }
    return {};
}

const Entry *entryOf(const Table &known, const Schema &schema)
{
    const Entry *found = nullptr;
    for (const Entry &entry : schema.entries) {
        if (entry.isTable() && entry.name == known.name)
            return &entry;
        if (entry.isTable() && entry.isOf(known))
            found = &entry;
    }
    return found;
}

// The columns of ours that a file with those \a declared has, or had before one of their names was damaged.
QStringList expectedColumns(const QStringList &declared, const Table &known)
{
    const bool isFirst = std::all_of(declared.begin(), declared.end(), [&](const QString &column) {
        return known.versionOf(column) < 2 && known.firstColumns > 0;
    });
    return isFirst ? known.columns.first(known.firstColumns) : known.columns;
}

// Our columns stand in one order, whatever a companion program put behind them: between two of them is the
// one that is missing there.
QString nameByNeighbours(const QStringList &declared, qsizetype place, const QStringList &expected)
{
    const qsizetype before = place == 0 ? -1 : expected.indexOf(declared.at(place - 1));
    const QString name = expected.value(before + 1);
    const QString next = declared.value(place + 1);
    const bool isAfterOurs = place == 0 || before >= 0;
    const bool isBeforeNext = !expected.contains(next) || next == expected.value(before + 2);
    return isAfterOurs && isBeforeNext && !declared.contains(name) ? name : QString();
}

// \a declared with our names in the places of those that are none of ours: one damaged byte in a name does
// not empty a column of all rows.
QStringList withOurNames(QStringList declared, const QStringList &expected)
{
    QStringList missing = expected;
    QList<qsizetype> unknown;
    for (qsizetype i = 0; i < declared.size(); ++i) {
        if (missing.removeAll(declared.at(i)) == 0)
            unknown << i;
    }
    const bool areAsMany = missing.size() == unknown.size();
    for (qsizetype i = 0; i < unknown.size(); ++i) {
        const QString name = areAsMany ? missing.at(i) : nameByNeighbours(declared, unknown.at(i), expected);
        if (!name.isEmpty())
            declared[unknown.at(i)] = name;
    }
    return declared;
}

void takeColumns(SourceTable &table, const QStringList &declared)
{
    const QStringList expected = expectedColumns(declared, *table.table);
    table.columns = withOurNames(declared, expected);
    for (const QString &column : expected) {
        if (!table.columns.contains(column))
            table.outcome.emptied << column;
    }
}

SourceTable describe(const Table &known, const Schema &schema)
{
    SourceTable table;
    table.table = &known;
    table.columns = known.columns;
    table.outcome.table = known.name;
    if (const Entry *entry = entryOf(known, schema)) {
        table.root = entry->root;
        const auto declared = tablesDeclaredBy(entry->statement.toUtf8());
        if (declared.size() == 1)
            takeColumns(table, declared.front().columns);
    }
    for (const Entry &entry : schema.entries) {
        if (entry.type == "index"_L1 && entry.table == known.name)
            table.indexRoots.push_back(entry.root);
    }
    return table;
}

bool holdsDays(const QString &column)
{
    static const QStringList endings{u"日付"_s,   u"更新日"_s, u"登録日"_s, u"受付日"_s,
                                     u"開始日"_s, u"終了日"_s, u"印刷日"_s};
    return std::any_of(endings.begin(), endings.end(),
                       [&](const QString &ending) { return column.endsWith(ending); });
}

// "2026-04-01", or nothing. In a file with two bytes a character it may be anything of that length.
bool isDay(const QByteArray &text)
{
    return text.isEmpty() || text.size() == 20 ||
           (text.size() == 10 && text.at(4) == '-' && text.at(7) == '-');
}

bool isOfKind(const StoredRecord &record, std::size_t index, const Table &table, const QString &column)
{
    const bool isNumber = record.isInteger(index) || record.isReal(index);
    if (column == table.key)
        return record.isNull(index);
    // What a file has beside our columns may be anything.
    if (record.isNull(index) || !table.columns.contains(column))
        return true;
    if (isNumber != table.numbers.contains(column))
        return false;
    return isNumber || !holdsDays(column) || isDay(record.bytes(index));
}

} // namespace

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

QString shownValue(const StoredRecord &record, std::size_t index, int encoding)
{
    if (record.isNull(index))
        return {};
    if (record.isInteger(index))
        return QString::number(record.integer(index));
    if (record.isReal(index))
        return QString::number(record.real(index), 'g', QLocale::FloatingPointShortest);
    if (record.isText(index))
        return text::beginningOf(textIn(record, index, encoding), text::longestShown);
    return QString::fromLatin1(record.bytes(index).left(text::longestShown / 2).toHex());
}

// A row ends where its table ended when it was written, and that is not between two columns that one version
// brought together.
bool SourceTable::hasWidthOf(const StoredRecord &record) const
{
    const auto size = static_cast<qsizetype>(record.values.size());
    if (size == 0 || size >= columns.size())
        return size == columns.size();
    const int last = table->versionOf(columns.at(size - 1));
    return last == 0 || last != table->versionOf(columns.at(size));
}

bool SourceTable::canHold(const StoredRecord &record) const
{
    if (!hasWidthOf(record))
        return false;
    // Whose row it is stands first where that is not the key: a line is a slip's.
    if (columns.front() != table->key && record.isNull(0))
        return false;
    for (std::size_t i = 0; i < record.values.size(); ++i) {
        if (!isOfKind(record, i, *table, columns.at(qsizetype(i))))
            return false;
    }
    return true;
}

bool SourceTable::lacks(qint64 first, qint64 last) const
{
    return hasRoomFor(first, last) && std::any_of(gaps.begin(), gaps.end(), [&](const KeyRange &gap) {
               return gap.contains(first) && gap.contains(last);
           });
}

bool SourceTable::hasRoomFor(qint64 first, qint64 last) const
{
    const auto after = leaves.upper_bound(last);
    return after == leaves.begin() || std::prev(after)->second < first;
}

base::Result<std::vector<SourceTable>> readSourceTables(PageReader &reader, TreeWalk &trees)
{
    const auto schema = readSchema(reader, trees);
    if (!schema)
        return schema.error();
    if (const base::Status walked = walkOthers(*schema, trees); !walked)
        return walked.error();
    const bool isOlder = reader.hasHeader() && reader.version() < 2;
    const bool namesAll =
        schema->isWhole && std::none_of(schema->entries.begin(), schema->entries.end(), isStranger);
    std::vector<SourceTable> tables;
    for (const Table &known : declaredTables()) {
        SourceTable table = describe(known, *schema);
        table.isAbsent = table.root == 0 && known.firstColumns == 0 && (isOlder || namesAll);
        if (table.root == 0 && !table.isAbsent)
            table.gaps.push_back({});
        tables.push_back(std::move(table));
    }
    return tables;
}

} // namespace db
