#pragma once

#include "base/result.h"
#include "db/query.h"
#include "db/statement.h"

#include <chrono>
#include <deque>
#include <optional>
#include <unordered_set>
#include <vector>

namespace db
{

class Connection;

/// How much is read at one go.
struct Pace
{
    int firstRows = 512; // when a query is opened
    int rows = 20'000;   // at each further go
    std::chrono::microseconds time{4000};
};

/// The keys of a query's rows in their order, as far as they are known: one run without a gap, which grows at
/// either end until it is the whole. Nothing of the file is held from one reading to the next: each goes on
/// from the place of the outermost row, as that was read. A row that is in the file all the while and stays
/// in its place is found, and none is found twice; one that another program adds or moves meanwhile may be
/// missing until the query is opened anew.
class KeySet
{
public:
    enum class End { First, Last };

    /// Rows read at one end, nearest first.
    struct Found
    {
        std::vector<qint64> keys;
        std::vector<StoredValue> place; // of the outermost row looked at
        bool ended = false;             // there are no more
    };

    explicit KeySet(Connection &connection, Pace pace = {})
        : m_connection(&connection)
        , m_pace(pace)
    {}

    /// The rows at one end of \a query: two at least, unless there are no two. All of them where no index has
    /// the order: they have to be sorted before the first one is known.
    base::Status open(const Query &query, End end);
    /// The row \a key and those around it. \return whether it is one of the query's
    base::Result<bool> openAround(const Query &query, qint64 key);

    /// Reads on at \a end, as long and as far as the pace says or, \a whole, until there are no more.
    base::Result<Found> next(End end, bool whole = false);
    /// Makes the run longer by what was found at \a end.
    void take(End end, const Found &found);

    [[nodiscard]] bool hasEnd(End end) const { return edge(end).ended; }
    [[nodiscard]] bool isComplete() const { return m_first.ended && m_last.ended; }

    [[nodiscard]] int count() const { return static_cast<int>(m_keys.size()); }
    [[nodiscard]] qint64 at(int row) const { return m_keys[static_cast<std::size_t>(row)]; }
    /// -1 when the key is not in the run.
    [[nodiscard]] int rowOf(qint64 key) const;

    void append(qint64 key);
    void remove(int row);

private:
    // Where the run ends for the present.
    struct Edge
    {
        std::vector<StoredValue> place; // the outermost row's values of the order's terms; empty: no row yet
        bool ended = true;
    };

    // How a statement leaves rows out that do not meet the query's conditions.
    enum class Filter {
        InWhere, // they are not seen at all, and however long it takes to the next one
        Beside   // they are seen, so that reading can be broken off at any of them
    };

    struct Limits
    {
        std::size_t rows;
        std::optional<std::chrono::microseconds> time;
    };

    struct Stratum;

    [[nodiscard]] const Edge &edge(End end) const { return end == End::First ? m_first : m_last; }
    [[nodiscard]] std::vector<Stratum> strataBeyond(const Edge &edge, End towards) const;
    [[nodiscard]] QString statement(const Stratum &stratum, End towards, Filter filter) const;
    [[nodiscard]] std::vector<StoredValue> placeOf(const Statement &row) const;
    base::Result<Found> read(const Edge &from, End towards, Filter filter, const Limits &limits);
    base::Result<Found> readOn(End end, const Limits &limits);
    base::Result<bool> isWalkable() const;
    base::Status begin(const Query &query);
    base::Status readFirst(End end);
    [[nodiscard]] Limits firstLimits() const;
    void watchChanges();

    Connection *m_connection;
    Pace m_pace;
    Query m_query;
    QStringList m_terms;
    std::deque<qint64> m_keys;
    Edge m_first;
    Edge m_last;
    std::pair<qint64, qint64> m_state;                 // of the file when reading began
    std::optional<std::unordered_set<qint64>> m_known; // once the file was changed since then
};

} // namespace db
