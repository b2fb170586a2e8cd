#include "slips/frmOut.h"

#include "masters/name_lists.h"
#include "slips/delivery_note_print.h"
#include "slips/new_counterpart.h"
#include "ui_frmOut.h"

namespace slips
{

namespace
{

GoodsSlipDescription description()
{
    return {
        .slip =
            {.kind = sale,
             // Numbers typed by hand begin with I on all goods screens; the users' books are kept that way.
             .manualLetter = u'I',
             .search = customerSearch,
             .nothingFound = u"検索した納品先は見つかりませんでした。\n新規に入力しますか？",
             .foundWidths = {0, 190, 130, 76, 210, 120, 110, 60, 90, 76, 0},
             .fields = customerFields(),
             .stampsCounterpart = true},
        .products = masters::salesProductNames,
        .emptyPrice = {u"単価が入力されていません。よろしいですか。", true},
        .showsIncludedTax = true,
        .hasAmountBox = true,
    };
}

} // namespace

frmOut::frmOut(app::Workspace &workspace, QWidget *parent)
    : GoodsSlipScreen(workspace, parent, description())
    , m_ui(std::make_unique<Ui::frmOut>())
{
    m_ui->setupUi(this);
    connect(m_ui->Command3, &QPushButton::clicked, this, &frmOut::print);
    setUpSlip();
    setCounterpartEditor([&workspace](QWidget *parent) { return enterNewCustomer(workspace, parent); });
    // The transfer form is not printed yet.
    m_ui->Check3->setEnabled(false);
}

frmOut::~frmOut() = default;

void frmOut::print()
{
    if (!mayPassOverLine())
        return;
    printDeliveryNote(workspace(), this,
                      {.slipId = header().id,
                       .inclusive = inclusive(),
                       .closed = false,
                       .designatedForm = m_ui->Check2->isChecked(),
                       .memo = m_ui->txtMemo->text()});
}

} // namespace slips
