#pragma once

#include "base/exact_sum.h"
#include "book/recent_slips.h"

#include <vector>

// A customer at a glance: what was sold of late, what is owed, what was sent, what is bought as a rule.
namespace registers
{

struct GlanceShipment
{
    qint64 id = 0; // 発送ID
    QString date;  // 受付日, yyyy-MM-dd
    QString consignee;
    QString goods;
};

struct CustomerGlance
{
    std::vector<book::RecentSlip> slips;   // the newest first
    std::vector<book::UsualGoods> goods;   // the most usual first
    std::vector<GlanceShipment> shipments; // that the customer sent or got, the newest first
    base::ExactSum balance;                // right when all is read
};

/// Reads a glance piece by piece, each of which takes some milliseconds whatever the book's size: the clerk
/// goes on typing meanwhile. Nothing of the file is held between them.
class GlanceReader
{
public:
    GlanceReader(db::Connection &connection, qint64 customer)
        : m_connection(connection)
        , m_customer(customer)
    {}

    [[nodiscard]] qint64 customer() const { return m_customer; }
    [[nodiscard]] const CustomerGlance &glance() const { return m_glance; }
    /// Whether all is read.
    [[nodiscard]] bool isComplete() const { return m_step == Step::Done; }

    /// Reads the next piece, which is tried again when it failed.
    base::Status readOn();

private:
    enum class Step { Slips, Goods, Shipments, Span, Balance, Done };

    base::Status readSlips();
    base::Status readGoods();
    base::Status readShipments();
    base::Status findSpan();
    base::Status addToBalance();

    db::Connection &m_connection;
    qint64 m_customer;
    CustomerGlance m_glance;
    Step m_step = Step::Slips;
    // What is added up next: the slips of so many days from a day on; older ones before all others.
    QDate m_from;
    QDate m_last; // a later slip belongs to the last piece
    int m_days = 7;
    bool m_olderDone = false;
};

} // namespace registers
