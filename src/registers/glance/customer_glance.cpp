#include "registers/glance/customer_glance.h"

#include "book/counterpart_name.h"
#include "book/movement_sums.h"
#include "book/slip_counts.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int slipsShown = 8;
constexpr int goodsShown = 6;
constexpr int shipmentsShown = 5;
constexpr int slipsLookedAt = 40; // for what is bought as a rule
constexpr qint64 slipsAPiece = 1000;

std::vector<book::SlipKind> balanceKinds() { return book::balanceKindsOf(book::Party::Customer); }

} // namespace

base::Status GlanceReader::readOn()
{
    base::Status read;
    const Step step = m_step;
    switch (step) {
    case Step::Slips:
        read = readSlips();
        break;
    case Step::Goods:
        read = readGoods();
        break;
    case Step::Shipments:
        read = readShipments();
        break;
    case Step::Span:
        read = findSpan();
        break;
    case Step::Balance:
        return addToBalance();
    case Step::Done:
        return {};
    }
    if (read)
        m_step = static_cast<Step>(static_cast<int>(step) + 1);
    return read;
}

base::Status GlanceReader::readSlips()
{
    const auto slips = book::recentSlips(m_connection, book::Party::Customer, m_customer, slipsShown);
    if (slips)
        m_glance.slips = *slips;
    return slips.status();
}

base::Status GlanceReader::readGoods()
{
    const auto goods = book::usualGoods(m_connection, book::sale, m_customer, slipsLookedAt, goodsShown);
    if (goods)
        m_glance.goods = *goods;
    return goods.status();
}

base::Status GlanceReader::readShipments()
{
    const auto found =
        m_connection.select(u"SELECT 受付日, 届先名1, 届先名2, 品名 FROM 発送マスター WHERE 納品先ID = ? "
                            "ORDER BY 受付日 DESC, 発送ID DESC LIMIT ?"_s,
                            {m_customer, shipmentsShown});
    if (!found)
        return found.error();
    m_glance.shipments.clear();
    for (const QVariantList &row : found->rows)
        m_glance.shipments.push_back({row.at(0).toString(),
                                      book::counterpartName(row.at(1).toString(), row.at(2).toString()),
                                      row.at(3).toString()});
    return {};
}

// So many days a piece as have some thousand slips on the average.
base::Status GlanceReader::findSpan()
{
    const auto oldest = book::oldestDay(m_connection, book::Party::Customer, m_customer);
    const auto count = book::countSlips(
        m_connection, {.kinds = balanceKinds(), .counterpart = book::CounterpartKey(m_customer)});
    const auto newest = book::recentSlips(m_connection, book::Party::Customer, m_customer, 1);
    if (!oldest || !count || !newest)
        return !oldest ? oldest.status() : !count ? count.status() : newest.status();
    m_from = *oldest;
    m_last = newest->empty() ? QDate() : QDate::fromString(newest->front().date, Qt::ISODate);
    const qint64 days = m_from.isValid() && m_last.isValid() ? m_from.daysTo(m_last) + 1 : 1;
    m_days = static_cast<int>(std::max<qint64>(1, days * slipsAPiece / std::max<qint64>(*count, 1)));
    return {};
}

base::Status GlanceReader::addToBalance()
{
    const bool isLast = !m_from.isValid() || !m_last.isValid() || m_from.addDays(m_days) > m_last;
    book::Days days;
    if (m_from.isValid() && !m_olderDone)
        days = book::Days::before(m_from);
    else if (m_from.isValid())
        days = {m_from, isLast ? QDate() : m_from.addDays(m_days - 1)};
    base::ExactSum sum;
    const base::Status added = book::sumMovements(
        m_connection,
        {.kinds = balanceKinds(), .counterpart = book::CounterpartKey(m_customer), .days = days}, {},
        base::unwatched, [&sum](const book::MovementSum &part) { sum.add(part.inBalance()); });
    if (!added)
        return added;
    m_glance.balance.add(sum);
    if (m_from.isValid() && !std::exchange(m_olderDone, true))
        return {};
    m_from = m_from.addDays(m_days);
    if (isLast)
        m_step = Step::Done;
    return {};
}

} // namespace registers
