#include "shipping/gifts/gift_checks.h"

#include "shipping/gifts/earlier_gifts.h"
#include "shipping/slips/shipment_store.h"
#include "text/dates.h"
#include "text/numbers.h"

#include <QHash>

#include <tuple>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr int farAhead = 183;            // days
constexpr qsizetype longestName = 40;    // characters that a slip shows legibly
constexpr qsizetype longestAddress = 60; // the same
constexpr int oneSeason = 60;            // days in which nobody is sent the same gift twice

bool isBlank(const QString &text) { return text.trimmed().isEmpty(); }

QStringList strangeDays(const GiftOrder &order, const QDate &today)
{
    QStringList doubts;
    if (order.accepted < today)
        doubts << u"受付日が %1 です。"_s.arg(text::formatDate(order.accepted));
    for (const std::size_t row : tickedRows(order)) {
        const QDate delivery = termsOf(order, order.rows[row]).delivery;
        if (delivery.isValid() && delivery < today)
            doubts << u"%1: 配達予定日 %2 は過ぎています。"_s.arg(rowInWords(order, row),
                                                                  text::formatDate(delivery));
        else if (delivery.isValid() && order.accepted.daysTo(delivery) > farAhead)
            doubts << u"%1: 配達予定日 %2 は半年より先です。"_s.arg(rowInWords(order, row),
                                                                    text::formatDate(delivery));
    }
    return doubts;
}

// Slips shrink what is long, in the end to specks.
QStringList longTexts(const GiftOrder &order)
{
    QStringList doubts;
    for (const std::size_t row : tickedRows(order)) {
        const Party &to = order.rows[row].consignee;
        const std::tuple<QString, qsizetype, QString> texts[] = {{u"お届け先名"_s, longestName, to.name1},
                                                                 {u"名前２"_s, longestName, to.name2},
                                                                 {u"住所１"_s, longestAddress, to.address1},
                                                                 {u"住所２"_s, longestAddress, to.address2}};
        for (const auto &[heading, longest, text] : texts) {
            if (text.size() > longest)
                doubts << u"%1: %2が %3 文字あり、送り状では小さくて読めません。"_s
                              .arg(rowInWords(order, row), heading)
                              .arg(text.size());
        }
    }
    return doubts;
}

QStringList repeatsIn(const GiftOrder &order)
{
    QStringList doubts;
    QHash<QString, std::size_t> seen;
    for (const std::size_t row : tickedRows(order)) {
        const QString key = consigneeKey(order.rows[row].consignee);
        if (const auto first = seen.constFind(key); first != seen.constEnd())
            doubts << u"%1: %2 行目と同じお届け先です。"_s.arg(rowInWords(order, row)).arg(*first + 1);
        else
            seen.insert(key, row);
    }
    return doubts;
}

base::Result<QStringList> sentLately(db::Connection &connection, const GiftOrder &order)
{
    const auto sent =
        giftsOf(connection, {order.senderId, order.sender, order.category, order.accepted.addDays(-oneSeason),
                             order.accepted.addDays(oneSeason)});
    if (!sent)
        return sent.error();
    QHash<QString, QDate> days;
    for (const Shipment &shipment : *sent) {
        const QString key = consigneeKey(shipment.consignee);
        if (!days.contains(key)) // the newest comes first
            days.insert(key, shipment.accepted);
    }
    QStringList doubts;
    for (const std::size_t row : tickedRows(order)) {
        const auto day = days.constFind(consigneeKey(order.rows[row].consignee));
        if (day != days.constEnd())
            doubts << u"%1: %2 に同じ区分で発行しています。"_s.arg(rowInWords(order, row),
                                                                   text::formatDate(*day));
    }
    return doubts;
}

} // namespace

QString rowInWords(const GiftOrder &order, std::size_t row)
{
    const Party &consignee = order.rows[row].consignee;
    return u"%1 行目　%2"_s.arg(row + 1).arg((consignee.name1 + consignee.name2).left(20));
}

base::Status checkHead(db::Connection &connection, const GiftOrder &order)
{
    if (tickedRows(order).empty())
        return base::Error{u"発行するお届け先に印が付いていません。"_s};
    if (isBlank(order.sender.name1 + order.sender.name2))
        return base::Error{u"ご依頼主の名前が入力されていません。"_s};
    if (!order.accepted.isValid())
        return base::Error{u"受付日が入力されていません。"_s};
    Shipment head;
    head.category = order.category;
    head.consignee.zip = u"-"_s; // that of each line is looked at with the line
    return checkPrintable(connection, head);
}

std::vector<GiftFault> faultsOf(const GiftOrder &order)
{
    std::vector<GiftFault> faults;
    for (const std::size_t row : tickedRows(order)) {
        const Party &consignee = order.rows[row].consignee;
        if (isBlank(consignee.name1))
            faults.push_back({row, GiftColumn::Name1, u"お届け先名が入力されていません。"_s});
        if (isBlank(consignee.zip))
            faults.push_back({row, GiftColumn::Zip, u"郵便番号が入力されていません。"_s});
        if (isBlank(consignee.address1))
            faults.push_back({row, GiftColumn::Address1, u"住所が入力されていません。"_s});
        if (isCollected(order.method) && !termsOf(order, order.rows[row]).price)
            faults.push_back({row, GiftColumn::Price, u"コレクトで受け取る金額が入力されていません。"_s});
    }
    return faults;
}

QStringList priceDoubts(const GiftOrder &order)
{
    QStringList doubts;
    for (const std::size_t place : tickedRows(order)) {
        const GiftRow &row = order.rows[place];
        const GiftTerms terms = termsOf(order, row);
        const QString priced = row.has(GiftTerm::Price) ? row.pricedGoods : order.common.goods;
        if (terms.price && !priced.isEmpty() && !terms.goods.isEmpty() && terms.goods != priced)
            doubts << u"%1: 品名は「%2」ですが、価格 %3 円は「%4」のものです。"_s.arg(
                rowInWords(order, place), terms.goods.left(20), text::formatAmount(*terms.price),
                priced.left(20));
    }
    return doubts;
}

base::Result<QStringList> orderDoubts(db::Connection &connection, const GiftOrder &order, const QDate &today)
{
    const auto sent = sentLately(connection, order);
    if (!sent)
        return sent.error();
    return strangeDays(order, today) + longTexts(order) + priceDoubts(order) + repeatsIn(order) + *sent;
}

} // namespace shipping
