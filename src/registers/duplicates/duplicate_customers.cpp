#include "registers/duplicates/duplicate_customers.h"

#include "book/counterpart_name.h"
#include "db/connection.h"
#include "registers/duplicates/person_folding.h"
#include "registers/lists/customer_deletion.h"

#include <QHash>

#include <algorithm>
#include <limits>
#include <numeric>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr int blockSize = 2000; // customers read at a time

// Sets of customers that are joined one by one; each is named by its first member.
class Sets
{
public:
    std::size_t add()
    {
        m_above.push_back(m_above.size());
        return m_above.size() - 1;
    }
    std::size_t of(std::size_t member)
    {
        while (m_above[member] != member)
            member = m_above[member] = m_above[m_above[member]];
        return member;
    }
    void join(std::size_t one, std::size_t other)
    {
        const std::size_t first = of(one);
        const std::size_t second = of(other);
        m_above[std::max(first, second)] = std::min(first, second);
    }

private:
    std::vector<std::size_t> m_above;
};

class Search
{
public:
    void take(const QVariantList &row)
    {
        const auto text = [&row](int column) { return row.at(column).toString(); };
        const std::size_t member = m_sets.add();
        m_customers.push_back({.id = row.front().toLongLong(),
                               .code = text(1),
                               .name = book::counterpartName(text(2), text(3)),
                               .address = text(4) + text(5),
                               .phone = text(6),
                               .changed = text(8)});
        m_samePhone.push_back(false);
        m_sameName.push_back(false);
        const QString name = foldedPerson(text(2));
        const QString address = foldedAddress(text(4) + text(5));
        if (!name.isEmpty() && !address.isEmpty())
            joinByName(name + u'\n' + address + u'\n', foldedPerson(text(3)), member);
        for (const int phone : {6, 7}) {
            if (const QString digits = foldedPhone(text(phone)); !digits.isEmpty())
                joinBy(digits, member, m_samePhone);
        }
    }

    std::vector<DuplicateGroup> groups(const QHash<qint64, int> &slips)
    {
        QHash<std::size_t, std::size_t> places;
        std::vector<DuplicateGroup> found;
        for (std::size_t member = 0; member < m_customers.size(); ++member) {
            if (!m_samePhone[member] && !m_sameName[member])
                continue;
            const std::size_t set = m_sets.of(member);
            if (!places.contains(set)) {
                places.insert(set, found.size());
                found.emplace_back();
            }
            DuplicateGroup &group = found[places.value(set)];
            group.samePhone = group.samePhone || m_samePhone[member];
            group.sameName = group.sameName || m_sameName[member];
            group.customers.push_back(std::move(m_customers[member]));
            group.customers.back().slips = slips.value(group.customers.back().id);
        }
        for (DuplicateGroup &group : found)
            std::stable_sort(group.customers.begin(), group.customers.end(),
                             [](const auto &a, const auto &b) { return a.slips > b.slips; });
        return found;
    }

private:
    // Two departments of one house are two customers; whoever names none may be any of them.
    void joinByName(const QString &nameAndAddress, const QString &department, std::size_t member)
    {
        const QString anyDepartment = nameAndAddress + u'*';
        joinBy(nameAndAddress + department, member, m_sameName);
        if (department.isEmpty())
            joinBy(anyDepartment, member, m_sameName);
        else if (m_firstWith.contains(nameAndAddress))
            joinBy(nameAndAddress, member, m_sameName);
        if (!m_firstWith.contains(anyDepartment))
            m_firstWith.insert(anyDepartment, member);
    }

    void joinBy(const QString &key, std::size_t member, std::vector<bool> &why)
    {
        const auto first = m_firstWith.constFind(key);
        if (first == m_firstWith.cend()) {
            m_firstWith.insert(key, member);
        } else if (*first != member) {
            m_sets.join(*first, member);
            why[*first] = why[member] = true;
        }
    }

    std::vector<ProbableDuplicate> m_customers;
    std::vector<bool> m_samePhone, m_sameName; // as somebody before or behind
    QHash<QString, std::size_t> m_firstWith;
    Sets m_sets;
};

} // namespace

base::Result<std::vector<DuplicateGroup>> duplicateCustomers(db::Connection &connection,
                                                             const base::Progress &progress)
{
    const auto count = connection.integers(u"SELECT COUNT(*) FROM 納品先"_s);
    const auto slips = slipsOfCustomers(connection);
    if (!count || !slips)
        return count ? slips.error() : count.error();
    Search search;
    qint64 done = 0;
    for (qint64 lastKey = std::numeric_limits<qint64>::min();;) {
        const auto block = connection.select(
            u"SELECT 納品先ID, コード, 納品先名1, 納品先名2, 住所1, 住所2, TEL1, TEL2, 更新日 "
            "FROM 納品先 WHERE 納品先ID > ? ORDER BY 納品先ID LIMIT ?"_s,
            {lastKey, blockSize});
        if (!block)
            return block.error();
        if (block->isEmpty())
            return search.groups(*slips);
        for (const QVariantList &row : block->rows)
            search.take(row);
        lastKey = block->rows.back().front().toLongLong();
        done += block->count();
        if (!progress(done, count->front()))
            return base::cancelled();
    }
}

} // namespace registers
