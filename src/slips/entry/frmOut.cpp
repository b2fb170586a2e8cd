#include "slips/entry/frmOut.h"

#include "book/slip_store.h"
#include "slips/documents/delivery_note_print.h"
#include "slips/documents/transfer_form_print.h"
#include "slips/entry/new_counterpart.h"
#include "slips/parcel_desk.h"
#include "text/numbers.h"
#include "ui/prompts.h"
#include "ui_frmOut.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace slips
{

frmOut::frmOut(workspace::Workspace &workspace, QWidget *parent)
    : GoodsSlipScreen(workspace, parent, goodsForCustomer(book::sale))
    , m_ui(std::make_unique<Ui::frmOut>())
{
    m_ui->setupUi(this);
    connect(m_ui->Command3, &QPushButton::clicked, this, &frmOut::print);
    GoodsControls controls = customerGoodsControls(*m_ui);
    controls.entry.amount = m_ui->Text5;
    setUpGoods(controls);
    setCounterpartEditor([&workspace](QWidget *window) { return enterNewCustomer(workspace, window); });
    m_ui->Check3->setChecked(workspace.panel.transferFormAfterDelivery);
    setUpParcels();
}

frmOut::~frmOut() = default;

bool frmOut::showPaper()
{
    const bool isOut = printDeliveryNote(workspace(), this,
                                         {.slipId = header().id,
                                          .inclusive = inclusive(),
                                          .closed = false,
                                          .designatedForm = m_ui->Check2->isChecked(),
                                          .memo = m_ui->txtMemo->text()});
    m_isOut = m_isOut || isOut;
    return isOut;
}

void frmOut::beginLines()
{
    GoodsSlipScreen::beginLines();
    m_ui->Check3->setChecked(workspace().panel.transferFormAfterDelivery);
    m_isOut = false;
}

base::Result<QString> frmOut::closeSlip()
{
    auto closed = GoodsSlipScreen::closeSlip();
    m_isClosed = bool(closed);
    return closed;
}

// Whoever is charged the tax on the bill would pay too little by a form without it, and before the bill.
bool frmOut::mayBePaid(const book::SlipSums &sums)
{
    const bool taxIsToCome = taxClass() == book::TaxClass::OnBill && !inclusive() && !sums.hasTaxLine;
    return !taxIsToCome ||
           ui::prompts::askCautiously(
               this, u"この納品先の消費税は請求時に加算します。"
                     "税別の金額 %1 円で払込取扱票を作りますか。"_s.arg(text::formatAmount(sums.total)));
}

void frmOut::offerTransferForm()
{
    if (!m_ui->Check3->isChecked())
        return;
    const auto sums = book::slipSums(workspace().connection, header().id); // with the tax lines, if any
    if (tell(sums.status()) && mayBePaid(*sums))
        printTransferForm(workspace(), this, {header().counterpart, sums->total});
}

// Of a slip that is left open nobody knows yet what is to be paid.
void frmOut::slipEnds()
{
    GoodsSlipScreen::slipEnds();
    if (!std::exchange(m_isClosed, false))
        return;
    offerTransferForm();
    offerParcelOf(header());
}

// --- Its parcel ---

void frmOut::setUpParcels()
{
    m_ui->chkParcel->setVisible(hasParcelDesk(workspace()));
    m_ui->cmdParcel->setVisible(hasParcelDesk(workspace()));
    m_ui->chkParcel->setChecked(workspace().settings.checked(workspace::keys::offersShipping));
    connect(m_ui->chkParcel, &QCheckBox::clicked, this,
            [this](bool asks) { workspace().settings.write(workspace::keys::offersShipping, asks); });
    connect(m_ui->cmdParcel, &QPushButton::clicked, this, &frmOut::beginParcel);
}

void frmOut::offerParcelOf(const book::SavedHeader &slip)
{
    m_last = slip;
    m_ui->cmdParcel->setEnabled(true);
    m_ui->cmdParcel->setToolTip(u"伝票 %1 の発送伝票を作ります。"_s.arg(slip.number));
    if (std::exchange(m_isOut, false))
        offerParcel(workspace(), this, slip.id, slip.number);
}

void frmOut::beginParcel()
{
    // Another program may have deleted the slip, and given its key to another one.
    const base::Status same = book::checkKeyIsNotAnothers(workspace().connection, m_last);
    if (tell(same))
        workspace().kept<ParcelDesk>()->begin(this, m_last.id);
}

} // namespace slips
