#include "registers/glance/customer_glance.h"

#include "book/counterpart_name.h"

#include <QElapsedTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int slipsShown = 8;
constexpr int goodsShown = 6;
constexpr int shipmentsShown = 5;
constexpr int slipsLookedAt = 40; // for what is bought as a rule
// Milliseconds that a piece of the balance should take.
constexpr qint64 shortPiece = 4;
constexpr qint64 longPiece = 12;

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
        m_connection.select(u"SELECT 発送ID, 受付日, 届先名1, 届先名2, 品名 FROM 発送マスター "
                            "WHERE 納品先ID = ? OR 依頼主ID = ? ORDER BY 受付日 DESC, 発送ID DESC LIMIT ?"_s,
                            {m_customer, m_customer, shipmentsShown});
    if (!found)
        return found.error();
    m_glance.shipments.clear();
    for (const QVariantList &row : found->rows)
        m_glance.shipments.push_back({row.at(0).toLongLong(), row.at(1).toString(),
                                      book::counterpartName(row.at(2).toString(), row.at(3).toString()),
                                      row.at(4).toString()});
    return {};
}

base::Status GlanceReader::findSpan()
{
    const auto oldest = book::oldestDay(m_connection, book::Party::Customer, m_customer);
    if (!oldest)
        return oldest.error();
    m_from = *oldest;
    m_last = m_from;
    for (const book::RecentSlip &slip : m_glance.slips)
        m_last = std::max(m_last, QDate::fromString(slip.date, Qt::ISODate));
    return {};
}

// A customer may have ten slips in ten years or a thousand a day: the pieces grow and shrink with the time
// they take.
base::Status GlanceReader::addToBalance()
{
    QElapsedTimer watch;
    watch.start();
    const QDate next = m_from.addDays(m_days);
    const bool isOlder = m_from.isValid() && !m_olderDone;
    const bool isLast = !isOlder && (!m_from.isValid() || next > m_last);
    const auto part =
        book::balancePart(m_connection, book::Party::Customer, m_customer, isOlder ? QDate() : m_from,
                          isOlder  ? m_from
                          : isLast ? QDate()
                                   : next);
    if (!part)
        return part.error();
    m_glance.balance.add(*part);
    m_olderDone = true;
    if (isLast)
        m_step = Step::Done;
    if (isOlder)
        return {};
    m_from = next;
    m_days = watch.elapsed() < shortPiece  ? std::min(2 * m_days, 3650)
             : watch.elapsed() > longPiece ? std::max(m_days / 2, 1)
                                           : m_days;
    return {};
}

} // namespace registers
