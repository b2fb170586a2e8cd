#include "book/deduction.h"

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

struct Share
{
    QDate from; // the day of the purchase
    int percent;
};

// 所得税法等の一部を改正する法律（平成28年法律第15号）附則第52条・第53条, as the tax reform of 2026 stretched
// them.
const std::array<Share, 6> &shares()
{
    static const std::array<Share, 6> all{{{QDate(2031, 10, 1), 0},
                                           {QDate(2030, 10, 1), 30},
                                           {QDate(2028, 10, 1), 50},
                                           {QDate(2026, 10, 1), 70},
                                           {QDate(2023, 10, 1), 80},
                                           {QDate(), 100}}};
    return all;
}

constexpr qint64 yen = 10'000;     // in what amounts are counted in
constexpr qint64 percents = 100;   // in a whole
constexpr qint64 hundredths = 100; // of a percent, in which rates are counted

// count × factor / divisor, toward zero. What is left of the count by the divisor stays small enough to be
// multiplied.
qint64 scaled(qint64 count, qint64 factor, qint64 divisor)
{
    return count / divisor * factor + count % divisor * factor / divisor;
}

} // namespace

int deductiblePercent(const QDate &day)
{
    for (const Share &share : shares()) {
        if (!share.from.isValid() || day >= share.from)
            return share.percent;
    }
    return 100;
}

std::optional<double> deductibleTax(const base::ExactSum &amount, Basis basis, double rate, int percent)
{
    const double count = std::nearbyint(amount.value() * double(yen));
    const double counted = std::nearbyint(rate * double(hundredths));
    const bool isRate = rate >= 0 && rate <= 100 && std::abs(counted / double(hundredths) - rate) < 1e-9;
    if (std::isnan(count) || !isRate)
        return std::nullopt;
    const auto share = static_cast<qint64>(counted);
    const qint64 whole = percents * hundredths + (basis == Basis::Gross ? share : 0);
    return double(scaled(static_cast<qint64>(count), share * percent, whole * percents * yen));
}

QString deductionRemark(const SupplierRegistration &supplier, const QDate &day)
{
    const int percent = deductiblePercent(day);
    if (!day.isValid() || percent == 100 || !supplier.isMissingOn(day))
        return {};
    const QString who =
        supplier.registered == Registered::No ? u"登録事業者ではありません"_s : u"登録の期間外です"_s;
    return who + (percent == 0 ? u"（仕入税額控除なし）"_s : u"（経過措置 %1%）"_s.arg(percent));
}

} // namespace book
