#include "shipping/gifts/frmKuroneko5.h"
#include "shipping/gifts/gift_checks.h"
#include "shipping/gifts/gift_draft.h"
#include "shipping/gifts/gift_sheet_print.h"
#include "shipping/slips/label_place_box.h"
#include "shipping/slips/slip_document.h"
#include "ui/cell_delegate.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_frmKuroneko5.h"
#include "workspace/workspace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

// From the lines that are ticked to their slips.
namespace shipping
{

namespace
{

constexpr qsizetype mostNamed = 10; // in one message

QString firstOf(const QStringList &sentences)
{
    return sentences.mid(0, mostNamed).join(u'\n') +
           (sentences.size() > mostNamed ? u"\nほか %1 件"_s.arg(sentences.size() - mostNamed) : QString());
}

std::vector<Shipment> shipmentsIn(const GiftOrder &order, const std::vector<std::size_t> &rows)
{
    std::vector<Shipment> shipments;
    for (const std::size_t row : rows)
        shipments.push_back(shipmentOf(order, order.rows[row]));
    return shipments;
}

} // namespace

bool frmKuroneko5::settle()
{
    if (!m_cells->settle())
        return false;
    const Head head = readHead();
    takeHead();
    if (head.status)
        return true;
    head.box->setFocus();
    return tell(head.status);
}

bool frmKuroneko5::checkHeadBoxes()
{
    const base::Status checked = checkHead(workspace().connection, m_rows.order());
    if (checked)
        return true;
    if (m_rows.order().sender.name1.isEmpty())
        m_ui->txtName1->setFocus();
    else
        m_ui->dbcKubun->setFocus();
    ui::prompts::inform(this, checked.error().text, QString::fromUtf16(ui::prompts::information),
                        ui::prompts::Icon::Information, remarkOn(checked.error()));
    return false;
}

QString frmKuroneko5::remarkOn(const base::Error &fault) const
{
    if (!fault.text.startsWith(u"発送区分"_s))
        return {};
    if (m_ui->dbcKubun->count() == 0)
        return u"発送区分が一つも登録されていません。「新規登録」「発送区分登録」で登録してください。"_s;
    return m_rows.order().category.isEmpty() ? u"発送区分を選んでください。"_s : QString();
}

bool frmKuroneko5::checkRows()
{
    const std::vector<GiftFault> faults = faultsOf(m_rows.order());
    if (faults.empty())
        return true;
    QStringList sentences;
    for (const GiftFault &fault : faults) {
        sentences << rowInWords(m_rows.order(), fault.row) + u": "_s + fault.text;
        m_rows.setState(fault.row, fault.text);
    }
    ui::prompts::inform(this, u"発行できないお届け先があります。直してから、もう一度発行してください。"_s,
                        QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Exclamation,
                        firstOf(sentences));
    goTo(int(faults.front().row), faults.front().column);
    return false;
}

bool frmKuroneko5::settleDoubts()
{
    const auto doubts = orderDoubts(workspace().connection, m_rows.order(), workspace().today());
    if (!tell(doubts.status()))
        return false;
    return doubts->isEmpty() ||
           ui::prompts::askCautiously(this, u"次の点を確かめてください。このまま発行しますか。"_s,
                                      firstOf(*doubts));
}

void frmKuroneko5::preview()
{
    const int row = m_ui->DataGrid1->currentIndex().row();
    if (!settle() || row < 0 || row >= int(m_rows.order().rows.size()))
        return;
    m_printer.preview(this, shipmentOf(m_rows.order(), m_rows.order().rows[std::size_t(row)]));
}

// For the customer to look through and to sign, before the slips are printed or after.
void frmKuroneko5::showSheet()
{
    if (!settle() || !takeOver(m_rows.order().sender, m_rows.order().senderId))
        return;
    std::vector<std::size_t> rows = tickedRows(m_rows.order());
    for (std::size_t row = 0; rows.empty() && row < m_rows.order().rows.size(); ++row) {
        if (m_rows.order().rows[row].issued)
            rows.push_back(row);
    }
    if (rows.empty())
        ui::prompts::inform(this, u"承り票に載せるお届け先に印が付いていません。"_s);
    else
        showGiftSheet(workspace(), this, shipmentsIn(m_rows.order(), rows));
}

void frmKuroneko5::issue()
{
    if (!settle())
        return;
    m_rows.clearStates();
    if (!takeOver(m_rows.order().sender, m_rows.order().senderId) || !checkHeadBoxes() || !checkRows() ||
        !settleDoubts())
        return;
    const std::vector<std::size_t> rows = tickedRows(m_rows.order());
    const std::vector<Shipment> shipments = shipmentsIn(m_rows.order(), rows);
    if (!m_printer.prepare(this, shipments))
        return;
    const SlipRunOutcome outcome =
        ui::runWithProgress(this, u"送り状を発行しています。"_s, [&](const base::Progress &progress) {
            return issueAll(m_printer, shipments, Record::Add, progress);
        });
    takeOutcome(outcome, rows);
    tellOutcome(outcome, rows.size());
}

// What its form has no place for.
QString frmKuroneko5::byHand(const Shipment &shipment) const
{
    const QStringList wishes = wishesNotPrinted(workspace(), shipment);
    return wishes.isEmpty() ? QString() : u"　%1は書き込んでください"_s.arg(wishes.join(u'・'));
}

// Before anything is told: what is out must not come out of the draft once more.
void frmKuroneko5::takeOutcome(const SlipRunOutcome &outcome, const std::vector<std::size_t> &rows)
{
    for (std::size_t i = 0; i < outcome.issued.size(); ++i)
        m_rows.setIssued({rows[i]},
                         u"発行済　発送ID %1"_s.arg(outcome.issued[i].id) + byHand(outcome.issued[i]));
    if (outcome.failure && outcome.issued.size() < rows.size())
        m_rows.setState(rows[outcome.issued.size()], outcome.failure->text);
    m_places->reload();
    keepDraft();
}

void frmKuroneko5::tellOutcome(const SlipRunOutcome &outcome, std::size_t wanted)
{
    QStringList remarks{
        u"%1 件のうち %2 件の送り状を発行しました。"_s.arg(wanted).arg(outcome.issued.size())};
    if (outcome.issued.size() < wanted)
        remarks << u"残りには印が付いています。もう一度押すと、続きから発行します。"_s;
    const auto unfinished = std::ranges::count_if(
        outcome.issued, [this](const Shipment &shipment) { return !byHand(shipment).isEmpty(); });
    if (unfinished > 0)
        remarks << u"%1 件には、送り状に書き込むものがあります。「状態」の列を見てください。"_s.arg(
            unfinished);
    QString text = u"すべてのデータを排出しました。"_s;
    if (outcome.failure)
        text = outcome.failure->text;
    else if (outcome.stopped)
        text = u"中止しました。"_s;
    ui::prompts::inform(this, text, QString::fromUtf16(ui::prompts::information),
                        outcome.failure ? ui::prompts::Icon::Exclamation : ui::prompts::Icon::Information,
                        remarks.join(u'\n'));
    const std::vector<std::size_t> left = tickedRows(m_rows.order());
    if (!left.empty())
        goTo(int(left.front()), GiftColumn::Name1);
}

} // namespace shipping
