#include "db/old_files/conversion.h"

#include "base/replacement.h"
#include "db/care/backup.h"
#include "db/connection.h"
#include "db/create.h"
#include "db/old_files/old_file.h"
#include "db/old_files/table_conversion.h"
#include "db/schema.h"
#include "db/transaction.h"

#include <QFileInfo>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// By value alone does a row mean another one; where a key changes, those that mean it cannot follow.
struct Reference
{
    QString table;
    QString byTable;
    QString byColumn;
    QString what;
};

const std::vector<Reference> &references()
{
    static const std::vector<Reference> all{
        {u"入出庫マスター"_s, u"入出庫サブ"_s, u"ID"_s, u"明細"_s},
        {u"納品先"_s, u"入出庫マスター"_s, u"相手先ID"_s, u"伝票"_s},
        {u"仕入先"_s, u"入出庫マスター"_s, u"相手先ID"_s, u"伝票"_s},
        {u"社員"_s, u"入出庫マスター"_s, u"社員ID"_s, u"伝票"_s},
        {u"登録区分"_s, u"納品先"_s, u"区分ID"_s, u"納品先"_s},
    };
    return all;
}

/// One conversion, from the first look at the old file to the commit.
class Conversion
{
public:
    Conversion(Connection &connection, const base::Progress &progress, const ConversionOptions &options)
        : m_connection(connection)
        , m_progress(progress)
        , m_options(options)
        , m_reader(options.reader.isEmpty() ? oldFileReaderProgram() : options.reader, options.silence)
    {}

    base::Result<ConversionSummary> run(const QString &source);

private:
    bool watch() { return m_progress(m_done, m_total); }
    base::Status assignTables();
    base::Status readTables();
    base::Status carryOver(const Table &table, const OldTable &old);
    base::Status passOver(const OldTable &old);
    base::Status judgeRenumbered(const QString &table, const std::vector<Renumbered> &rows);
    base::Status checkCounts();

    Connection &m_connection;
    const base::Progress &m_progress;
    const ConversionOptions &m_options;
    OldFileReader m_reader;
    std::vector<const Table *> m_tableOf; // by table of the old file; none for unknown ones
    std::vector<std::pair<QString, std::vector<Renumbered>>> m_renumbered;
    qint64 m_done = 0;
    qint64 m_total = 0;
    Findings m_losses;
    Findings m_notes;
    ConversionSummary m_summary;
};

base::Result<ConversionSummary> Conversion::run(const QString &source)
{
    if (const base::Status opened = m_reader.open(source, [this] { return watch(); }); !opened)
        return opened.error();
    if (const base::Status assigned = assignTables(); !assigned)
        return assigned.error();
    const base::Status done = atomically(m_connection, [this] {
        base::Status filled = readTables();
        for (const auto &[table, rows] : m_renumbered) {
            if (filled)
                filled = judgeRenumbered(table, rows);
        }
        return filled ? checkCounts() : filled;
    });
    if (!done)
        return done.error();
    m_summary.losses = m_losses.sentences();
    m_summary.notes = m_notes.sentences();
    return m_summary;
}

base::Status Conversion::assignTables()
{
    const std::vector<OldTable> &old = m_reader.tables();
    QStringList names;
    for (const OldTable &table : old)
        names << table.name;
    m_tableOf.resize(old.size());
    bool any = false;
    for (const Table &table : tables()) {
        if (table.firstColumns == 0)
            continue;
        m_summary.tables.push_back({table.name, 0, 0});
        const auto found = foundIn(names, table.name);
        if (!found && !foundIn(m_reader.linked(), table.name)) {
            m_notes.add(u"以前のファイルにないテーブル「"_s + table.name + u"」"_s);
        }
        if (!found)
            continue;
        m_tableOf[*found] = &table;
        any = true;
    }
    for (const QString &name : m_reader.linked())
        m_losses.add(u"別のファイルへのリンクで、データがこのファイルにないテーブル「"_s + name + u"」"_s);
    m_total = std::accumulate(old.begin(), old.end(), qint64(0),
                              [](qint64 sum, const OldTable &table) { return sum + table.rows; });
    if (any)
        return {};
    if (!m_reader.linked().isEmpty())
        return base::Error{u"データが別のファイルにあるため、変換できませんでした。"
                           "データのあるファイルを選んでください。"_s};
    return base::Error{u"このプログラムのテーブルが一つもないファイルのため、変換できませんでした。"_s};
}

base::Status Conversion::readTables()
{
    for (;;) {
        const auto step = m_reader.next();
        if (!step)
            return step.error();
        if (*step == OldFileReader::Step::Finished)
            return {};
        const std::size_t index = m_reader.tableIndex();
        const OldTable &old = m_reader.tables()[index];
        const Table *table = m_tableOf[index];
        if (const base::Status done = table ? carryOver(*table, old) : passOver(old); !done)
            return done;
    }
}

base::Status Conversion::carryOver(const Table &table, const OldTable &old)
{
    TableConversion rows(m_connection.handle(), table, old, m_options.missing, m_losses, m_notes);
    if (const base::Status begun = rows.begin(); !begun)
        return begun;
    for (;;) {
        const auto step = m_reader.next();
        if (!step)
            return step.error();
        if (*step != OldFileReader::Step::Row)
            break;
        if (const base::Status taken = rows.take(m_reader.row()); !taken)
            return taken;
        ++m_done;
        if (!watch())
            return base::cancelled();
    }
    // The old engine counts its rows in the table's head; when some are not to be found, pages are damaged.
    if (rows.read() != old.rows)
        return oldFileDamaged(
            u"%1: 本来 %2 行のところ %3 行"_s.arg(table.name).arg(old.rows).arg(rows.read()));
    if (const base::Status ended = rows.end(); !ended)
        return ended;
    for (ConversionSummary::Table &counted : m_summary.tables) {
        if (counted.name == table.name)
            counted = {table.name, rows.read(), rows.written()};
    }
    if (!rows.renumbered().empty())
        m_renumbered.emplace_back(table.name, rows.renumbered());
    return {};
}

base::Status Conversion::passOver(const OldTable &old)
{
    qint64 rows = 0;
    for (;;) {
        const auto step = m_reader.next();
        if (!step)
            return step.error();
        if (*step != OldFileReader::Step::Row)
            break;
        ++rows;
        ++m_done;
        if (!watch())
            return base::cancelled();
    }
    m_summary.tables.push_back({old.name, rows, 0});
    const QString what = u"このプログラムにないテーブル「"_s + old.name + u"」"_s;
    if (rows > 0 || old.rows > 0)
        m_losses.add(what + u"（%1 行）"_s.arg(std::max(rows, old.rows)));
    else
        m_notes.add(what + u"（データなし）"_s);
    return {};
}

base::Status Conversion::judgeRenumbered(const QString &table, const std::vector<Renumbered> &rows)
{
    for (const Renumbered &row : rows) {
        const QString key = keyOf(table);
        const QString from = row.from.isValid() ? row.from.toString() : u"(なし)"_s;
        const QString changed =
            u"%1 重複していた %2=%3 の行を %2=%4 に変更しました"_s.arg(table, key, from).arg(row.to);
        QString followers;
        for (const Reference &reference : references()) {
            if (table != reference.table || !row.from.isValid())
                continue;
            const auto count = m_connection.select(u"SELECT count(*) FROM "_s + reference.byTable +
                                                       u" WHERE "_s + reference.byColumn + u" = ?"_s,
                                                   {row.from});
            if (!count)
                return count.error();
            if (const qint64 number = count->rows.front().front().toLongLong(); number > 0)
                followers +=
                    u"。どちらの行のものか区別できない%1 %2 件は %3=%4 に残しました"_s.arg(reference.what)
                        .arg(number)
                        .arg(key, from);
        }
        (followers.isEmpty() ? m_notes : m_losses).add(changed + followers);
    }
    return {};
}

base::Status Conversion::checkCounts()
{
    for (const ConversionSummary::Table &table : m_summary.tables) {
        const bool isOurs = std::any_of(tables().begin(), tables().end(), [&table](const Table &ours) {
            return ours.firstColumns > 0 && ours.name == table.name;
        });
        if (!isOurs)
            continue;
        const auto count = m_connection.select(u"SELECT count(*) FROM "_s + table.name);
        if (!count)
            return count.error();
        if (count->rows.front().front().toLongLong() != table.written)
            return base::Error{u"書き込んだ行数が合わないため、変換を取りやめました。("_s + table.name +
                               u")"_s};
    }
    return {};
}

base::Status checkIntegrity(Connection &connection)
{
    const auto checked = connection.select(u"PRAGMA integrity_check"_s);
    if (!checked)
        return checked.error();
    if (checked->count() == 1 && checked->rows.front().front().toString() == "ok"_L1)
        return {};
    return base::Error{u"新しいファイルの検査で異常が見つかったため、変換を取りやめました。"
                       "ディスクを確認してから、もう一度実行してください。"_s};
}

} // namespace

base::Result<ConversionSummary> convertOldFile(const QString &source, const QString &target,
                                               const base::Progress &progress,
                                               const ConversionOptions &options)
{
    if (const base::Status readable = checkOldFile(source); !readable)
        return readable.error();
    if (QFileInfo::exists(target))
        return base::Error{
            u"同じ名前のファイルがあるため、変換できませんでした。別の名前を指定してください。("_s + target +
            u")"_s};
    base::Replacement file(target);
    base::Status done = file.begin();
    if (done)
        done = createDatabase(file.name());
    if (!done)
        return done.error();
    Connection connection;
    done = connection.open(file.name());
    if (!done)
        return done.error();
    auto summary = Conversion(connection, progress, options).run(source);
    if (!summary)
        return summary;
    done = checkIntegrity(connection);
    connection.close();
    if (done)
        done = replaceDatabase(file);
    return done ? summary : done.error();
}

} // namespace db
