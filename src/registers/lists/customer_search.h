#pragma once

#include "base/result.h"
#include "masters/name_lists.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace db
{
class Connection;
class Recordset;
} // namespace db

// The selection of customers by one column and one condition. Only customers whose category is registered are
// ever found.
namespace registers
{

/// One column and what is wanted of it.
struct CustomerTerm
{
    int item = -1; // the column, by its place in customerSearchItems(); -1: none is chosen
    QString condition{};
    bool exact = false;
    QString until{}; // of a range of days that begins with the condition; empty: it is no range
};

/// What is searched for, as the search boxes hold it.
struct CustomerQuery
{
    int item = -1;
    QString condition{};
    bool exact = false;
    int order = -1; // by its place in customerSearchOrders(); -1: that of the column
    QString until{};
    std::vector<CustomerTerm> further{}; // which must all be met as well; those without a column do not count

    [[nodiscard]] CustomerTerm first() const { return {item, condition, exact, until}; }
};

/// The columns that can be searched. The first one, "すべて選択", selects every customer without a condition.
QStringList customerSearchItems();
inline constexpr int everyCustomerItem = 0;

/// What a condition on \a item looks like, to be shown in the empty box ("例 2026/04/01").
QString customerSearchHint(int item);
/// The item whose numbers are those of the categories.
inline constexpr int categoryItem = 1;

/// Whether \a item is a day that can be searched from one to another.
bool isSearchedByDays(int item);

/// The numbers that \a item can have, with the names by which a person knows them; empty for other items.
std::vector<masters::Entry> customerSearchNames(int item, const std::vector<masters::Entry> &categories);

/// The orders of the customers found; the last one, "検索項目昇順", is by the column searched.
QStringList customerSearchOrders();

enum class QueryLack { Item, Condition, Day };

/// What keeps \a query from being carried out; nothing when it can be.
std::optional<QueryLack> lackOf(const CustomerQuery &query);
/// The same of one that is further: without anything it is none.
std::optional<QueryLack> lackOfFurther(const CustomerTerm &term);

/// Opens the customers found by a query that lacks nothing. "%" and "_" in a condition that need not match
/// exactly stand for any characters; upper and lower case, full and half width and the two kana are equal. A
/// date is matched by its text yyyy/MM/dd, or exactly as a date, or by the days from one to another, where
/// either may be left out and may be a month or a year. Numbers that stand for something are known by its
/// name too. A condition that is no number or date where one is needed finds nothing. The columns are those
/// of 納品先.
base::Status openCustomersFound(db::Recordset &customers, const CustomerQuery &query);

} // namespace registers
