#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QDate>
#include <QHash>
#include <QStringList>

#include <optional>
#include <vector>

namespace db
{
class Connection;
}

namespace reports
{

/// A customer as payments are matched with it. Amounts are yen.
struct PayingCustomer
{
    qint64 id = 0;
    QString code{};
    QString name; // in one line
    QString reading{};
    double billed = 0;  // what is open of the last bill: its amount without what came in since
    double balance = 0; // what is open altogether
};

/// The customers of a closing day, or of all, with what they owe, and how their payers are called.
class PayingCustomers
{
public:
    PayingCustomers() = default;

    /// As they stand at the end of \a today. \a closingDay: 0 to 30; empty for all.
    static base::Result<PayingCustomers> read(db::Connection &connection, std::optional<int> closingDay,
                                              const QDate &today, const base::Progress &progress);

    [[nodiscard]] const std::vector<PayingCustomer> &all() const { return m_all; }
    /// Null where there is none.
    [[nodiscard]] const PayingCustomer *with(qint64 id) const;

    // By what a file says of the payer; keys as payerKey() makes them, the customers' places in all().
    using Places = std::vector<std::size_t>;
    [[nodiscard]] Places named(const QString &key) const { return m_byKey.value(key); }
    /// Whose receipts bore that name before.
    [[nodiscard]] Places known(const QString &key) const { return m_known.value(key); }
    [[nodiscard]] Places coded(const QString &code) const { return m_byCode.value(code); }
    /// Whose name begins with \a key, or the other way round: banks cut long names.
    [[nodiscard]] Places beginning(const QString &key) const;
    /// Who owes \a amount, on the last bill or altogether.
    [[nodiscard]] Places owing(double amount) const { return m_owing.value(amount); }

    /// Those that hold \a typed in name, reading or code, or have it as their ID, at most \a most of them.
    [[nodiscard]] Places found(const QString &typed, std::size_t most) const;

private:
    base::Status readCustomers(db::Connection &connection, std::optional<int> closingDay);
    base::Status readDebts(db::Connection &connection, const QDate &today, const base::Progress &progress);
    base::Status readKnown(db::Connection &connection);
    void addKeys(std::size_t place, const QStringList &names);

    std::vector<PayingCustomer> m_all;
    std::vector<int> m_closingDays; // of them
    QHash<qint64, std::size_t> m_byId;
    QHash<QString, Places> m_byKey;
    QStringList m_keys; // in order
    QHash<QString, Places> m_known;
    QHash<QString, Places> m_byCode;
    QHash<double, Places> m_owing; // by the amount, yen
};

} // namespace reports
