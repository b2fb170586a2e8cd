#include "slips/correction/slip_doubts.h"

#include "slips/correction/correction_remarks.h"

using namespace Qt::StringLiterals;

namespace slips
{

QString joined(QStringList sentences)
{
    sentences.removeAll(QString());
    return sentences.join(u'\n');
}

QString taxDoubt(const Figures &figures)
{
    if (!figures.terms)
        return {};
    const TaxTerms &terms = *figures.terms;
    const std::vector<book::SlipLine> lines = withoutKeys(figures.lines);
    const QString wrong = taxRemark(lines, terms.rate, terms.taxClass, terms.inclusive);
    // Of older slips nobody knows whether their prices include it.
    const bool isKnown = terms.isClosed && terms.inclusive;
    if (!isKnown)
        return wrong;
    return joined({wrong, taxMissingRemark(taxDue(lines, terms.rate, terms.taxClass, *terms.inclusive))});
}

QString everyDoubt(const Figures &figures)
{
    constexpr qsizetype mostLines = 5; // more make the question too high for the screen
    QStringList doubts;
    for (const KeyedLine &line : figures.lines)
        doubts << amountRemark(line.line);
    doubts.removeAll(QString());
    if (doubts.size() > mostLines)
        doubts = doubts.first(mostLines) << u"ほか %1 行"_s.arg(doubts.size() - mostLines);
    return joined(doubts << taxDoubt(figures));
}

QString mendedRemark(const Figures &figures, const Recalculation &what)
{
    const auto then = recalculated(figures.lines, what);
    return then && *then != figures.lines
               ? u"計算し直すと、%1になります。"_s.arg(totalRemark(withoutKeys(*then)))
               : QString();
}

} // namespace slips
