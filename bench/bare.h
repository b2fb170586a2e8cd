#pragma once

#include <QString>

#include <cstdint>

struct sqlite3;

namespace bench
{

/// The least that SQLite's C interface needs for what a screen does, with its own LIKE operator: what the
/// program's own times are held against.
class Bare
{
public:
    /// Opens \a fileName with the settings of the program's own connection. Ends the program on a failure:
    /// a measurement without it means nothing.
    explicit Bare(const QString &fileName);
    ~Bare();
    Bare(const Bare &) = delete;
    Bare &operator=(const Bare &) = delete;

    /// Header, customer's date, five lines and the tax line, each durable before the next.
    void saveSlip(std::int64_t customer);

    /// A slip's header alone. \return its key
    std::int64_t saveHeader(std::int64_t customer);
    /// A line of the slip, durable, and then its lines and their sum, all columns read.
    void enterLine(std::int64_t slip);

    /// A customer of a tax class, and its search key.
    std::int64_t customerOfClass(int taxClass);
    QString searchKeyOf(std::int64_t customer);

    /// The keys of the customers found by \a key, newest first. \return how many
    int searchCustomers(const QString &key);

    /// The keys of the customers with a category that are found by \a key, in the order of their keys; of all
    /// of them for an empty one. \return how many
    int findCustomers(const QString &key);

    /// The keys of the issued documents of which \a condition holds, the latest first. \return how many
    int findDocuments(const char *condition);

    /// The keys of the shipments of which both search keys hold what is given, the last one first. \return
    /// how many
    int findShipments(const QString &sender, const QString &consignee);

    /// A shipment, durable.
    void addShipment();

    /// All columns of all customers, printed into \a fileName with commas between.
    void writeCustomers(const QString &fileName);

    /// A new 担当者名 and date of change, durable.
    void saveCustomer(std::int64_t customer);

    /// The earlier sales lines of \a customer, all columns read. \return how many
    int previousSales(std::int64_t customer);

    /// What \a customer owes from before \a from, and its lines from then to \a to, all columns read and
    /// added up. \return how many
    int ledger(std::int64_t customer, const char *from, const char *to);

    /// The same, and the customer's row.
    int bill(std::int64_t customer, const char *from, const char *to);

    /// What the customers of a closing day owe from before \a from, bought and paid up to \a to, in one
    /// statement. \return how many rows
    int bills(int closingDay, const char *from, const char *to);

    /// The balances of all customers, in one statement. \return how many
    int balances();

    /// What was bought from and paid to all suppliers from \a from to \a to and before, in one statement.
    /// \return how many rows
    int purchases(const char *from, const char *to);

private:
    void run(const char *sql);
    void saveLine(std::int64_t slip);
    int count(const char *sql, const QString &text);

    sqlite3 *m_handle = nullptr;
};

} // namespace bench
