#include "registers/import/customer_import.h"

#include "db/connection.h"
#include "registers/counterpart.h"
#include "registers/import/import_fills.h"
#include "registers/import/import_matches.h"
#include "registers/import/import_repeats.h"
#include "registers/import/import_rules.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using State = ImportCandidate::State;

// The fields that rules of the whole row look at.
struct Places
{
    int code = importFieldOf(u"コード"_s);
    int name1 = importFieldOf(u"納品先名1"_s);
    int reading = importFieldOf(u"フリガナ"_s);
    int zip = importFieldOf(u"郵便番号"_s);
    int address = importFieldOf(u"住所1"_s);
    int category = importFieldOf(u"区分ID"_s);
    int key = importFieldOf(u"納品先ID"_s);
};

const Places &places()
{
    static const Places thePlaces;
    return thePlaces;
}

// What the rows are judged by.
struct Bench
{
    const ImportTable &table;
    const ImportAssignment &assignment;
    const ImportSources &sources;
    std::vector<masters::Entry> categories;
};

// --- One row ---

// A name of the category's own, which a number is none.
bool canBecomeCategory(const QString &cell)
{
    return cell.size() <= 40 && std::any_of(cell.begin(), cell.end(), [](QChar c) { return c.isLetter(); });
}

ImportCandidate candidateFrom(const Bench &bench, std::size_t row)
{
    const QStringList &cells = bench.table.rows[row].cells;
    const QList<int> &fields = bench.assignment.fields;
    ImportCandidate candidate{.row = row, .line = bench.table.rows[row].line};
    candidate.values.resize(importFields().size());
    QStringList refusals;
    QStringList cut;
    for (qsizetype column = 0; column < std::min(cells.size(), fields.size()); ++column) {
        const int field = fields.at(column);
        if (field < 0)
            continue;
        const QString cell = plainCell(cells.at(column)).trimmed();
        const ImportValue value = importValue(importFields().at(field), cells.at(column), bench.categories);
        if (field == places().key)
            candidate.givenKey = value.text;
        if (field == places().key && bench.assignment.match != ImportMatch::Key)
            continue;
        if (field == places().category && !value.refusal.isEmpty() && bench.assignment.makesCategories &&
            canBecomeCategory(cell)) {
            candidate.newCategory = cell;
            continue;
        }
        // What is refused is shown as it came.
        candidate.values[field] = value.refusal.isEmpty() ? value.text : cells.at(column);
        if (!value.refusal.isEmpty())
            refusals << value.refusal;
        if (value.isCut)
            cut << importFields().at(field).column;
    }
    candidate.remark = refusals.join(u"、"_s);
    candidate.state = refusals.isEmpty() ? State::Ready : State::Refused;
    if (refusals.isEmpty() && !cut.isEmpty())
        candidate.remark = u"長いため途中まで取り込みます：%1"_s.arg(cut.join(u"、"_s));
    return candidate;
}

void refuse(ImportCandidate &candidate, const QString &why)
{
    candidate.state = State::Refused;
    candidate.remark = why;
}

// What a new customer cannot be without.
void judgeNew(ImportCandidate &candidate, qint64 defaultCategory)
{
    QStringList &values = candidate.values;
    const bool hasCategory = !values.at(places().category).isEmpty() || !candidate.newCategory.isEmpty();
    if (values.at(places().name1).isEmpty())
        refuse(candidate, u"納品先名1：入力されていません"_s);
    else if (!hasCategory && defaultCategory > 0)
        values[places().category] = QString::number(defaultCategory);
    else if (!hasCategory)
        refuse(candidate, u"区分ID：入力されていません（「設定」で既定の区分を選べます）"_s);
}

void fill(ImportCandidate &candidate, int field, const QString &value)
{
    if (value.isEmpty() || !candidate.values.at(field).isEmpty())
        return;
    candidate.values[field] = value;
    addRemark(candidate, u"%1を補います：%2"_s.arg(importFields().at(field).column, value));
}

void fillNew(ImportCandidate &candidate, const ImportSources &sources)
{
    const QStringList &values = candidate.values;
    if (!candidate.newCategory.isEmpty())
        addRemark(candidate, u"納品先区分「%1」を新しく登録します"_s.arg(candidate.newCategory));
    if (values.at(places().reading).isEmpty())
        fill(candidate, places().reading, readingInName(values.at(places().name1)));
    if (sources.postalCodeOf && values.at(places().zip).isEmpty() && !values.at(places().address).isEmpty())
        fill(candidate, places().zip, sources.postalCodeOf(values.at(places().address)));
}

base::Status judge(db::Connection &connection, const Bench &bench, ImportCandidate &candidate)
{
    if (candidate.state == State::Ready) {
        const base::Status matched =
            matchCandidate(connection, candidate, bench.assignment.match, bench.categories);
        if (!matched)
            return matched;
    }
    if (candidate.state == State::Ready)
        judgeNew(candidate, bench.assignment.defaultCategory);
    if (candidate.state == State::Ready)
        fillNew(candidate, bench.sources);
    candidate.taken = candidate.taken && candidate.canBeTaken();
    return {};
}

// --- The rows among each other and among the customers ---

void numberCodes(std::vector<ImportCandidate> &candidates, CodeNumbers numbers)
{
    for (const ImportCandidate &candidate : candidates)
        numbers.take(candidate.values.at(places().code));
    for (ImportCandidate &candidate : candidates) {
        const bool isNew = candidate.state == State::Ready || candidate.state == State::Duplicate;
        candidate.isNumbered = isNew && candidate.values.at(places().code).isEmpty();
        if (candidate.isNumbered)
            fill(candidate, places().code, numbers.next());
    }
}

} // namespace

base::Result<std::vector<ImportCandidate>>
importCandidates(db::Connection &connection, const ImportTable &table, const ImportAssignment &assignment,
                 const base::Progress &progress, const ImportSources &sources)
{
    const auto categories = masters::customerCategories(connection);
    if (!categories)
        return categories.error();
    const Bench bench{table, assignment, sources, *categories};
    const auto total = static_cast<qint64>(table.rows.size());
    std::vector<ImportCandidate> candidates;
    for (std::size_t row = assignment.hasHeadings ? 1 : 0; row < table.rows.size(); ++row) {
        if (!progress(0, total))
            return base::cancelled();
        candidates.push_back(candidateFrom(bench, row));
    }
    const std::vector<ImportMerge> merges =
        assignment.mergesRepeats ? mergeRepeatedRows(candidates) : std::vector<ImportMerge>();
    for (ImportCandidate &candidate : candidates) {
        if (const base::Status done = judge(connection, bench, candidate); !done)
            return done.error();
        if (!progress(static_cast<qint64>(candidate.row), total))
            return base::cancelled();
    }
    const KnownRows known(candidates);
    CodeNumbers numbers;
    const base::Status visited = visitCustomers(
        connection, [&] { return progress(total, total); },
        [&](const QVariantList &customer) {
            known.mark(candidates, customer);
            numbers.take(customer.at(3).toString());
        });
    if (!visited)
        return visited.error();
    markRepeatedRows(candidates);
    tellMerges(candidates, merges);
    if (assignment.numbersCodes)
        numberCodes(candidates, numbers);
    return candidates;
}

QStringList unknownCategories(const ImportTable &table, const ImportAssignment &assignment,
                              const std::vector<masters::Entry> &categories)
{
    QStringList names;
    QSet<QString> seen;
    const qsizetype column = assignment.columnOf(places().category);
    for (std::size_t row = assignment.hasHeadings ? 1 : 0; column >= 0 && row < table.rows.size(); ++row) {
        const QString cell = plainCell(table.rows[row].cells.value(column)).trimmed();
        if (!canBecomeCategory(cell) || seen.contains(nameAsWritten(cell)))
            continue;
        seen.insert(nameAsWritten(cell));
        if (!importValue(importFields().at(places().category), cell, categories).refusal.isEmpty())
            names << cell;
    }
    return names;
}

} // namespace registers
