#include "slips/entry/frmMitsumori.h"

#include "slips/documents/estimate_print.h"
#include "slips/entry/new_counterpart.h"
#include "ui_frmMitsumori.h"

namespace slips
{

namespace
{

GoodsSlipDescription description()
{
    GoodsSlipDescription description = goodsForCustomer(book::estimate);
    // An estimate without a price is none; unlike on the other goods screens the clerk cannot go on.
    description.emptyPrice = {u"単価が入力されていません。", false};
    description.showsIncludedTax = false;
    return description;
}

} // namespace

frmMitsumori::frmMitsumori(workspace::Workspace &workspace, QWidget *parent)
    : GoodsSlipScreen(workspace, parent, description())
    , m_ui(std::make_unique<Ui::frmMitsumori>())
{
    m_ui->setupUi(this);
    connect(m_ui->Command3, &QPushButton::clicked, this, &frmMitsumori::print);
    setUpGoods(customerGoodsControls(*m_ui));
    setCounterpartEditor([&workspace](QWidget *window) { return enterNewCustomer(workspace, window); });
}

frmMitsumori::~frmMitsumori() = default;

// What was remarked to one customer is not for the next one's paper.
void frmMitsumori::clearLines()
{
    GoodsSlipScreen::clearLines();
    m_ui->Text4->clear();
    m_ui->Text5->clear();
}

bool frmMitsumori::showPaper()
{
    return printEstimate(workspace(), this,
                         {.slipId = header().id,
                          .closed = false,
                          .inclusive = inclusive(),
                          .memo = m_ui->txtMemo->text(),
                          .remark1 = m_ui->Text4->text(),
                          .remark2 = m_ui->Text5->text()});
}

QString frmMitsumori::paperRemarks() const
{
    return m_ui->txtMemo->text() + u'\n' + m_ui->Text4->text() + u'\n' + m_ui->Text5->text();
}

} // namespace slips
