#include "registers/import/import_matches.h"

#include "db/connection.h"
#include "registers/counterpart.h"
#include "registers/customer.h"
#include "registers/import/import_rules.h"
#include "text/dates.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using State = ImportCandidate::State;

int placeOf(const QString &column) { return importFieldOf(column); }

// The columns of all fields in their order, and the version behind them.
QString fieldColumns()
{
    QStringList columns;
    for (const ImportField &field : importFields())
        columns << field.column;
    return columns.join(u", "_s) + u", 版"_s;
}

base::Result<db::Rows> customersBy(db::Connection &connection, ImportMatch match, const QString &value)
{
    const QString column = match == ImportMatch::Key ? u"納品先ID"_s : u"コード"_s;
    const QVariant bound = match == ImportMatch::Key ? QVariant(value.toLongLong()) : QVariant(value);
    return connection.select(
        u"SELECT %1 FROM 納品先 WHERE %2 = ? ORDER BY 納品先ID LIMIT 2"_s.arg(fieldColumns(), column),
        {bound});
}

std::vector<ImportChange> changesOf(const QStringList &values, const QVariantList &customer)
{
    std::vector<ImportChange> changes;
    for (int field = 0; field < values.size(); ++field) {
        const QString before = customer.at(field).toString();
        if (!values.at(field).isEmpty() && values.at(field) != before)
            changes.push_back({field, before, values.at(field)});
    }
    return changes;
}

QString changesInWords(const ImportCandidate &candidate, const std::vector<masters::Entry> &categories)
{
    QStringList words;
    for (const ImportChange &change : candidate.changes)
        words << u"%1「%2」→「%3」"_s.arg(importFields().at(change.field).column,
                                          shownImportValue(change.field, change.before, categories),
                                          shownAfter(candidate, change, categories));
    return words.join(u"、"_s);
}

bool isOtherName(const std::vector<ImportChange> &changes)
{
    return std::any_of(changes.begin(), changes.end(), [](const ImportChange &change) {
        return change.field == placeOf(u"納品先名1"_s) && !change.before.isEmpty() &&
               nameAsWritten(change.before) != nameAsWritten(change.after);
    });
}

void makeUpdate(ImportCandidate &candidate, const QVariantList &customer,
                const std::vector<masters::Entry> &categories)
{
    candidate.customer = customer.at(placeOf(u"納品先ID"_s)).toLongLong();
    candidate.version = customer.constLast();
    candidate.changes = changesOf(candidate.values, customer);
    if (!candidate.newCategory.isEmpty())
        candidate.changes.push_back({placeOf(u"区分ID"_s), customer.at(placeOf(u"区分ID"_s)).toString(), {}});
    const QString who = u"納品先ID %1「%2」"_s.arg(QString::number(candidate.customer),
                                                   customer.at(placeOf(u"納品先名1"_s)).toString());
    const bool isSame = candidate.changes.empty();
    const bool isOther = isOtherName(candidate.changes);
    candidate.state = isSame ? State::Same : State::Update;
    candidate.taken = !isSame && !isOther;
    const QString before = candidate.remark;
    candidate.remark = isSame ? u"%1 と同じ内容です"_s.arg(who)
                              : (isOther ? u"名前が違います。"_s : QString()) +
                                    u"%1 を更新：%2"_s.arg(who, changesInWords(candidate, categories));
    addRemark(candidate, before);
}

base::Error changedMeanwhile(const ImportCandidate &candidate, bool isGone)
{
    base::Error error{
        u"%1 行目の納品先（ID "
        u"%2）がほかのプログラムで%3されたため、取り込みを中止しました。何も登録していません。\n"
        "いまの内容と比べ直しますので、「確認」の欄をもう一度確かめてください。"_s.arg(
            QString::number(candidate.line), QString::number(candidate.customer),
            isGone ? u"削除"_s : u"変更"_s)};
    error.changed = true;
    return error;
}

// The customer as it will be, for the search key.
QString keyAfter(const QVariantList &customer)
{
    const auto text = [&](const QString &column) { return customer.at(placeOf(column)).toString(); };
    return customerKey(text(u"納品先名1"_s), text(u"納品先名2"_s), text(u"コード"_s), text(u"TEL1"_s),
                       text(u"フリガナ"_s));
}

} // namespace

void addRemark(ImportCandidate &candidate, const QString &remark)
{
    if (remark.isEmpty())
        return;
    candidate.remark += (candidate.remark.isEmpty() ? u""_s : u"、"_s) + remark;
}

QString shownImportValue(int field, const QString &value, const std::vector<masters::Entry> &categories)
{
    const auto listed = [&](const QStringList &names) { return names.value(value.toInt(), value); };
    if (value.isEmpty())
        return value;
    switch (importFields().at(field).rule) {
    case ImportRule::ClosingDay:
        return listed(closingDayNames());
    case ImportRule::TaxClass:
        return listed(taxClassNames());
    case ImportRule::YesNo:
        return listed({u"しない"_s, u"する"_s});
    case ImportRule::Date:
    case ImportRule::Birthday:
        return text::shownDay(value);
    case ImportRule::Category:
        for (const masters::Entry &category : categories) {
            if (category.id == value.toLongLong())
                return category.name;
        }
        return value;
    default:
        return value;
    }
}

QString shownAfter(const ImportCandidate &candidate, const ImportChange &change,
                   const std::vector<masters::Entry> &categories)
{
    return change.after.isEmpty() ? candidate.newCategory
                                  : shownImportValue(change.field, change.after, categories);
}

base::Status matchCandidate(db::Connection &connection, ImportCandidate &candidate, ImportMatch match,
                            const std::vector<masters::Entry> &categories)
{
    const int field = ImportAssignment{.match = match}.matchField();
    if (field < 0 || candidate.state == State::Refused || candidate.values.at(field).isEmpty())
        return {};
    const QString value = candidate.values.at(field);
    const auto found = customersBy(connection, match, value);
    if (!found)
        return found.error();
    if (found->count() == 1) {
        makeUpdate(candidate, found->rows.front(), categories);
    } else if (found->count() > 1) {
        candidate.state = State::Refused;
        candidate.taken = false;
        candidate.remark = u"%1「%2」の納品先が複数あるため、どれを更新するか分かりません"_s.arg(
            importFields().at(field).column, value);
    }
    return {};
}

base::Status updateCustomer(db::Connection &connection, const ImportCandidate &candidate, qint64 version,
                            const QString &today)
{
    const auto now = customersBy(connection, ImportMatch::Key, QString::number(candidate.customer));
    if (!now)
        return now.error();
    if (now->isEmpty() || now->rows.front().constLast() != candidate.version)
        return changedMeanwhile(candidate, now->isEmpty());
    QVariantList customer = now->rows.front();
    // Not every program raises the version.
    const bool isAsShown = std::ranges::all_of(candidate.changes, [&](const ImportChange &change) {
        return customer.at(change.field).toString() == change.before;
    });
    if (!isAsShown)
        return changedMeanwhile(candidate, false);
    QStringList assignments;
    QVariantList values;
    for (const ImportChange &change : candidate.changes) {
        customer[change.field] = change.after;
        assignments << importFields().at(change.field).column + u" = ?"_s;
        values << boundImportValue(change.field, change.after);
    }
    values << keyAfter(customer) << today << version << candidate.customer;
    return connection
        .execute(u"UPDATE 納品先 SET %1, 納品先名キー = ?, 更新日 = ?, 版 = ? WHERE 納品先ID = ?"_s.arg(
                     assignments.join(u", "_s)),
                 values)
        .status();
}

} // namespace registers
