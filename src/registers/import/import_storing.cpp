#include "book/slip_counts.h"
#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"
#include "registers/counterpart.h"
#include "registers/customer.h"
#include "registers/import/customer_import.h"
#include "registers/import/import_matches.h"
#include "registers/import/import_repeats.h"
#include "registers/import/import_rules.h"
#include "text/dates.h"

#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using State = ImportCandidate::State;

int placeOf(const QString &column) { return importFieldOf(column); }

// --- Categories ---

// The keys of the categories that \a candidates make, by folded name.
using MadeCategories = QHash<QString, qint64>;

base::Status makeCategory(db::Connection &connection, const QString &name, MadeCategories &made)
{
    const auto key = db::nextKey(connection, u"登録区分"_s);
    if (!key)
        return key.error();
    made.insert(nameAsWritten(name), *key);
    return connection
        .execute(u"INSERT INTO 登録区分 (区分ID, 区分名, 版) VALUES (?, ?, (SELECT 最終 FROM 版数))"_s,
                 {*key, name})
        .status();
}

// One that another program made meanwhile is taken as it is.
base::Result<MadeCategories> makeCategories(db::Connection &connection,
                                            const std::vector<const ImportCandidate *> &candidates,
                                            const std::vector<masters::Entry> &there)
{
    MadeCategories made;
    for (const masters::Entry &entry : there)
        made.insert(nameAsWritten(entry.name), entry.id);
    for (const ImportCandidate *candidate : candidates) {
        const QString &name = candidate->newCategory;
        if (name.isEmpty() || made.contains(nameAsWritten(name)))
            continue;
        if (const base::Status done = makeCategory(connection, name, made); !done)
            return done.error();
    }
    return made;
}

// Another program may have removed a category since the rows were looked at.
base::Status checkCategories(const std::vector<const ImportCandidate *> &candidates,
                             const std::vector<masters::Entry> &there)
{
    QSet<QString> known;
    for (const masters::Entry &entry : there)
        known.insert(QString::number(entry.id));
    for (const ImportCandidate *candidate : candidates) {
        const QString &id = candidate->values.at(placeOf(u"区分ID"_s));
        if (!id.isEmpty() && !known.contains(id))
            return base::Error{u"納品先区分（区分ID %1）が削除されているため、取り込めませんでした。"
                               "もう一度読み込んでください。"_s.arg(id)};
    }
    return {};
}

ImportCandidate withCategory(ImportCandidate candidate, const MadeCategories &made)
{
    if (candidate.newCategory.isEmpty())
        return candidate;
    const int place = placeOf(u"区分ID"_s);
    candidate.values[place] = QString::number(made.value(nameAsWritten(candidate.newCategory)));
    for (ImportChange &change : candidate.changes) {
        if (change.field == place)
            change.after = candidate.values.at(place);
    }
    return candidate;
}

// --- New customers ---

// Of a row that is taken although it repeats a customer, its code: that was to be nobody's.
ImportCandidate codeAlone(ImportCandidate candidate)
{
    candidate.state = State::Ready;
    for (const QString &column : {u"納品先名1"_s, u"納品先ID"_s})
        candidate.values[placeOf(column)].clear();
    return candidate;
}

// Another program may have entered one of them, or given its code to another one, since they were looked at.
base::Status checkStillNew(db::Connection &connection, const std::vector<const ImportCandidate *> &taken)
{
    std::vector<ImportCandidate> rows;
    for (const ImportCandidate *candidate : taken) {
        if (candidate->state == State::Ready)
            rows.push_back(*candidate);
        else if (candidate->state == State::Duplicate && candidate->isNumbered)
            rows.push_back(codeAlone(*candidate));
    }
    if (rows.empty())
        return {};
    const KnownRows known(rows);
    const base::Status visited = visitCustomers(
        connection, [] { return true; }, [&](const QVariantList &customer) { known.mark(rows, customer); });
    const auto found = std::ranges::find(rows, State::Duplicate, &ImportCandidate::state);
    if (!visited || found == rows.end())
        return visited;
    base::Error error{
        u"%1 行目の納品先（または同じコードの納品先）がほかのプログラムで登録されたため、取り込みを"
        "中止しました。何も登録していません。\n"
        "いまの内容と比べ直しますので、「確認」の欄をもう一度確かめてください。"_s.arg(found->line)};
    error.changed = true;
    return error;
}

// The key is the last field, and the program's own.
qsizetype storedFields() { return importFields().size() - 1; }

QString insertStatement()
{
    QStringList columns;
    for (const ImportField &field : importFields().first(storedFields()))
        columns << field.column;
    columns << u"納品先ID"_s << u"納品先名キー"_s << u"更新日"_s;
    return u"INSERT INTO 納品先 (%1, 版) VALUES (%2, (SELECT 最終 FROM 版数))"_s.arg(
        columns.join(u", "_s), QStringList(columns.size(), u"?"_s).join(u", "_s));
}

QVariantList rowOf(const ImportCandidate &candidate, qint64 key, const QString &today)
{
    QVariantList row;
    for (int field = 0; field < storedFields(); ++field)
        row << boundImportValue(field, candidate.values.at(field));
    const auto fill = [&row](const QString &column, const QVariant &value) {
        if (row.at(placeOf(column)).isNull())
            row[placeOf(column)] = value;
    };
    fill(u"登録日"_s, today);
    fill(u"元帳出力"_s, 0);
    fill(u"消費税区分"_s, 0);
    fill(u"締め日"_s, 0);
    const auto text = [&](const QString &column) { return candidate.values.at(placeOf(column)); };
    return row << key
               << customerKey(text(u"納品先名1"_s), text(u"納品先名2"_s), text(u"コード"_s), text(u"TEL1"_s),
                              text(u"フリガナ"_s))
               << today;
}

// The next free keys, one after the other.
class FreeKeys
{
public:
    static base::Result<FreeKeys> from(db::Connection &connection, qint64 count)
    {
        const auto next = count > 0 ? db::nextKey(connection, u"納品先"_s) : base::Result<qint64>(0);
        if (!next)
            return next.error();
        if (count > db::highestKey - *next + 1)
            return base::Error{u"納品先IDが足りないため、取り込めませんでした。"_s};
        return FreeKeys(*next);
    }

    base::Result<qint64> next(db::Connection &connection)
    {
        const auto key = book::keyWithoutSlips(connection, book::Party::Customer, m_next);
        if (key)
            m_next = *key + 1;
        return key;
    }

private:
    explicit FreeKeys(qint64 next)
        : m_next(next)
    {}

    qint64 m_next;
};

base::Status storeRow(db::Connection &connection, const ImportCandidate &row, FreeKeys &keys, qint64 version,
                      const QString &today)
{
    if (row.state == State::Update)
        return updateCustomer(connection, row, version, today);
    const auto key = keys.next(connection);
    return key ? connection.execute(insertStatement(), rowOf(row, *key, today)).status() : key.error();
}

base::Status storeAll(db::Connection &connection, const std::vector<const ImportCandidate *> &taken,
                      const MadeCategories &made, FreeKeys keys, const QDate &today,
                      const base::Progress &progress)
{
    const auto version = db::nextVersion(connection);
    if (!version)
        return version.error();
    const QString date = text::stored(today);
    qint64 done = 0;
    for (const ImportCandidate *candidate : taken) {
        const base::Status stored =
            storeRow(connection, withCategory(*candidate, made), keys, *version, date);
        if (!stored)
            return stored;
        if (!progress(done++, static_cast<qint64>(taken.size())))
            return base::cancelled();
    }
    return {};
}

base::Result<int> storeCustomers(db::Connection &connection,
                                 const std::vector<const ImportCandidate *> &taken, const QDate &today,
                                 const base::Progress &progress)
{
    if (const base::Status isNew = checkStillNew(connection, taken); !isNew)
        return isNew.error();
    const auto there = masters::customerCategories(connection);
    if (!there)
        return there.error();
    if (const base::Status known = checkCategories(taken, *there); !known)
        return known.error();
    const auto made = makeCategories(connection, taken, *there);
    if (!made)
        return made.error();
    const auto newOnes = std::count_if(taken.begin(), taken.end(),
                                       [](const auto *row) { return row->state != State::Update; });
    const auto keys = FreeKeys::from(connection, newOnes);
    if (!keys)
        return keys.error();
    const base::Status stored = storeAll(connection, taken, *made, *keys, today, progress);
    return stored ? base::Result<int>(static_cast<int>(taken.size())) : stored.error();
}

} // namespace

base::Result<int> importCustomers(db::Connection &connection,
                                  const std::vector<const ImportCandidate *> &candidates, const QDate &today,
                                  const base::Progress &progress)
{
    std::vector<const ImportCandidate *> taken;
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(taken),
                 [](const ImportCandidate *c) { return c->taken && c->canBeTaken(); });
    if (taken.empty())
        return 0;
    return db::atomically(connection, [&] { return storeCustomers(connection, taken, today, progress); });
}

} // namespace registers
