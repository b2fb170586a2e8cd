#include "db/key_set.h"

#include "db/connection.h"
#include "db/errors.h"

#include <sqlite3.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int rowsBetweenLooksAtTheClock = 64;
constexpr int stepsBetweenLooksAtTheClock = 1000; // of SQLite's machine

bool isDescending(const QString &term) { return term.endsWith(" DESC"_L1); }

// A term without its direction.
QString valueOf(const QString &term)
{
    if (isDescending(term))
        return term.chopped(5);
    return term.endsWith(" ASC"_L1) ? term.chopped(4) : term;
}

// The direction in which a term runs towards that end.
bool descends(const QString &term, KeySet::End towards)
{
    return isDescending(term) != (towards == KeySet::End::First);
}

bool isNull(const StoredValue &value) { return sqlite3_value_type(value.get()) == SQLITE_NULL; }

// Breaks a statement of the connection off when its time is over.
class Deadline
{
public:
    Deadline(sqlite3 *handle, std::optional<std::chrono::microseconds> time)
        : m_handle(time ? handle : nullptr)
        , m_end(Clock::now() + time.value_or(std::chrono::microseconds(0)))
    {
        if (m_handle)
            sqlite3_progress_handler(m_handle, stepsBetweenLooksAtTheClock, &Deadline::isOver, this);
    }
    ~Deadline()
    {
        if (m_handle)
            sqlite3_progress_handler(m_handle, 0, nullptr, nullptr);
    }
    Deadline(const Deadline &) = delete;
    Deadline &operator=(const Deadline &) = delete;

private:
    static int isOver(void *self) { return Clock::now() >= static_cast<Deadline *>(self)->m_end ? 1 : 0; }

    sqlite3 *m_handle;
    Clock::time_point m_end;
};

} // namespace

// The rows that have the values of a place in the order's first terms and lie beyond it in the next one. All
// rows beyond a place are those of a few such strata, one after the other, and an index on the terms leads
// straight to the beginning of each, NULLs and both directions included.
struct KeySet::Stratum
{
    QString condition;
    std::vector<StoredValue> values;
    int alike = 0; // terms
};

std::vector<KeySet::Stratum> KeySet::strataBeyond(const Edge &edge, End towards) const
{
    if (edge.place.empty())
        return {Stratum()};
    std::vector<Stratum> strata;
    for (int term = int(m_terms.size()) - 1; term >= 0; --term) {
        Stratum stratum{{}, {}, term};
        for (int i = 0; i < term; ++i) {
            const StoredValue &value = edge.place[static_cast<std::size_t>(i)];
            stratum.condition += valueOf(m_terms[i]) + (isNull(value) ? u" IS NULL AND "_s : u" = ? AND "_s);
            if (!isNull(value))
                stratum.values.push_back(value);
        }
        const StoredValue &value = edge.place[static_cast<std::size_t>(term)];
        const QString name = valueOf(m_terms[term]);
        const bool down = descends(m_terms[term], towards);
        const auto add = [&](const QString &beyond, bool bound) {
            Stratum added = stratum;
            added.condition += name + beyond;
            if (bound)
                added.values.push_back(value);
            strata.push_back(std::move(added));
        };
        // NULL comes before every value.
        if (!down && isNull(value))
            add(u" IS NOT NULL"_s, false);
        else if (!isNull(value))
            add(down ? u" < ?"_s : u" > ?"_s, true);
        if (down && !isNull(value) && term < int(m_terms.size()) - 1)
            add(u" IS NULL"_s, false);
    }
    return strata;
}

// Columns: the key, whether the row is one of the query's, and the values of the terms.
QString KeySet::statement(const Stratum &stratum, End towards, Filter filter) const
{
    QStringList columns{m_query.key(), u"1"_s};
    QStringList conditions;
    if (!m_query.where.isEmpty() && filter == Filter::Beside)
        columns[1] = u"("_s + m_query.where + u") IS TRUE"_s;
    else if (!m_query.where.isEmpty())
        conditions << u"("_s + m_query.where + u")"_s;
    if (!stratum.condition.isEmpty())
        conditions << stratum.condition;
    QStringList order;
    for (int i = 0; i < m_terms.size(); ++i) {
        const QString value = valueOf(m_terms[i]);
        columns << value;
        if (i >= stratum.alike)
            order << value + (descends(m_terms[i], towards) ? u" DESC"_s : QString());
    }
    const QString where = conditions.isEmpty() ? QString() : u" WHERE "_s + conditions.join(u" AND "_s);
    return u"SELECT "_s + columns.join(u", "_s) + u" FROM "_s + m_query.from() + where + u" ORDER BY "_s +
           order.join(u", "_s);
}

std::vector<StoredValue> KeySet::placeOf(const Statement &row) const
{
    std::vector<StoredValue> place;
    for (int i = 0; i < m_terms.size(); ++i)
        place.push_back(row.value(i + 2));
    return place;
}

// Broken off by the deadline before a row was found, nothing was found, and nothing has ended.
base::Result<KeySet::Found> KeySet::read(const Edge &from, End towards, Filter filter, const Limits &limits)
{
    Found found;
    if (!m_connection->isOpen())
        return errorFromCode(SQLITE_CANTOPEN, {});
    const auto end = Clock::now() + limits.time.value_or(std::chrono::hours(24));
    const Deadline deadline(m_connection->handle(), filter == Filter::InWhere ? limits.time : std::nullopt);
    int looked = 0;
    for (const Stratum &stratum : strataBeyond(from, towards)) {
        Statement row(m_connection->handle(), statement(stratum, towards, filter));
        row.bind(m_query.values);
        for (const StoredValue &value : stratum.values)
            row.bind(value);
        while (row.next()) {
            if (row.integer(1) != 0)
                found.keys.push_back(row.integer(0));
            const bool isLate = ++looked % rowsBetweenLooksAtTheClock == 0 && Clock::now() >= end;
            if (isLate || found.keys.size() >= limits.rows) {
                found.place = placeOf(row);
                return found;
            }
        }
        if (row.code() == SQLITE_INTERRUPT)
            return Found();
        if (row.code() != SQLITE_DONE)
            return errorFrom(m_connection->handle());
    }
    found.ended = true;
    return found;
}

// Whether an index, or the table itself, has its rows in the order.
base::Result<bool> KeySet::isWalkable() const
{
    if (m_query.fromAllOver || !m_query.alongside.isEmpty())
        return false;
    Query all = m_query;
    all.where.clear();
    const auto plan = m_connection->select(u"EXPLAIN QUERY PLAN "_s + all.selecting(all.key()));
    if (!plan)
        return plan.error();
    return std::ranges::none_of(plan->rows, [](const QVariantList &row) {
        return row.constLast().toString().contains("TEMP B-TREE"_L1);
    });
}

// Opening may try twice.
KeySet::Limits KeySet::firstLimits() const
{
    return {static_cast<std::size_t>(m_pace.firstRows), m_pace.time / 2};
}

base::Status KeySet::begin(const Query &query)
{
    m_query = query;
    m_terms = query.fullOrder();
    m_keys.clear();
    m_known.reset();
    m_first = m_last = Edge();
    m_state = {-1, -1};
    const auto version = m_connection->integers(u"PRAGMA data_version"_s);
    if (!version)
        return version.error();
    m_state = {version->front(), sqlite3_total_changes64(m_connection->handle())};
    return {};
}

base::Status KeySet::open(const Query &query, End end)
{
    if (const base::Status begun = begin(query); !begun)
        return begun;
    const auto walkable = isWalkable();
    if (!walkable)
        return walkable.error();
    if (*walkable)
        return readFirst(end);
    const auto all = m_connection->integers(query.selecting(query.key()), query.values);
    if (!all)
        return all.error();
    m_keys.assign(all->cbegin(), all->cend());
    return {};
}

// An index on the conditions may lead to a few rows at once. When it does not, the rows are looked at one
// after the other in their order.
base::Status KeySet::readFirst(End end)
{
    (end == End::First ? m_last : m_first).ended = false;
    const End onwards = end == End::First ? End::Last : End::First;
    const auto found = read({}, onwards, Filter::InWhere, firstLimits());
    if (!found)
        return found.error();
    take(onwards, *found);
    while (count() < 2 && !hasEnd(onwards)) {
        const auto more = readOn(onwards, firstLimits());
        if (!more)
            return more.error();
        take(onwards, *more);
    }
    return {};
}

base::Result<bool> KeySet::openAround(const Query &query, qint64 key)
{
    if (const base::Status begun = begin(query); !begun)
        return begun.error();
    Statement row(m_connection->handle(),
                  statement({query.key() + u" = ?"_s, {}, 0}, End::Last, Filter::Beside));
    row.bind(query.values);
    row.bind(QVariant(key));
    if (!row.next())
        return row.code() == SQLITE_DONE ? base::Result<bool>(false) : errorFrom(m_connection->handle());
    if (row.integer(1) == 0)
        return false;
    m_keys.push_back(key);
    m_first = m_last = Edge{placeOf(row), false};
    for (const End end : {End::First, End::Last}) {
        const auto found = readOn(end, firstLimits());
        if (!found)
            return found.error();
        take(end, *found);
    }
    return true;
}

base::Result<KeySet::Found> KeySet::next(End end, bool whole)
{
    if (hasEnd(end))
        return Found{{}, {}, true};
    return readOn(end, whole ? Limits{SIZE_MAX, std::nullopt}
                             : Limits{static_cast<std::size_t>(m_pace.rows), m_pace.time});
}

base::Result<KeySet::Found> KeySet::readOn(End end, const Limits &limits)
{
    auto found = read(edge(end), end, Filter::Beside, limits);
    if (!found)
        return found;
    watchChanges();
    if (m_known)
        std::erase_if(found->keys, [this](qint64 key) { return !m_known->insert(key).second; });
    return found;
}

// A row that is changed may come by a second time, in its new place.
void KeySet::watchChanges()
{
    if (m_known)
        return;
    const auto version = m_connection->integers(u"PRAGMA data_version"_s);
    const qint64 own = sqlite3_total_changes64(m_connection->handle());
    if (!version || std::pair(version->front(), own) != m_state)
        m_known.emplace(m_keys.cbegin(), m_keys.cend());
}

void KeySet::take(End end, const Found &found)
{
    if (end == End::Last)
        m_keys.insert(m_keys.end(), found.keys.cbegin(), found.keys.cend());
    else
        m_keys.insert(m_keys.begin(), found.keys.crbegin(), found.keys.crend());
    Edge &reached = end == End::Last ? m_last : m_first;
    reached.ended = found.ended;
    if (!found.place.empty())
        reached.place = found.place;
}

int KeySet::rowOf(qint64 key) const
{
    const auto found = std::find(m_keys.cbegin(), m_keys.cend(), key);
    return found == m_keys.cend() ? -1 : static_cast<int>(found - m_keys.cbegin());
}

void KeySet::append(qint64 key)
{
    m_keys.push_back(key);
    if (m_known)
        m_known->insert(key);
}

void KeySet::remove(int row) { m_keys.erase(m_keys.begin() + row); }

} // namespace db
