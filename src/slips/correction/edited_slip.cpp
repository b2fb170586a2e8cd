#include "slips/correction/edited_slip.h"

#include "book/slip_store.h"
#include "book/stored_values.h"
#include "book/tax.h"
#include "slips/correction/correction_remarks.h"
#include "slips/correction/slip_correction.h"
#include "ui/both_versions.h"
#include "ui/prompts.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

QString joined(QStringList sentences)
{
    sentences.removeAll(QString());
    return sentences.join(u'\n');
}

} // namespace

EditedSlip::EditedSlip(db::Connection &connection, const book::SlipKind &kind,
                       const book::CounterpartSearch &counterparts, QWidget *screen)
    : headers(connection)
    , lines(connection)
    , counterpart(connection)
    , m_connection(connection)
    , m_kind(kind)
    , m_counterparts(counterparts)
    , m_screen(screen)
{
    lines.setSaver([this] { return leaveLine(); });
}

book::CounterpartKey EditedSlip::counterpartKey() const
{
    return book::storedKey(headers.value(u"相手先ID"_s));
}

book::TaxClass EditedSlip::taxClass() const { return book::taxClassFrom(counterpart.text(u"消費税区分"_s)); }

base::Result<bool> EditedSlip::openLines()
{
    if (std::exchange(m_shown, id()) == id())
        return false;
    const base::Status opened = slips::openLines(lines, id());
    return opened ? base::Result<bool>(true) : opened.error();
}

base::Status EditedSlip::openCounterpart(qint64 key)
{
    return book::openCounterpart(counterpart, m_counterparts, key);
}

// --- What disagrees ---

TaxTerms EditedSlip::taxTerms() const
{
    return {headers.value(u"消費税率"_s).toDouble(), taxClass(), inclusiveIn(headers), isClosed(headers)};
}

// A deleted counterpart's class is not known.
std::optional<double> EditedSlip::taxDue() const
{
    if (!isTaxed(m_kind) || counterpart.isEmpty())
        return 0;
    return slips::taxDue(linesIn(lines), taxTerms().rate, taxClass(), includesTax(headers, taxClass()));
}

QString EditedSlip::taxDoubt(const Lines &shown) const
{
    if (!isTaxed(m_kind) || counterpart.isEmpty())
        return {};
    const TaxTerms terms = taxTerms();
    const QString wrong = taxRemark(shown, terms.rate, terms.taxClass, terms.inclusive);
    // Of older slips nobody knows whether their prices include it.
    const bool isKnown = terms.isClosed && terms.inclusive;
    if (!isKnown)
        return wrong;
    const QString missing =
        taxMissingRemark(slips::taxDue(shown, terms.rate, terms.taxClass, *terms.inclusive));
    return joined({wrong, missing});
}

void EditedSlip::acceptTax()
{
    m_acceptedTax = taxDoubt(linesIn(lines));
    m_agreed.clear();
}

// A slip that was found as it is, is left as it is without a word.
QString EditedSlip::newTaxDoubt(const Lines &shown) const
{
    const QString doubt = taxDoubt(shown);
    return doubt == m_acceptedTax ? QString() : doubt;
}

QString EditedSlip::lineDoubt() const
{
    return lines.currentRow() >= 0 ? amountRemark(lineIn(lines, lines.currentRow())) : QString();
}

// Of what is edited.
QString EditedSlip::doubt() const
{
    return joined({lines.isDirty() ? lineDoubt() : QString(), newTaxDoubt(linesIn(lines))});
}

QString EditedSlip::everyDoubt() const
{
    constexpr qsizetype mostLines = 5; // more make the question too high for the screen
    const Lines all = linesIn(lines);
    QStringList doubts;
    for (const book::SlipLine &line : all)
        doubts << amountRemark(line);
    doubts.removeAll(QString());
    if (doubts.size() > mostLines)
        doubts = doubts.first(mostLines) << u"ほか %1 行"_s.arg(doubts.size() - mostLines);
    return joined(doubts << taxDoubt(all));
}

QStringList EditedSlip::remarks() const
{
    QStringList remarks;
    if (isDirty())
        remarks << u"変更があります。行を移るか「更新」で保存します。"_s;
    if (lines.isNewRow())
        remarks << u"新しい明細は、入力して「更新」を押すと伝票に入ります。"_s;
    remarks << lineDoubt() << taxDoubt(linesIn(lines));
    if (isLeftOpen(headers))
        remarks << leftOpenRemark(taxDue());
    remarks.removeAll(QString());
    return remarks;
}

bool EditedSlip::canBeClosed() const
{
    if (counterpart.isEmpty())
        return false;
    const bool isUntaxed = isClosed(headers) && inclusiveIn(headers) && taxDue().value_or(0) != 0;
    return isLeftOpen(headers) || isUntaxed;
}

void EditedSlip::takeBack()
{
    lines.revert();
    headers.revert();
}

// Pending edits of another line are settled first.
base::Status EditedSlip::addLine() { return beginLine(lines, m_kind, id()); }

base::Status EditedSlip::close()
{
    if (const base::Status stored = storeKnowingly(); !stored)
        return stored;
    // Without the edits that were dropped there may be nothing to close.
    if (!canBeClosed())
        return {};
    const base::Status closed = closeLeftOpen(m_connection, headers, m_kind, taxClass());
    showAsStored();
    return closed;
}

bool EditedSlip::tell(const base::Status &status)
{
    if (!status && !status.error().text.isEmpty())
        ui::prompts::inform(m_screen, status.error().text);
    return bool(status);
}

// What another program has made of the slip is seen, and the edits stay over it; those of what is gone go.
void EditedSlip::showAsStored()
{
    const auto there = book::slipExists(m_connection, id());
    if (!there)
        return; // nothing can be read now
    if (!*there) {
        takeBack();
        (void)forgetLines();
        const int row = headers.currentRow();
        const int beside = row + 1 < headers.count() ? row + 1 : row - 1;
        const qint64 neighbour = beside >= 0 ? headers.keyAt(beside) : 0;
        if (tell(headers.requery()))
            (void)headers.moveToKey(neighbour);
        return;
    }
    headers.refresh();
    lines.refresh();
    const bool isGone = lines.currentRow() >= 0 && lines.value(u"ID"_s).isNull();
    if (isGone || !canTakeBack())
        tell(lines.requery());
}

} // namespace slips
