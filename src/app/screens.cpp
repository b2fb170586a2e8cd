#include "app/screens.h"

#include "app/workspace.h"
#include "masters/DialogMyCo.h"
#include "masters/MasterGridEditor.h"
#include "masters/frmMyco.h"
#include "registers/ZipCodeConv.h"
#include "registers/frmNouhin.h"
#include "registers/frmNouhinDel.h"
#include "registers/frmNouhinFind.h"
#include "registers/frmNouhinSub.h"
#include "registers/frmSiire.h"
#include "slips/correction_screens.h"
#include "slips/frmIn.h"
#include "slips/frmInList.h"
#include "slips/frmInTax.h"
#include "slips/frmMitsumori.h"
#include "slips/frmOut.h"
#include "slips/ledger_screen.h"
#include "slips/money_slips.h"

#include <QGuiApplication>

namespace app
{

namespace
{

// Under the hourglass while the screen loads.
template <class Screen>
Opener screen()
{
    return [](QWidget *parent, Workspace &workspace) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        Screen shown(workspace, parent);
        QGuiApplication::restoreOverrideCursor();
        shown.exec();
    };
}

Opener correction(const slips::SlipKind &kind)
{
    return [kind](QWidget *parent, Workspace &workspace) { slips::openCorrection(workspace, parent, kind); };
}

} // namespace

Openers screenOpeners()
{
    return {
        {Action::Sales, screen<slips::frmOut>()},
        {Action::Purchase, screen<slips::frmIn>()},
        {Action::Estimate, screen<slips::frmMitsumori>()},
        {Action::PurchaseTax, screen<slips::frmInTax>()},
        {Action::PurchaseList, screen<slips::frmInList>()},
        {Action::Receipt, screen<slips::frmOutReceipt>()},
        {Action::Payment, screen<slips::frmInPay>()},
        {Action::ReceivableCarried, screen<slips::frmUrikake>()},
        {Action::PayableCarried, screen<slips::frmKaikake>()},
        {Action::Stocktake, screen<slips::frmTana>()},
        {Action::ReceivableLedger, screen<slips::frmOutMoto>()},
        {Action::ReceivableBalances, screen<slips::frmOutZandaka>()},
        {Action::PayableLedger, screen<slips::frmInMoto>()},
        {Action::PayableBalances, screen<slips::frmInZandaka>()},
        {Action::StocktakeReport, screen<slips::frmTanaReport>()},
        {Action::StocktakeLedger, screen<slips::frmTanaMoto>()},
        {Action::SalesCorrection, correction(slips::sale)},
        {Action::ReceiptCorrection, correction(slips::receipt)},
        {Action::ReceivableCorrection, correction(slips::receivableCarried)},
        {Action::EstimateCorrection, correction(slips::estimate)},
        {Action::PurchaseCorrection, correction(slips::purchase)},
        {Action::PaymentCorrection, correction(slips::payment)},
        {Action::PayableCorrection, correction(slips::payableCarried)},
        {Action::StocktakeCorrection, correction(slips::stocktake)},
        {Action::Customers, screen<registers::frmNouhin>()},
        {Action::DeleteCustomers, screen<registers::frmNouhinDel>()},
        {Action::SupplementaryRoster, screen<registers::frmNouhinSub>()},
        {Action::Suppliers, screen<registers::frmSiire>()},
        {Action::PostalCodes, screen<registers::ZipCodeConv>()},
        {Action::CustomerRoster, screen<registers::frmNouhinFind>()},
        {Action::CustomerCategories, screen<masters::frmKubun>()},
        {Action::SalesProducts, screen<masters::frmOutShohin>()},
        {Action::ShippingCategories, screen<masters::frmInvKubun>()},
        {Action::PurchaseProducts, screen<masters::frmInShohin>()},
        {Action::Specifications, screen<masters::frmKikaku>()},
        {Action::Units, screen<masters::frmTani>()},
        {Action::OwnCompany, screen<masters::frmMyco>()},
        {Action::ExtendedName, screen<masters::DialogMyCo>()},
        {Action::Employees, screen<masters::frmShain>()},
    };
}

} // namespace app
