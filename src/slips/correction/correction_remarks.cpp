#include "slips/correction/correction_remarks.h"

#include "book/printed_slip.h"
#include "book/tax.h"
#include "book/tax_terms.h"
#include "text/numbers.h"

#include <cmath>
#include <map>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

// Figures and names from elsewhere may be of hundreds of characters, which no sentence on a screen can hold.
QString figure(double amount)
{
    constexpr double longestWritten = 1e15;
    const bool isLong = std::isfinite(amount) && std::abs(amount) >= longestWritten;
    return isLong ? QString::number(amount, 'g', 6) : text::formatQuantity(amount);
}

QString shortened(const QString &name)
{
    constexpr qsizetype most = 30;
    return name.size() > most ? name.left(most) + u"…"_s : name;
}

struct Sums
{
    double goods = 0;
    double tax = 0;
    bool isTaxed = false;
    bool hasGoods = false;
};

Sums sumsOf(const std::vector<book::SlipLine> &lines)
{
    Sums sums;
    for (const book::SlipLine &line : lines) {
        (line.isTax() ? sums.tax : sums.goods) += line.amount;
        (line.isTax() ? sums.isTaxed : sums.hasGoods) = true;
    }
    return sums;
}

// The tax lines among \a lines together, by what they are the tax of.
std::map<QString, double> taxesIn(const std::vector<book::SlipLine> &lines, double slipRate)
{
    std::map<QString, double> taxes;
    for (const book::SlipLine &line : lines) {
        if (line.isTax())
            taxes[book::rateName(line.taxClass.value_or(book::GoodsTax::Standard),
                                 line.taxRate.value_or(slipRate))] += line.amount;
    }
    std::erase_if(taxes, [](const auto &tax) { return tax.second == 0; });
    return taxes;
}

double wantedRate(const std::vector<book::SlipLine> &taxes, double slipRate)
{
    return taxes.empty() ? slipRate : taxes.front().taxRate.value_or(slipRate);
}

// "10% 200 円、軽減8% 256 円"
QString taxesInWords(const std::map<QString, double> &taxes)
{
    QStringList words;
    for (const auto &[rate, tax] : taxes)
        words << rate + u' ' + figure(tax) + u" 円"_s;
    return words.isEmpty() ? u"0 円"_s : words.join(u'、');
}

} // namespace

bool isCounted(const book::SlipLine &line)
{
    return line.quantity && line.price && (*line.quantity != 0 || *line.price != 0);
}

QString amountRemark(const book::SlipLine &line)
{
    if (!isCounted(line))
        return {};
    const auto amount = book::lineAmount(*line.quantity, *line.price);
    if (!amount)
        return amount.error().text;
    if (*amount == line.amount)
        return {};
    return u"「%1」の数量×単価は %2 円ですが、金額は %3 円です。"_s.arg(shortened(line.product),
                                                                        figure(*amount), figure(line.amount));
}

QString taxRemark(const std::vector<book::SlipLine> &lines, double taxRate, book::TaxClass taxClass,
                  std::optional<bool> inclusive)
{
    const Sums sums = sumsOf(lines);
    // A slip of tax alone holds that of a whole period.
    if (!sums.isTaxed || !sums.hasGoods)
        return {};
    // Where nothing is known of it, a slip that has a tax line was closed as one whose prices do not include
    // it.
    if (inclusive.value_or(false))
        return u"この伝票は内税ですが、消費税の行（%1 円）があります。"_s.arg(figure(sums.tax));
    if (!book::taxIsAdded(taxClass, false))
        return u"この相手先の消費税は%1ですが、伝票に消費税の行（%2 円）があります。"_s.arg(nameOf(taxClass),
                                                                                            figure(sums.tax));
    const auto wanted = book::taxLinesFor(lines, taxRate, taxRate);
    if (!wanted)
        return wanted.error().text;
    const std::map<QString, double> booked = taxesIn(lines, taxRate);
    const std::map<QString, double> due = taxesIn(*wanted, taxRate);
    if (booked == due)
        return {};
    if (booked.size() > 1 || due.size() > 1)
        return u"消費税の行は %1 ですが、いまの明細では %2 になります。"_s.arg(taxesInWords(booked),
                                                                               taxesInWords(due));
    return u"消費税の行は %1 円ですが、いまの明細（%2 円、税率 %3 %）では %4 円になります。"_s.arg(
        figure(sums.tax), figure(sums.goods), QString::number(wantedRate(*wanted, taxRate), 'g', 6),
        figure(sumsOf(*wanted).tax));
}

std::optional<double> taxDue(const std::vector<book::SlipLine> &lines, double taxRate,
                             book::TaxClass taxClass, bool inclusive)
{
    if (sumsOf(lines).isTaxed || !book::taxIsAdded(taxClass, inclusive))
        return 0;
    const auto tax = book::taxOf(book::taxableGoods(lines, taxRate), book::Basis::Net);
    return tax ? std::optional(*tax) : std::nullopt;
}

QString leftOpenRemark(std::optional<double> due)
{
    const QString leftOpen = u"この伝票は閉じられていません。"_s;
    if (!due || *due == 0)
        return leftOpen;
    return leftOpen + u"消費税 %1 円が計上されていません。「伝票完了」で計上します。"_s.arg(figure(*due));
}

QString taxMissingRemark(std::optional<double> due)
{
    if (!due || *due == 0)
        return {};
    return u"外税の伝票ですが、消費税の行がありません。いまの明細では %1 円です。「伝票完了」で計上します。"
           "税込の伝票なら「内税」に直してください。"_s.arg(figure(*due));
}

QString lineInWords(const book::SlipLine &line)
{
    QStringList parts{(shortened(line.product) + u' ' + shortened(line.specification)).trimmed()};
    if (parts.front().isEmpty())
        parts.front() = u"(名称なし)"_s;
    if (line.quantity)
        parts << (u"数量 "_s + figure(*line.quantity) + u' ' + shortened(line.unit)).trimmed();
    return (parts << u"金額 %1 円"_s.arg(figure(line.amount))).join(u'　');
}

QString totalRemark(const std::vector<book::SlipLine> &lines)
{
    const Sums sums = sumsOf(lines);
    if (!std::isfinite(sums.goods + sums.tax))
        return u"合計は計算できません。"_s;
    const QString total = u"合計 %1 円"_s.arg(figure(sums.goods + sums.tax));
    return sums.isTaxed ? total + u"（うち消費税 %1 円）"_s.arg(figure(sums.tax)) : total;
}

} // namespace slips
