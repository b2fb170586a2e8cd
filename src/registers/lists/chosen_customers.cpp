#include "registers/lists/chosen_customers.h"

#include "text/numbers.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

QString counted(std::size_t count) { return text::formatAmount(static_cast<double>(count)) + u" 件"_s; }

std::vector<int> selectedRows(const ui::Grid &grid)
{
    std::vector<int> rows;
    const QModelIndexList indexes = grid.selectionModel()->selectedRows();
    for (const QModelIndex &index : indexes)
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

std::vector<qint64> keysOf(const db::Recordset &customers, const std::vector<int> &rows)
{
    std::vector<qint64> keys;
    for (const int row : rows)
        keys.push_back(customers.keyAt(row));
    return keys;
}

std::vector<qint64> allKeys(const db::Recordset &customers)
{
    std::vector<qint64> keys;
    for (int row = 0; row < customers.count(); ++row)
        keys.push_back(customers.keyAt(row));
    return keys;
}

} // namespace

std::optional<ChosenCustomers> askWhichCustomers(QWidget *parent, const ui::Grid &grid,
                                                 db::Recordset &customers, const QString &verb, bool mayBeAll)
{
    if (const base::Status read = customers.readAll(); !read) {
        ui::prompts::inform(parent, read.error().text);
        return std::nullopt;
    }
    const std::vector<int> rows = selectedRows(grid);
    const bool fewer = rows.size() > 1;
    const std::vector<qint64> part = fewer ? keysOf(customers, rows) : allKeys(customers);
    if (!fewer && !mayBeAll)
        return ChosenCustomers{.keys = part};
    const QString what =
        (fewer ? u"選んだ納品先 %1"_s : u"一覧に出ている納品先 %1"_s).arg(counted(part.size()));
    const auto choice = ui::prompts::askHowToLeave(
        parent, u"%1だけを%2ますか？"_s.arg(what, verb),
        {.save = fewer ? u"選んだ納品先だけ(&S)"_s : u"一覧の納品先だけ(&S)"_s,
         .discard = mayBeAll ? u"すべての納品先(&A)"_s : u"一覧の納品先すべて(&A)"_s});
    if (choice == ui::prompts::Choice::Cancel)
        return std::nullopt;
    if (choice == ui::prompts::Choice::Save)
        return ChosenCustomers{.keys = part};
    return mayBeAll ? ChosenCustomers{.all = true, .keys = {}} : ChosenCustomers{.keys = allKeys(customers)};
}

void selectShownRow(ui::Grid &grid, const db::Recordset &customers)
{
    if (customers.currentRow() >= 0)
        grid.selectRow(customers.currentRow());
}

} // namespace registers
