#include "slips/entry/frmIn.h"

#include "book/deduction.h"
#include "masters/name_lists.h"
#include "slips/entry/new_counterpart.h"
#include "ui_frmIn.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

GoodsSlipDescription description(SupplierGoods goods)
{
    const bool isPurchase = goods == SupplierGoods::Purchase;
    return {
        .slip = {.kind = isPurchase ? book::purchase : book::stocktake,
                 .manualLetter = isPurchase ? book::purchase.letter : book::stocktake.letter,
                 .search = book::supplierSearch,
                 .nothingFound = u"検索した仕入先は見つかりませんでした。\n新規に入力しますか？",
                 .foundWidths = {60, 190, 130, 210, 110, 76, 0},
                 .stampsCounterpart = false},
        .products = masters::purchaseProducts,
        // The doubled full stop is how the users know this question.
        .emptyPrice = {u"単価が入力されていません。。よろしいですか。", true},
        // Unlike a sale, a purchase whose prices include the tax shows none.
        .showsIncludedTax = false,
        .takesReturns = isPurchase,
        .isTaxed = isPurchase,
    };
}

void showAsStocktake(QWidget &screen, const Ui::frmIn &form)
{
    screen.setObjectName(u"frmTana"_s);
    screen.setWindowTitle(u"棚卸伝票入力"_s);
    form.lblPrevious->setText(u"前回棚卸伝票"_s);
    for (QLabel *label :
         {form.lblTax, form.lblTaxK, form.lblTaxClass, form.lblTaxWords, form.lblWithTax, form.lblRegistered})
        label->hide();
    for (QLineEdit *box : {form.Text2, form.txtTaxK, form.txtWithTax})
        box->hide();
    form.Check1->hide();
}

} // namespace

SupplierGoodsScreen::SupplierGoodsScreen(workspace::Workspace &workspace, QWidget *parent,
                                         SupplierGoods goods)
    : GoodsSlipScreen(workspace, parent, description(goods))
{
    Ui::frmIn form;
    form.setupUi(this);
    if (goods == SupplierGoods::Stocktake)
        showAsStocktake(*this, form);
    GoodsControls controls = goodsControls(form);
    controls.slip.fields = {{form.txtNouhinsaki1, u"仕入先名1"},
                            {form.txtNouhinsaki2, u"仕入先名2"},
                            {form.txtTaxK, u"消費税区分"}};
    m_registration = form.lblRegistered;
    connect(form.DTPicker1, &QDateEdit::dateChanged, this, &SupplierGoodsScreen::showRegistration);
    setUpGoods(controls);
    setCounterpartEditor([&workspace](QWidget *window) { return enterNewSupplier(workspace, window); });
}

void SupplierGoodsScreen::counterpartShown(bool chosen)
{
    GoodsSlipScreen::counterpartShown(chosen);
    showRegistration();
}

// A purchase without a qualified invoice is entered as any other one.
void SupplierGoodsScreen::showRegistration()
{
    const auto registration = book::registrationOf(workspace().connection, counterpart());
    m_registration->setText(registration ? book::deductionRemark(*registration, date()) : QString());
}

} // namespace slips
