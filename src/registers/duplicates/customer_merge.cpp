#include "registers/duplicates/customer_merge.h"

#include "book/movement_sums.h"
#include "book/slip_counts.h"
#include "book/slip_move.h"
#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"
#include "registers/counterpart.h"
#include "registers/customer.h"
#include "text/dates.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int slipsNamed = 3; // in a refusal

// All that a clerk has entered of a customer; key, search key and the day of the last change are the
// program's.
const QStringList &mergedColumns()
{
    static const QStringList columns{
        u"コード"_s, u"納品先名1"_s,  u"納品先名2"_s, u"納品先名3"_s, u"フリガナ"_s, u"敬称"_s,
        u"区分ID"_s, u"郵便番号"_s,   u"住所1"_s,     u"住所2"_s,     u"TEL1"_s,     u"TEL2"_s,
        u"FAX"_s,    u"メール"_s,     u"メモ"_s,      u"登録日"_s,    u"誕生日"_s,   u"担当者名"_s,
        u"締め日"_s, u"消費税区分"_s, u"元帳出力"_s};
    return columns;
}

base::Result<QVariantList> rowOf(db::Connection &connection, qint64 id)
{
    const auto found = connection.select(
        u"SELECT "_s + mergedColumns().join(u", "_s) + u", 版 FROM 納品先 WHERE 納品先ID = ?"_s, {id});
    if (!found)
        return found.error();
    if (found->isEmpty())
        return base::Error{
            .text =
                u"納品先（ID %1）はほかのプログラムで削除されています。一覧を作り直してください。"_s.arg(id),
            .gone = true};
    return found->rows.front();
}

const MergedField &fieldOf(const MergePlan &plan, const QString &column)
{
    return *std::find_if(plan.fields.begin(), plan.fields.end(),
                         [&](const MergedField &field) { return field.column == column; });
}

// Shipments belong by the customer's key, to whom they go and from whom they come. Those from before there
// was one belong by name and address.
struct Shipments
{
    QString where;
    QVariantList values;
};

// Those of which he is the \a party: "届先" by the key 納品先ID, "依頼主" by the key 依頼主ID.
Shipments shipmentsOf(const MergePlan &plan, const QString &party, const QString &key)
{
    // Never NULL, which nothing equals.
    const auto goneValue = [&plan](const QString &column) -> QString {
        return u""_s + fieldOf(plan, column).gone.toString();
    };
    const QString name1 = goneValue(u"納品先名1"_s);
    const QString address1 = goneValue(u"住所1"_s);
    Shipments shipments{key + u" = ?"_s, {plan.gone}};
    if (name1.isEmpty() || address1.isEmpty())
        return shipments;
    shipments.where += u" OR (%2 IS NULL AND %1名1 = ? AND COALESCE(%1名2, '') = ? AND %1住所1 = ? AND "
                       "COALESCE(%1住所2, '') = ?)"_s.arg(party, key);
    shipments.values += {name1, goneValue(u"納品先名2"_s), address1, goneValue(u"住所2"_s)};
    return shipments;
}

Shipments shipmentsTo(const MergePlan &plan) { return shipmentsOf(plan, u"届先"_s, u"納品先ID"_s); }

Shipments shipmentsFrom(const MergePlan &plan) { return shipmentsOf(plan, u"依頼主"_s, u"依頼主ID"_s); }

base::Result<qint64> countShipments(db::Connection &connection, const MergePlan &plan)
{
    const Shipments to = shipmentsTo(plan);
    const Shipments from = shipmentsFrom(plan);
    const auto count =
        connection.integers(u"SELECT COUNT(*) FROM 発送マスター WHERE "_s + to.where + u" OR "_s + from.where,
                            to.values + from.values);
    return count ? base::Result<qint64>(count->front()) : count.error();
}

base::Result<qint64> countSlipsOf(db::Connection &connection, qint64 customer)
{
    return book::countSlips(connection, {.kinds = book::kindsOf(book::Party::Customer),
                                         .counterpart = book::CounterpartKey(customer)});
}

// A slip that is being entered holds the customer's key on its screen.
base::Result<QString> openSlipsRefusal(db::Connection &connection, const MergePlan &plan)
{
    for (const qint64 customer : {plan.kept, plan.gone}) {
        const auto open = book::openSlipsOf(connection, book::Party::Customer, customer);
        if (!open)
            return open.error();
        if (!open->isEmpty())
            return u"納品先ID %1 には入力中（完了していない）の伝票 %2 があるため、統合できません。"
                   "その伝票を完了してから、もう一度実行してください。"_s.arg(
                       QString::number(customer), open->mid(0, slipsNamed).join(u"、"_s));
    }
    return QString();
}

// The tax of a slip is charged as its customer's class says: under another one it would be charged twice or
// never.
QString taxRefusal(const MergePlan &plan)
{
    const MergedField &tax = fieldOf(plan, u"消費税区分"_s);
    const int after = tax.after().toInt();
    const bool keepsKept = plan.keptSlips == 0 || tax.kept.toInt() == after;
    const bool keepsGone = plan.slips == 0 || tax.gone.toInt() == after;
    if (keepsKept && keepsGone)
        return {};
    return u"消費税区分が違い（%1 と %2）、伝票の消費税が変わってしまうため、統合できません。"
           "納品先登録で消費税区分をそろえてから、もう一度実行してください。"_s.arg(
               taxClassNames().value(tax.kept.toInt()), taxClassNames().value(tax.gone.toInt()));
}

// What a new row, or an import, starts with was chosen by nobody.
bool saysNothing(const QString &column, const QVariant &value)
{
    static const QStringList preset{u"締め日"_s, u"消費税区分"_s, u"元帳出力"_s};
    return MergedField::isEmpty(value) || (preset.contains(column) && value.toInt() == 0);
}

bool takesGone(const MergePlan &plan, const QString &column, const QVariant &kept, const QVariant &gone)
{
    if (column == u"消費税区分" && plan.keptSlips > 0) // by which its slips were taxed, an empty one as 0
        return false;
    return MergedField::isEmpty(kept) ? !MergedField::isEmpty(gone)
                                      : saysNothing(column, kept) && !saysNothing(column, gone);
}

base::Result<QString> refusalOf(db::Connection &connection, const MergePlan &plan)
{
    if (plan.kept == plan.gone)
        return u"同じ納品先どうしは統合できません。"_s;
    if (const QString tax = taxRefusal(plan); !tax.isEmpty())
        return tax;
    return openSlipsRefusal(connection, plan);
}

QVariantMap filledValues(const MergePlan &plan)
{
    QVariantMap values;
    for (const MergedField &field : plan.fields) {
        if (field.takesGone)
            values.insert(field.column, field.gone);
    }
    return values;
}

base::Status storeKept(db::Connection &connection, const MergePlan &plan, const QDate &today, qint64 version)
{
    const auto after = [&plan](const QString &column) { return fieldOf(plan, column).after().toString(); };
    QVariantMap values = filledValues(plan);
    values.insert(u"納品先名キー"_s, customerKey(after(u"納品先名1"_s), after(u"納品先名2"_s),
                                                 after(u"コード"_s), after(u"TEL1"_s), after(u"フリガナ"_s)));
    values.insert(u"更新日"_s, text::stored(today));
    values.insert(u"版"_s, version);
    const QString assignments = values.keys().join(u" = ?, "_s) + u" = ?"_s;
    return connection
        .execute(u"UPDATE 納品先 SET "_s + assignments + u" WHERE 納品先ID = ?"_s,
                 values.values() + QVariantList{plan.kept})
        .status();
}

// And the marks of who was addressed.
base::Status moveShipments(db::Connection &connection, const MergePlan &plan, qint64 version)
{
    const auto move = [&](const QString &table, const QString &key, const Shipments &which) {
        return connection
            .execute(u"UPDATE %1 SET %2 = ?, 版 = ? WHERE "_s.arg(table, key) + which.where,
                     QVariantList{plan.kept, version} + which.values)
            .status();
    };
    const Shipments addressed{u"納品先ID = ?"_s, {plan.gone}};
    if (const base::Status to = move(u"発送マスター"_s, u"納品先ID"_s, shipmentsTo(plan)); !to)
        return to;
    if (const base::Status from = move(u"発送マスター"_s, u"依頼主ID"_s, shipmentsFrom(plan)); !from)
        return from;
    return move(u"宛名印刷"_s, u"納品先ID"_s, addressed);
}

// A companion program changes values without raising 版; the slips and shipments were counted in the
// question.
bool isAsShown(const MergePlan &now, const MergePlan &plan)
{
    return now.keptVersion == plan.keptVersion && now.goneVersion == plan.goneVersion &&
           now.fields == plan.fields && now.slips == plan.slips && now.shipments == plan.shipments &&
           now.keptSlips == plan.keptSlips;
}

base::Result<base::ExactSum> balanceOf(db::Connection &connection, qint64 customer,
                                       const base::Progress &progress)
{
    base::ExactSum sum;
    const base::Status added = book::sumMovements(
        connection,
        {.kinds = book::balanceKindsOf(book::Party::Customer), .counterpart = book::CounterpartKey(customer)},
        {}, progress, [&sum](const book::MovementSum &part) { sum.add(part.inBalance()); });
    return added ? base::Result<base::ExactSum>(sum) : added.error();
}

base::Result<bool> owesAsShown(db::Connection &connection, const MergePlan &plan)
{
    if (!plan.balances)
        return true;
    const auto now = mergeBalances(connection, plan, base::unwatched);
    if (!now)
        return now.error();
    return now->kept.isSame(plan.balances->kept) && now->gone.isSame(plan.balances->gone);
}

base::Status merge(db::Connection &connection, const MergePlan &plan, const QDate &today)
{
    const auto now = planMerge(connection, plan.kept, plan.gone);
    if (!now)
        return now.error();
    if (!now->refusal.isEmpty())
        return base::Error{now->refusal};
    const auto owesTheSame = owesAsShown(connection, plan);
    if (!owesTheSame)
        return owesTheSame.error();
    if (!isAsShown(*now, plan) || !*owesTheSame)
        return base::Error{.text =
                               u"ほかのプログラムで納品先が変更されたため、統合しませんでした。いまの内容を"
                               "確かめてから、もう一度実行してください。"_s,
                           .changed = true};
    const auto version = db::nextVersion(connection);
    if (!version)
        return version.error();
    if (const auto moved = book::moveSlips(connection, book::Party::Customer, plan.gone, plan.kept, *version);
        !moved)
        return moved.error();
    if (const base::Status moved = moveShipments(connection, *now, *version); !moved)
        return moved;
    if (const base::Status stored = storeKept(connection, *now, today, *version); !stored)
        return stored;
    return connection.execute(u"DELETE FROM 納品先 WHERE 納品先ID = ?"_s, {plan.gone}).status();
}

} // namespace

base::Result<MergePlan> planMerge(db::Connection &connection, qint64 kept, qint64 gone)
{
    const auto keptRow = rowOf(connection, kept);
    const auto goneRow = rowOf(connection, gone);
    if (!keptRow || !goneRow)
        return keptRow ? goneRow.error() : keptRow.error();
    MergePlan plan{.kept = kept,
                   .gone = gone,
                   .keptVersion = keptRow->constLast(),
                   .goneVersion = goneRow->constLast(),
                   .fields = {},
                   .refusal = {}};
    const auto slips = countSlipsOf(connection, gone);
    const auto keptSlips = countSlipsOf(connection, kept);
    if (!slips || !keptSlips)
        return slips ? keptSlips.error() : slips.error();
    plan.slips = *slips;
    plan.keptSlips = *keptSlips;
    for (qsizetype place = 0; place < mergedColumns().size(); ++place) {
        const QString &column = mergedColumns().at(place);
        const QVariant &ofKept = keptRow->at(place);
        const QVariant &ofGone = goneRow->at(place);
        plan.fields.push_back({column, ofKept, ofGone, takesGone(plan, column, ofKept, ofGone)});
    }
    const auto shipments = countShipments(connection, plan);
    if (!shipments)
        return shipments.error();
    plan.shipments = *shipments;
    const auto refusal = refusalOf(connection, plan);
    if (!refusal)
        return refusal.error();
    plan.refusal = *refusal;
    return plan;
}

bool MergePlan::isTaxedTogether() const
{
    const auto taxClass = static_cast<book::TaxClass>(fieldOf(*this, u"消費税区分"_s).after().toInt());
    return slips > 0 && keptSlips > 0 && taxClass == book::TaxClass::OnBill;
}

double MergeBalances::after() const
{
    base::ExactSum sum = kept;
    sum.add(gone);
    return sum.value();
}

base::Result<MergeBalances> mergeBalances(db::Connection &connection, const MergePlan &plan,
                                          const base::Progress &progress)
{
    const auto kept = balanceOf(connection, plan.kept, progress);
    const auto gone = kept ? balanceOf(connection, plan.gone, progress) : kept;
    if (!gone)
        return gone.error();
    return MergeBalances{*kept, *gone};
}

base::Status mergeCustomers(db::Connection &connection, const MergePlan &plan, const QDate &today)
{
    return db::atomically(connection, [&] { return merge(connection, plan, today); });
}

} // namespace registers
