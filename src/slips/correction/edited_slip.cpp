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

// Enter alone goes back: what is asked about may be a slip of the hand.
ui::prompts::Ways waysOut(bool isNewLine)
{
    return {isNewLine ? u"伝票に入れる(&S)"_s : u"このまま保存(&S)"_s, u"変更をやめる(&D)"_s, true};
}

base::Error stays() { return {.text = {}, .cancelled = true}; }

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

// A deleted counterpart's class is not known.
std::optional<double> EditedSlip::taxDue() const
{
    if (!isTaxed(m_kind) || counterpart.isEmpty())
        return 0;
    return slips::taxDue(linesIn(lines), headers.value(u"消費税率"_s).toDouble(), taxClass(),
                         includesTax(headers, taxClass()));
}

QString EditedSlip::taxDoubt() const
{
    if (counterpart.isEmpty())
        return {};
    const QString wrong =
        taxRemark(linesIn(lines), headers.value(u"消費税率"_s).toDouble(), taxClass(), inclusiveIn(headers));
    // Of older slips nobody knows whether their prices include it.
    const bool isKnown = isClosed(headers) && inclusiveIn(headers);
    return joined({wrong, isKnown ? taxMissingRemark(taxDue()) : QString()});
}

// A slip that was found as it is, is left as it is without a word.
QString EditedSlip::newTaxDoubt() const
{
    const QString doubt = taxDoubt();
    return doubt == m_acceptedTax ? QString() : doubt;
}

QString EditedSlip::lineDoubt() const
{
    return lines.currentRow() >= 0 ? amountRemark(lineIn(lines, lines.currentRow())) : QString();
}

QString EditedSlip::doubt() const
{
    return joined({lines.isDirty() ? lineDoubt() : QString(), newTaxDoubt()});
}

QStringList EditedSlip::remarks() const
{
    QStringList remarks;
    if (isDirty())
        remarks << u"変更があります。行を移るか「更新」で保存します。"_s;
    if (lines.isNewRow())
        remarks << u"新しい明細は、入力して「更新」を押すと伝票に入ります。"_s;
    remarks << lineDoubt() << taxDoubt();
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

// --- Saving ---

base::Status EditedSlip::saveWith(const std::function<base::Status()> &save)
{
    const base::Status done = ui::saveBesideOthers(m_screen, {&headers, &lines}, save);
    // A row is perhaps just being left; it is looked after when that is refused.
    if (!done && !done.error().cancelled)
        QMetaObject::invokeMethod(this, &EditedSlip::showAsStored, Qt::QueuedConnection);
    return done;
}

base::Status EditedSlip::store()
{
    return saveWith([this] { return saveCorrections(headers, lines, m_connection, m_kind); });
}

base::Status EditedSlip::storeKnowingly()
{
    if (!isDirty())
        return {};
    const QString remark = doubt();
    if (remark.isEmpty() && !lines.isNewRow())
        return store();
    const QString question = lines.isNewRow()
                                 ? u"新しい明細と変更は、まだ伝票に入っていません。入れますか。"_s
                                 : u"伝票の変更が保存されていません。このまま保存しますか。"_s;
    switch (ui::prompts::askHowToLeave(m_screen, question, waysOut(lines.isNewRow()), remark)) {
    case ui::prompts::Choice::Save:
        acceptTax();
        return store();
    case ui::prompts::Choice::Discard:
        takeBack();
        return {};
    case ui::prompts::Choice::Cancel:
        break;
    }
    return stays();
}

base::Status EditedSlip::leave()
{
    if (const base::Status stored = storeKnowingly(); !stored)
        return stored;
    const QString remark = newTaxDoubt();
    if (remark.isEmpty() ||
        ui::prompts::askCautiously(m_screen, u"消費税が合っていません。このままにしますか。"_s, remark))
        return {};
    return stays();
}

// The header is not left: its edits stay edits.
base::Status EditedSlip::leaveLine()
{
    const auto save = [this] { return saveWith([this] { return saveLine(headers, lines); }); };
    const QString remark = lineDoubt();
    if (remark.isEmpty() && !lines.isNewRow())
        return save();
    const QString question = lines.isNewRow() ? u"新しい明細はまだ伝票に入っていません。入れますか。"_s
                                              : u"明細の変更が保存されていません。このまま保存しますか。"_s;
    switch (ui::prompts::askHowToLeave(m_screen, question, waysOut(lines.isNewRow()), remark)) {
    case ui::prompts::Choice::Save:
        return save();
    case ui::prompts::Choice::Discard:
        lines.revert();
        return {};
    case ui::prompts::Choice::Cancel:
        break;
    }
    return stays();
}

bool EditedSlip::mayClose()
{
    if (isDirty() && doubt().isEmpty() && !lines.isNewRow()) {
        switch (ui::prompts::askToSave(m_screen, u"伝票の変更が保存されていません。保存しますか。"_s)) {
        case ui::prompts::Choice::Save:
            return tell(store());
        case ui::prompts::Choice::Discard:
            takeBack();
            return true;
        case ui::prompts::Choice::Cancel:
            return false;
        }
    }
    return tell(leave());
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
