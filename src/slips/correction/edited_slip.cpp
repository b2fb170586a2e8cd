#include "slips/correction/edited_slip.h"

#include "book/slip_store.h"
#include "book/stored_values.h"
#include "book/tax.h"
#include "slips/correction/correction_remarks.h"
#include "slips/correction/slip_correction.h"
#include "slips/correction/slip_doubts.h"
#include "text/dates.h"
#include "ui/prompts.h"

using namespace Qt::StringLiterals;

namespace slips
{

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
    const auto original = book::originalOf(m_connection, id());
    m_original = original ? *original : std::nullopt;
    if (!opened)
        return opened.error();
    return original ? base::Result<bool>(true) : original.error();
}

base::Status EditedSlip::openCounterpart()
{
    return book::openCounterpart(counterpart, m_counterparts, counterpartKey().value_or(0));
}

// --- What disagrees ---

// The class of a counterpart that was deleted is not known, but a slip with a tax line says by that what it
// was.
Figures EditedSlip::figures(std::vector<KeyedLine> all, std::optional<book::TaxClass> taxClass) const
{
    if (!taxClass && hasTaxLine(all))
        taxClass = book::TaxClass::OnDelivery;
    if (!isTaxed(m_kind) || !taxClass)
        return {std::move(all), std::nullopt};
    return {std::move(all), TaxTerms{headers.value(u"消費税率"_s).toDouble(), *taxClass, inclusiveIn(headers),
                                     isClosed(headers)}};
}

Figures EditedSlip::shown() const
{
    return figures(keyedLinesIn(lines), counterpart.isEmpty() ? std::nullopt : std::optional(taxClass()));
}

std::optional<double> EditedSlip::taxDue() const
{
    if (!isTaxed(m_kind) || counterpart.isEmpty())
        return 0;
    return slips::taxDue(linesIn(lines), headers.value(u"消費税率"_s).toDouble(), taxClass(),
                         includesTax(headers, taxClass()));
}

void EditedSlip::acceptTax()
{
    m_acceptedTax = taxDoubt(shown());
    m_agreed.clear();
}

QString EditedSlip::lineDoubt() const
{
    return lines.currentRow() >= 0 ? amountRemark(lineIn(lines, lines.currentRow())) : QString();
}

QStringList EditedSlip::remarks() const
{
    QStringList remarks;
    if (isDirty())
        remarks << u"変更があります。行を移るか「更新」で保存します。"_s;
    if (lines.isNewRow())
        remarks << u"新しい明細は、入力して「更新」を押すと伝票に入ります。"_s;
    remarks << lineDoubt() << taxDoubt(shown());
    if (m_original)
        remarks << u"伝票 %1（%2）の返品です。"_s.arg(m_original->number.left(30),
                                                      text::formatDate(m_original->date));
    if (isLeftOpen())
        remarks << leftOpenRemark(taxDue());
    remarks.removeAll(QString());
    return remarks;
}

bool EditedSlip::isLeftOpen() const { return slips::isLeftOpen(headers); }

bool EditedSlip::canBeClosed() const
{
    if (counterpart.isEmpty())
        return false;
    const bool isUntaxed = isClosed(headers) && inclusiveIn(headers) && taxDue().value_or(0) != 0;
    return isLeftOpen() || isUntaxed;
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
    const base::Status closed =
        closeLeftOpen(m_connection, headers, m_kind, taxClass(), [this] { return checkFigures(shown()); });
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
    tell(openCounterpart());
    lines.refresh();
    const bool isGone = lines.currentRow() >= 0 && lines.value(u"ID"_s).isNull();
    if (isGone || !canTakeBack())
        tell(lines.requery());
}

} // namespace slips
