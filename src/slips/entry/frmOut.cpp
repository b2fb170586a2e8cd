#include "slips/entry/frmOut.h"

#include "slips/documents/delivery_note_print.h"
#include "slips/entry/new_counterpart.h"
#include "ui_frmOut.h"

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
    // The transfer form is not printed yet.
    m_ui->Check3->setEnabled(false);
}

frmOut::~frmOut() = default;

bool frmOut::showPaper()
{
    return printDeliveryNote(workspace(), this,
                             {.slipId = header().id,
                              .inclusive = inclusive(),
                              .closed = false,
                              .designatedForm = m_ui->Check2->isChecked(),
                              .memo = m_ui->txtMemo->text()});
}

} // namespace slips
