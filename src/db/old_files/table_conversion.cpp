#include "db/old_files/table_conversion.h"

#include "db/errors.h"
#include "db/keys.h"
#include "db/schema.h"
#include "text/width.h"

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

constexpr qsizetype mostSentences = 5'000;

QString folded(const QString &name) { return text::toHalfWidth(name).toCaseFolded(); }

int bind(sqlite3_stmt *statement, int index, const QVariant &value)
{
    if (!value.isValid())
        return sqlite3_bind_null(statement, index);
    if (value.typeId() == QMetaType::Double)
        return sqlite3_bind_double(statement, index, value.toDouble());
    if (value.typeId() != QMetaType::QString)
        return sqlite3_bind_int64(statement, index, value.toLongLong());
    const QByteArray utf8 = value.toString().toUtf8();
    return sqlite3_bind_text(statement, index, utf8.constData(), static_cast<int>(utf8.size()),
                             SQLITE_TRANSIENT);
}

} // namespace

void Findings::add(const QString &sentence)
{
    if (m_sentences.size() < mostSentences)
        m_sentences << sentence;
    else
        ++m_more;
}

QStringList Findings::sentences() const
{
    return m_more == 0 ? m_sentences : m_sentences + QStringList{u"ほか %1 件"_s.arg(m_more)};
}

std::optional<std::size_t> foundIn(const QStringList &names, const QString &name)
{
    if (const qsizetype exact = names.indexOf(name); exact >= 0)
        return static_cast<std::size_t>(exact);
    for (qsizetype i = 0; i < names.size(); ++i) {
        if (folded(names.at(i)) == folded(name))
            return static_cast<std::size_t>(i);
    }
    return {};
}

TableConversion::TableConversion(sqlite3 *handle, const Table &table, const OldTable &old,
                                 const MissingValue &missing, Findings &losses, Findings &notes)
    : m_handle(handle)
    , m_table(table)
    , m_old(old)
    , m_missing(missing)
    , m_losses(losses)
    , m_notes(notes)
    , m_unknownValues(static_cast<std::size_t>(old.columns.size()))
    , m_isKnown(static_cast<std::size_t>(old.columns.size()))
{}

TableConversion::~TableConversion() { sqlite3_finalize(m_insert); }

base::Status TableConversion::begin()
{
    if (const base::Status read = readColumns(); !read)
        return read;
    QStringList places;
    for (qsizetype i = 0; i < m_table.columns.size(); ++i)
        places << u"?"_s;
    const QByteArray sql = (u"INSERT INTO "_s + m_table.name + u" ("_s + m_table.columns.join(u", ") +
                            u") VALUES ("_s + places.join(u", ") + u')')
                               .toUtf8();
    if (sqlite3_prepare_v2(m_handle, sql.constData(), -1, &m_insert, nullptr) != SQLITE_OK)
        return errorFrom(m_handle);
    return {};
}

base::Status TableConversion::readColumns()
{
    sqlite3_stmt *statement = nullptr;
    const QByteArray table = m_table.name.toUtf8();
    int code = sqlite3_prepare_v2(m_handle, "SELECT name, type FROM pragma_table_info(?) ORDER BY cid", -1,
                                  &statement, nullptr);
    if (code == SQLITE_OK)
        code = sqlite3_bind_text(statement, 1, table.constData(), -1, SQLITE_STATIC);
    const auto text = [statement](int column) {
        return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, column)));
    };
    while (code == SQLITE_OK && sqlite3_step(statement) == SQLITE_ROW) {
        const QString name = text(0);
        // A column of a later version means something else than one of that name in a file of the earlier
        // program.
        const auto source =
            m_table.isFirst(name) ? foundIn(m_old.columns, name) : std::optional<std::size_t>();
        m_columns.push_back({name, columnKind(name, text(1)), source});
        if (source)
            m_isKnown[*source] = true;
    }
    sqlite3_finalize(statement);
    if (m_columns.size() != static_cast<std::size_t>(m_table.columns.size()))
        return errorFrom(m_handle);
    if (!m_table.hasOwnKeys())
        m_key = m_table.columns.indexOf(m_table.key);
    return {};
}

base::Status TableConversion::take(const std::vector<OldCell> &row)
{
    ++m_read;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const bool isEmpty = row[i].kind == old_reader::Cell::Null ||
                             (row[i].kind == old_reader::Cell::Boolean && row[i].integer == 0);
        if (!m_isKnown[i] && !isEmpty)
            ++m_unknownValues[i];
    }
    const QVariantList values = valuesOf(row);
    if (m_key) {
        const QVariant &key = values.at(*m_key);
        if (!key.isValid() || !m_keys.insert(key.toLongLong()).second) {
            m_withoutKey.push_back(values);
            return {};
        }
        m_highest = std::max(m_highest, key.toLongLong());
    }
    return write(values);
}

QVariantList TableConversion::valuesOf(const std::vector<OldCell> &row)
{
    QVariantList values;
    values.reserve(static_cast<qsizetype>(m_columns.size()));
    QStringList troubles;
    bool lacksColumns = false;
    for (const Column &column : m_columns) {
        lacksColumns = lacksColumns || (!column.source && m_table.isFirst(column.name));
        const CarriedValue carried =
            column.source ? carriedOver(row[*column.source], column.kind) : CarriedValue();
        values << carried.value;
        m_droppedTimes += carried.droppedTime ? 1 : 0;
        if (!carried.trouble.isEmpty())
            troubles << column.name + u": "_s + carried.trouble;
    }
    if (lacksColumns)
        fillMissing(values);
    for (const QString &trouble : troubles)
        m_losses.add(rowName(values) + u' ' + trouble);
    return values;
}

void TableConversion::fillMissing(QVariantList &values) const
{
    if (!m_missing)
        return;
    const auto valueOf = [&](const QString &column) {
        const qsizetype index = m_table.columns.indexOf(column);
        return index < 0 ? QVariant() : values.at(index);
    };
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        if (!m_columns[i].source && m_table.isFirst(m_columns[i].name) && m_key != static_cast<qsizetype>(i))
            values[static_cast<qsizetype>(i)] = m_missing(m_table.name, m_columns[i].name, valueOf);
    }
}

// A row is named by its key; a slip line by its slip and its place in the table.
QString TableConversion::rowName(const QVariantList &values) const
{
    const qsizetype column = m_key.value_or(0);
    const QVariant &key = values.at(column);
    QString name = m_table.name + u' ' + m_table.columns.at(column) + u'=' +
                   (key.isValid() ? key.toString() : u"(なし)"_s);
    if (!m_key || !key.isValid())
        name += u"（%1行目）"_s.arg(m_read);
    return name;
}

base::Status TableConversion::write(const QVariantList &values)
{
    int code = SQLITE_OK;
    for (qsizetype i = 0; code == SQLITE_OK && i < values.size(); ++i)
        code = bind(m_insert, static_cast<int>(i) + 1, values.at(i));
    if (code == SQLITE_OK)
        code = sqlite3_step(m_insert);
    sqlite3_reset(m_insert);
    if (code == SQLITE_DONE) {
        ++m_written;
        return {};
    }
    const bool isThisRow = code == SQLITE_CONSTRAINT || code == SQLITE_MISMATCH || code == SQLITE_TOOBIG;
    if (!isThisRow)
        return errorFrom(m_handle);
    m_losses.add(rowName(values) +
                 u" 行を登録できません（%1）"_s.arg(QString::fromUtf8(sqlite3_errmsg(m_handle))));
    return {};
}

base::Status TableConversion::writeRenumbered()
{
    for (QVariantList &values : m_withoutKey) {
        const QVariant from = values.at(*m_key);
        if (m_highest >= highestKey) {
            m_losses.add(rowName(values) + u" 重複していますが、空いている番号がありません"_s);
            continue;
        }
        values[*m_key] = ++m_highest;
        if (const base::Status done = write(values); !done)
            return done;
        m_renumbered.push_back({from, m_highest});
    }
    m_withoutKey.clear();
    return {};
}

base::Status TableConversion::end()
{
    if (m_key) {
        if (const base::Status done = writeRenumbered(); !done)
            return done;
    }
    noteColumns();
    return {};
}

void TableConversion::noteColumns()
{
    for (std::size_t i = 0; i < m_unknownValues.size(); ++i) {
        if (m_isKnown[i])
            continue;
        const QString what = m_table.name + u" このプログラムにない項目「"_s +
                             m_old.columns.at(static_cast<qsizetype>(i)) + u"」"_s;
        if (m_unknownValues[i] > 0)
            m_losses.add(what + u"（データ %1 件）"_s.arg(m_unknownValues[i]));
        else
            m_notes.add(what + u"（データなし）"_s);
    }
    for (const Column &column : m_columns) {
        if (!column.source && m_table.isFirst(column.name))
            m_notes.add(m_table.name + u" 以前のファイルにない項目「"_s + column.name + u"」"_s);
    }
    if (m_droppedTimes > 0)
        m_notes.add(m_table.name + u" 日付に付いていた時刻は省きました（%1 件）"_s.arg(m_droppedTimes));
}

} // namespace db
