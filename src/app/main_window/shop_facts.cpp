#include "app/main_window/shop_facts.h"

#include "book/slip_counts.h"
#include "book/tax_rates.h"
#include "db/connection.h"

using namespace Qt::StringLiterals;

namespace app
{

base::Result<SupplierNames> supplierNames(db::Connection &connection, qint64 id)
{
    const auto rows = connection.select(
        u"SELECT 仕入先ID, 仕入先名1, 仕入先名2, 住所1, TEL1, 消費税区分, 仕入先名キー, コード "
        "FROM 仕入先 WHERE (仕入先ID = ?)"_s,
        {id});
    if (!rows)
        return rows.error();
    return SupplierNames{rows->value(0, u"仕入先名1"_s).toString(),
                         rows->value(0, u"仕入先名2"_s).toString()};
}

base::Result<StepsDone> firstStepsDone(db::Connection &connection, bool taxRateSet)
{
    const auto slips = book::hasSlips(connection, book::sale);
    if (!slips)
        return slips.error();
    StepsDone done{};
    done[static_cast<std::size_t>(FirstStep::TaxRate)] = taxRateSet;
    done[static_cast<std::size_t>(FirstStep::DeliveryNote)] = *slips;
    // A row whose name was never typed is none.
    const std::pair<FirstStep, const char16_t *> tables[] = {
        {FirstStep::Company, u"自社情報 WHERE 会社名1 > ''"},
        {FirstStep::Employees, u"社員 WHERE 社員名 > ''"},
        {FirstStep::Categories, u"登録区分 WHERE 区分名 > ''"},
        {FirstStep::Customers, u"納品先 WHERE 納品先名1 > ''"}};
    for (const auto &[step, rows] : tables) {
        const auto found =
            connection.integers(u"SELECT 1 FROM "_s + QString::fromUtf16(rows) + u" LIMIT 1"_s);
        if (!found)
            return found.error();
        done[static_cast<std::size_t>(step)] = !found->empty();
    }
    return done;
}

base::Result<std::optional<double>> rateToOffer(db::Connection &connection, double byHand, const QDate &today)
{
    const auto sold = book::hasSlips(connection, book::sale);
    const auto registered =
        connection.select(u"SELECT 会社ID FROM 自社情報 WHERE 登録番号 <> '' ORDER BY 会社ID"_s);
    const auto rates = book::TaxRates::read(connection);
    for (const base::Status &status : {sold.status(), registered.status(), rates.status()}) {
        if (!status)
            return status.error();
    }
    const auto rate = rates->on(today);
    const bool isToBeTold = !*sold && registered->isEmpty() && rate && *rate != byHand;
    return isToBeTold ? rate : std::nullopt;
}

} // namespace app
