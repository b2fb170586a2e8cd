#pragma once

#include "slips/entry/line_entry.h"
#include "slips/entry/slip_controls.h"

#include <QCheckBox>
#include <QComboBox>

namespace slips
{

/// The controls of a screen for slips of goods.
struct GoodsControls
{
    SlipControls slip;
    LineEntry::Boxes entry;
    QLineEdit *taxClass;
    QLabel *taxClassName;
    QLabel *totalName;
    QLineEdit *total;
    QLineEdit *tax;
    QLabel *taxWords;
    QLineEdit *withTax;
    QLineEdit *taxFlag; // hidden
    QLineEdit *memo;
    QCheckBox *inclusive;
    ui::Grid *lines;
    ui::Grid *previous;
};

/// Those of a form, which has them under the names that the forms for goods share.
template <class Form>
GoodsControls goodsControls(const Form &form)
{
    return {.slip = slipControls(form),
            .entry = {form.dbcShohin, form.dbcKikaku, form.txtCnt, form.dbcTani, form.txtTanka,
                      form.lblLineTax, form.cboLineTax},
            .taxClass = form.txtTaxK,
            .taxClassName = form.lblTaxClass,
            .totalName = form.lblTotal,
            .total = form.txtTotal,
            .tax = form.Text2,
            .taxWords = form.lblTaxWords,
            .withTax = form.txtWithTax,
            .taxFlag = form.Text3,
            .memo = form.txtMemo,
            .inclusive = form.Check1,
            .lines = form.dgdSub,
            .previous = form.MSFlexGrid1};
}

/// Those of the sales and the estimate form, which show a customer and print.
template <class Form>
GoodsControls customerGoodsControls(const Form &form)
{
    GoodsControls controls = goodsControls(form);
    controls.slip.fields = {{form.txtNouhinsaki1, u"納品先名1"}, {form.txtNouhinsaki2, u"納品先名2"},
                            {form.txtZip, u"郵便番号"},          {form.txtAddress1, u"住所1"},
                            {form.txtAddress2, u"住所2"},        {form.txtTel, u"TEL1"},
                            {form.txtCode, u"コード"},           {form.txtTaxK, u"消費税区分"}};
    controls.slip.newCounterpart = form.Command4;
    controls.slip.print = form.Command3;
    return controls;
}

} // namespace slips
