#pragma once

#include "slips/entry/money_slip_screen.h"

namespace slips
{

/// The slips of money, each with its screen.
enum class MoneySlip { Receipt, Payment, ReceivableCarried, PayableCarried };

MoneySlipDescription descriptionOf(MoneySlip slip);

template <MoneySlip slip>
class MoneyScreen : public MoneySlipScreen
{
public:
    explicit MoneyScreen(workspace::Workspace &workspace, QWidget *parent = nullptr)
        : MoneySlipScreen(workspace, parent, descriptionOf(slip))
    {}
};

using frmOutReceipt = MoneyScreen<MoneySlip::Receipt>;
using frmInPay = MoneyScreen<MoneySlip::Payment>;
using frmUrikake = MoneyScreen<MoneySlip::ReceivableCarried>;
using frmKaikake = MoneyScreen<MoneySlip::PayableCarried>;

} // namespace slips
