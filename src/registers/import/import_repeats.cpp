#include "registers/import/import_repeats.h"

#include "db/connection.h"
#include "registers/counterpart.h"
#include "registers/import/import_matches.h"
#include "text/width.h"

#include <QStringList>

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using State = ImportCandidate::State;

constexpr qsizetype linesNamed = 5;
constexpr int blockSize = 2000; // customers read at a time

const QString &valueOf(const ImportCandidate &candidate, const QString &column)
{
    return candidate.values.at(importFieldOf(column));
}

// --- What two rows have in common ---

QString nameAndPhone(const QString &name, const QString &phone)
{
    QString folded = foldedName(name) + u'\n';
    const QString number = text::toHalfWidth(phone);
    std::copy_if(number.begin(), number.end(), std::back_inserter(folded),
                 [](QChar c) { return c.isDigit(); });
    return folded;
}

QString nameAndPhone(const ImportCandidate &candidate)
{
    return nameAndPhone(valueOf(candidate, u"納品先名1"_s), valueOf(candidate, u"TEL1"_s));
}

struct Repeat
{
    std::size_t first;
    std::size_t again;
    QString what; // they have in common, in words
};

// The places of rows by what tells whose they are: "k" and the key, "c" and the code.
using Owners = QHash<QString, std::size_t>;

std::optional<Repeat> repeatOf(const std::vector<ImportCandidate> &candidates, std::size_t place,
                               Owners &owners)
{
    const ImportCandidate &candidate = candidates[place];
    const QString code = valueOf(candidate, u"コード"_s);
    std::optional<Repeat> repeat;
    const auto look = [&](const QString &owner, const QString &what) {
        const auto found = owners.constFind(owner);
        if (found == owners.cend())
            owners.insert(owner, place);
        else if (!repeat && *found != place)
            repeat = Repeat{*found, place, what};
    };
    if (!candidate.givenKey.isEmpty())
        look(u'k' + candidate.givenKey, u"納品先ID「%1」"_s.arg(candidate.givenKey));
    if (!code.isEmpty())
        look(u'c' + nameAsWritten(code), u"コード「%1」"_s.arg(code));
    return repeat;
}

// The rows in \a states that have the key or the code of an earlier one.
std::vector<Repeat> repeatsAmong(const std::vector<ImportCandidate> &candidates,
                                 std::initializer_list<State> states)
{
    std::vector<Repeat> repeats;
    Owners owners;
    for (std::size_t place = 0; place < candidates.size(); ++place) {
        if (std::ranges::find(states, candidates[place].state) == states.end())
            continue;
        if (auto repeat = repeatOf(candidates, place, owners))
            repeats.push_back(std::move(*repeat));
    }
    return repeats;
}

// --- Merging ---

// The key, and a code that is the same but for its width.
bool keepsItsOwn(int field, const QString &before, const QString &now)
{
    return importFields().at(field).rule == ImportRule::Key ||
           (importFields().at(field).column == u"コード"_s && nameAsWritten(before) == nameAsWritten(now));
}

// \return what became other than it was
QStringList overlay(ImportCandidate &into, const ImportCandidate &from)
{
    QStringList changes;
    const int category = importFieldOf(u"区分ID"_s);
    if (!from.newCategory.isEmpty() || !from.values.at(category).isEmpty()) {
        into.newCategory = from.newCategory;
        into.values[category].clear();
    }
    for (int field = 0; field < into.values.size(); ++field) {
        const QString &now = from.values.at(field);
        QString &before = into.values[field];
        if (now.isEmpty() || now == before || keepsItsOwn(field, before, now))
            continue;
        if (!before.isEmpty())
            changes << u"%1「%2」→「%3」"_s.arg(importFields().at(field).column,
                                                shownImportValue(field, before, {}),
                                                shownImportValue(field, now, {}));
        before = now;
    }
    return changes;
}

// --- Marking ---

void markDuplicate(ImportCandidate &candidate, const QString &of)
{
    if (candidate.state != State::Ready)
        return;
    candidate.state = State::Duplicate;
    candidate.taken = false;
    candidate.remark = candidate.remark.isEmpty() ? of : of + u'、' + candidate.remark;
}

// Of which the first one is taken, and its remark says so.
void markRepeatsOfNewRows(std::vector<ImportCandidate> &candidates)
{
    QHash<std::size_t, QStringList> again;
    for (const Repeat &repeat : repeatsAmong(candidates, {State::Ready, State::Duplicate})) {
        ImportCandidate &candidate = candidates[repeat.again];
        const ImportCandidate &first = candidates[repeat.first];
        candidate.repeats = first.line;
        again[repeat.first] << QString::number(candidate.line);
        markDuplicate(candidate, u"%1 行目と同じ%2です"_s.arg(QString::number(first.line), repeat.what));
    }
    for (auto first = again.cbegin(); first != again.cend(); ++first)
        addRemark(candidates[first.key()],
                  u"同じコードか納品先IDの行がほかにあります（%1 行目%2）"_s.arg(
                      first->first(std::min(linesNamed, first->size())).join(u"、"_s),
                      first->size() > linesNamed ? u" など"_s : QString()));
}

void markRepeatsOfNames(std::vector<ImportCandidate> &candidates)
{
    QHash<QString, int> lines;
    for (ImportCandidate &candidate : candidates) {
        if (candidate.state != State::Ready && candidate.state != State::Duplicate)
            continue;
        const QString name = nameAndPhone(candidate);
        if (const auto first = lines.constFind(name); first != lines.cend())
            markDuplicate(candidate, u"%1 行目と同じ名前と電話番号です"_s.arg(*first));
        else
            lines.insert(name, candidate.line);
    }
}

void refuseRepeatedUpdates(std::vector<ImportCandidate> &candidates)
{
    QHash<qint64, int> lines;
    for (ImportCandidate &candidate : candidates) {
        if (candidate.state != State::Update && candidate.state != State::Same)
            continue;
        const auto first = lines.constFind(candidate.customer);
        if (first == lines.cend()) {
            lines.insert(candidate.customer, candidate.line);
            continue;
        }
        candidate.repeats = *first;
        candidate.state = State::Refused;
        candidate.taken = false;
        candidate.remark = u"%1 行目と同じ納品先（ID %2）です"_s.arg(*first).arg(candidate.customer);
    }
}

} // namespace

std::vector<ImportMerge> mergeRepeatedRows(std::vector<ImportCandidate> &candidates)
{
    std::vector<ImportMerge> merges;
    // A row that repeats one by its key and another by its code leads on to the first of all.
    std::vector<std::size_t> whole(candidates.size());
    std::iota(whole.begin(), whole.end(), std::size_t(0));
    for (const Repeat &repeat : repeatsAmong(candidates, {State::Ready})) {
        const std::size_t into = whole[repeat.first];
        whole[repeat.again] = into;
        ImportCandidate &first = candidates[into];
        ImportCandidate &again = candidates[repeat.again];
        const QString nameNow = valueOf(again, u"納品先名1"_s);
        const QString nameBefore = valueOf(first, u"納品先名1"_s);
        const bool isOther = !nameNow.isEmpty() && !nameBefore.isEmpty() &&
                             nameAsWritten(nameNow) != nameAsWritten(nameBefore);
        const QStringList changes = overlay(first, again);
        again.state = State::Merged;
        again.taken = false;
        again.repeats = first.line;
        again.remark = u"%1 行目にまとめます（同じ%2）"_s.arg(QString::number(first.line), repeat.what);
        const QString said = changes.isEmpty() ? u"%1 行目をまとめます"_s : u"%1 行目をまとめます：%2"_s;
        merges.push_back({into,
                          changes.isEmpty() ? said.arg(again.line)
                                            : said.arg(QString::number(again.line), changes.join(u"、"_s)),
                          isOther});
    }
    return merges;
}

void tellMerges(std::vector<ImportCandidate> &candidates, const std::vector<ImportMerge> &merges)
{
    for (const ImportMerge &merge : merges) {
        ImportCandidate &candidate = candidates[merge.into];
        addRemark(candidate, merge.isOtherName ? u"名前が違います。"_s + merge.remark : merge.remark);
        candidate.taken = candidate.taken && !merge.isOtherName;
    }
}

void markRepeatedRows(std::vector<ImportCandidate> &candidates)
{
    markRepeatsOfNewRows(candidates);
    markRepeatsOfNames(candidates);
    refuseRepeatedUpdates(candidates);
}

base::Status visitCustomers(db::Connection &connection, const std::function<bool()> &goOn,
                            const std::function<void(const QVariantList &)> &visit)
{
    qint64 lastKey = std::numeric_limits<qint64>::min();
    while (true) {
        const auto block = connection.select(u"SELECT 納品先ID, 納品先名1, TEL1, コード FROM 納品先 "
                                             "WHERE 納品先ID > ? ORDER BY 納品先ID LIMIT ?"_s,
                                             {lastKey, blockSize});
        if (!block)
            return block.error();
        if (block->isEmpty())
            return {};
        if (!goOn())
            return base::cancelled();
        for (const QVariantList &row : block->rows)
            visit(row);
        lastKey = block->rows.back().front().toLongLong();
    }
}

KnownRows::KnownRows(const std::vector<ImportCandidate> &candidates)
{
    for (std::size_t place = 0; place < candidates.size(); ++place) {
        if (candidates[place].state != State::Ready)
            continue;
        if (!valueOf(candidates[place], u"納品先名1"_s).isEmpty())
            m_byName[nameAndPhone(candidates[place])].push_back(place);
        const QString code = valueOf(candidates[place], u"コード"_s);
        if (!code.isEmpty())
            m_byCode[nameAsWritten(code)].push_back(place);
        const QString key = valueOf(candidates[place], u"納品先ID"_s);
        if (!key.isEmpty())
            m_byKey[key].push_back(place);
    }
}

void KnownRows::mark(std::vector<ImportCandidate> &candidates, const QVariantList &customer) const
{
    const QString key = customer.at(0).toString();
    const QString code = customer.at(3).toString();
    const QString who = u"納品先ID %1「%2」"_s.arg(key, customer.at(1).toString());
    const auto markAll = [&](const Places &places, const QString &owner, const QString &of) {
        const auto same = places.constFind(owner);
        if (same == places.cend())
            return;
        for (const std::size_t place : *same)
            markDuplicate(candidates[place], of + who);
    };
    markAll(m_byName, nameAndPhone(customer.at(1).toString(), customer.at(2).toString()), u"登録済み："_s);
    if (!code.isEmpty())
        markAll(m_byCode, nameAsWritten(code), u"登録済みのコード「%1」："_s.arg(code));
    markAll(m_byKey, key, u"登録済み："_s);
}

} // namespace registers
