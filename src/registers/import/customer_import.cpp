#include "registers/import/customer_import.h"

#include "book/slip_counts.h"
#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"
#include "registers/customer.h"
#include "registers/import/import_rules.h"
#include "tables/table_writer.h"
#include "text/dates.h"
#include "text/width.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using State = ImportCandidate::State;

constexpr int blockSize = 2000; // customers read at a time

// The fields that rules of the whole row look at.
struct Places
{
    int code = importFieldOf(u"コード"_s);
    int name1 = importFieldOf(u"納品先名1"_s);
    int name2 = importFieldOf(u"納品先名2"_s);
    int reading = importFieldOf(u"フリガナ"_s);
    int tel1 = importFieldOf(u"TEL1"_s);
    int category = importFieldOf(u"区分ID"_s);
    int registered = importFieldOf(u"登録日"_s);
    int ledger = importFieldOf(u"元帳出力"_s);
    int tax = importFieldOf(u"消費税区分"_s);
    int closingDay = importFieldOf(u"締め日"_s);
};

const Places &places()
{
    static const Places thePlaces;
    return thePlaces;
}

// --- Judging ---

QString identity(const QString &name, const QString &phone)
{
    QString folded = text::toHalfWidth(name).toCaseFolded();
    folded.removeIf([](QChar c) { return c.isSpace(); });
    folded += u'\n';
    const QString number = text::toHalfWidth(phone);
    std::copy_if(number.begin(), number.end(), std::back_inserter(folded),
                 [](QChar c) { return c.isDigit(); });
    return folded;
}

void judge(ImportCandidate &candidate, qint64 defaultCategory)
{
    QStringList &values = candidate.values;
    if (values.at(places().name1).isEmpty())
        candidate.remark = u"納品先名1：入力されていません"_s;
    if (values.at(places().category).isEmpty() && candidate.remark.isEmpty()) {
        if (defaultCategory > 0)
            values[places().category] = QString::number(defaultCategory);
        else
            candidate.remark = u"区分ID：入力されていません（「設定」で既定の区分を選べます）"_s;
    }
    if (!candidate.remark.isEmpty())
        candidate.state = State::Refused;
}

ImportCandidate candidateFrom(const QStringList &cells, const ImportAssignment &assignment,
                              const std::vector<masters::Entry> &categories)
{
    ImportCandidate candidate;
    candidate.values.resize(importFields().size());
    QStringList refusals;
    QStringList cut;
    for (qsizetype column = 0; column < std::min(cells.size(), assignment.fields.size()); ++column) {
        const int field = assignment.fields.at(column);
        if (field < 0)
            continue;
        const ImportValue value = importValue(importFields().at(field), cells.at(column), categories);
        // What is refused is shown as it came.
        candidate.values[field] = value.refusal.isEmpty() ? value.text : cells.at(column);
        if (!value.refusal.isEmpty())
            refusals << value.refusal;
        if (value.isCut)
            cut << importFields().at(field).column;
    }
    candidate.remark = refusals.join(u"、"_s);
    judge(candidate, assignment.defaultCategory);
    if (candidate.state == State::Ready && !cut.isEmpty())
        candidate.remark = u"長いため途中まで取り込みます：%1"_s.arg(cut.join(u"、"_s));
    candidate.taken = candidate.state == State::Ready;
    return candidate;
}

void markDuplicate(ImportCandidate &candidate, const QString &of)
{
    if (candidate.state != State::Ready)
        return;
    candidate.state = State::Duplicate;
    candidate.taken = false;
    candidate.remark = of;
}

using Identities = QHash<QString, std::vector<std::size_t>>; // candidates that are the same customer

base::Status markKnownCustomers(db::Connection &connection, std::vector<ImportCandidate> &candidates,
                                const Identities &identities, const std::function<bool()> &goOn)
{
    qint64 lastKey = std::numeric_limits<qint64>::min();
    while (true) {
        const auto block = connection.select(u"SELECT 納品先ID, 納品先名1, TEL1 FROM 納品先 "
                                             "WHERE 納品先ID > ? ORDER BY 納品先ID LIMIT ?"_s,
                                             {lastKey, blockSize});
        if (!block)
            return block.error();
        if (block->isEmpty())
            return {};
        if (!goOn())
            return base::cancelled();
        for (const QVariantList &row : block->rows) {
            const auto same = identities.constFind(identity(row.at(1).toString(), row.at(2).toString()));
            if (same == identities.cend())
                continue;
            for (const std::size_t index : *same)
                markDuplicate(candidates[index], u"登録済み：納品先ID %1「%2」"_s.arg(row.at(0).toString(),
                                                                                      row.at(1).toString()));
        }
        lastKey = block->rows.back().front().toLongLong();
    }
}

void markRepeatedRows(std::vector<ImportCandidate> &candidates, const ImportTable &table,
                      const Identities &identities)
{
    for (const auto &same : identities) {
        for (std::size_t later = 1; later < same.size(); ++later)
            markDuplicate(candidates[same[later]],
                          u"%1 行目と同じ名前と電話番号です"_s.arg(table.rows[candidates[same[0]].row].line));
    }
}

// --- Storing ---

QString insertStatement()
{
    QStringList columns;
    for (const ImportField &field : importFields())
        columns << field.column;
    columns << u"納品先ID"_s << u"納品先名キー"_s << u"更新日"_s;
    return u"INSERT INTO 納品先 (%1, 版) VALUES (%2, (SELECT 最終 FROM 版数))"_s.arg(
        columns.join(u", "_s), QStringList(columns.size(), u"?"_s).join(u", "_s));
}

QVariantList rowOf(const ImportCandidate &candidate, qint64 key, const QString &today)
{
    QVariantList row;
    for (const QString &value : candidate.values)
        row << (value.isEmpty() ? QVariant() : QVariant(value));
    const auto fill = [&row](int place, const QVariant &value) {
        if (row.at(place).isNull())
            row[place] = value;
    };
    fill(places().registered, today);
    fill(places().ledger, 0);
    fill(places().tax, 0);
    fill(places().closingDay, 0);
    const QStringList &values = candidate.values;
    return row << key
               << customerKey(values.at(places().name1), values.at(places().name2), values.at(places().code),
                              values.at(places().tel1), values.at(places().reading))
               << today;
}

// Another program may have removed a category since the rows were looked at.
base::Status checkCategories(db::Connection &connection,
                             const std::vector<const ImportCandidate *> &candidates)
{
    const auto categories = masters::customerCategories(connection);
    if (!categories)
        return categories.error();
    QSet<QString> known;
    for (const masters::Entry &entry : *categories)
        known.insert(QString::number(entry.id));
    for (const ImportCandidate *candidate : candidates) {
        const QString &id = candidate->values.at(places().category);
        if (!known.contains(id))
            return base::Error{u"納品先区分（区分ID %1）が削除されているため、取り込めませんでした。"
                               "もう一度読み込んでください。"_s.arg(id)};
    }
    return {};
}

base::Result<int> insertCustomers(db::Connection &connection,
                                  const std::vector<const ImportCandidate *> &taken, const QDate &today,
                                  const base::Progress &progress)
{
    const auto total = static_cast<qint64>(taken.size());
    if (const base::Status known = checkCategories(connection, taken); !known)
        return known.error();
    const auto next = db::nextKey(connection, u"納品先"_s);
    const auto firstKey = next ? book::keyWithoutSlips(connection, book::Party::Customer, *next) : next;
    if (!firstKey)
        return firstKey.error();
    if (total > db::highestKey - *firstKey + 1)
        return base::Error{u"納品先IDが足りないため、取り込めませんでした。"_s};
    const QString statement = insertStatement();
    const QString date = text::stored(today);
    for (qint64 place = 0; place < total; ++place) {
        const auto added = connection.execute(
            statement, rowOf(*taken[static_cast<std::size_t>(place)], *firstKey + place, date));
        if (!added)
            return added.error();
        if (!progress(place, total))
            return base::cancelled();
    }
    return static_cast<int>(total);
}

} // namespace

base::Result<std::vector<ImportCandidate>> importCandidates(db::Connection &connection,
                                                            const ImportTable &table,
                                                            const ImportAssignment &assignment,
                                                            const base::Progress &progress)
{
    const auto categories = masters::customerCategories(connection);
    if (!categories)
        return categories.error();
    const auto total = static_cast<qint64>(table.rows.size());
    std::vector<ImportCandidate> candidates;
    Identities identities;
    for (std::size_t row = assignment.hasHeadings ? 1 : 0; row < table.rows.size(); ++row) {
        ImportCandidate candidate = candidateFrom(table.rows[row].cells, assignment, *categories);
        candidate.row = row;
        if (candidate.state == State::Ready)
            identities[identity(candidate.values.at(places().name1), candidate.values.at(places().tel1))]
                .push_back(candidates.size());
        candidates.push_back(std::move(candidate));
        if (!progress(static_cast<qint64>(row), total))
            return base::cancelled();
    }
    const base::Status known =
        markKnownCustomers(connection, candidates, identities, [&] { return progress(total, total); });
    if (!known)
        return known.error();
    markRepeatedRows(candidates, table, identities);
    return candidates;
}

base::Result<int> importCustomers(db::Connection &connection,
                                  const std::vector<const ImportCandidate *> &candidates, const QDate &today,
                                  const base::Progress &progress)
{
    std::vector<const ImportCandidate *> taken;
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(taken),
                 [](const ImportCandidate *c) { return c->taken && c->state != State::Refused; });
    return db::atomically(connection, [&] { return insertCustomers(connection, taken, today, progress); });
}

base::Status writeImportReport(const QString &fileName, const ImportTable &table,
                               const ImportAssignment &assignment,
                               const std::vector<const ImportCandidate *> &candidates,
                               const base::Progress &progress)
{
    std::vector<base::Column> columns{{u"行"_s, base::Format::Number}, {u"理由"_s}};
    for (qsizetype column = 0; column < table.columns; ++column) {
        const QString heading = assignment.hasHeadings ? table.firstRow().value(column) : QString();
        columns.push_back({heading.isEmpty() ? u"列%1"_s.arg(column + 1) : heading});
    }
    auto next = candidates.begin();
    const auto nextRow = [&](QVariantList &row) -> base::Result<bool> {
        if (next == candidates.end())
            return false;
        const ImportTable::Row &source = table.rows[(*next)->row];
        row = {source.line, (*next)->remark};
        for (qsizetype column = 0; column < table.columns; ++column)
            row << source.cells.value(column);
        ++next;
        return true;
    };
    return tables::writeTable(fileName, {columns, static_cast<qint64>(candidates.size()), nextRow}, progress);
}

} // namespace registers
