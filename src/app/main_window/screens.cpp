#include "app/main_window/screens.h"

#include "app/main_window/frmAMain.h"
#include "app/main_window/parcels.h"
#include "masters/DialogMyCo.h"
#include "masters/DialogTaxRates.h"
#include "masters/MasterGridEditor.h"
#include "masters/frmMyco.h"
#include "printing/DialogFormLayout.h"
#include "printing/DialogPrintJobs.h"
#include "printing/DialogPrinterP.h"
#include "printing/DialogPrinterSet.h"
#include "printing/renderer.h"
#include "registers/duplicates/DialogDuplicates.h"
#include "registers/frmNouhin.h"
#include "registers/frmSiire.h"
#include "registers/lists/frmNouhinDel.h"
#include "registers/lists/frmNouhinFind.h"
#include "registers/lists/frmNouhinSub.h"
#include "registers/postal/ZipCodeConv.h"
#include "registers/postal/postal_boxes.h"
#include "reports/bills/bill_print.h"
#include "reports/bills/frmOutBill.h"
#include "reports/bills/frmOutBillList.h"
#include "reports/bills/receipts/frmReceiptB.h"
#include "reports/charts/DialogCharts.h"
#include "reports/daily/DialogDayReport.h"
#include "reports/ledgers/ledger_screen.h"
#include "reports/purchases/frmInList.h"
#include "reports/purchases/frmInTax.h"
#include "shipping/addresses/DialogHagakiB.h"
#include "shipping/addresses/adjustable_addresses.h"
#include "shipping/addresses/frmInvoice1.h"
#include "shipping/gifts/frmKuroneko5.h"
#include "shipping/gifts/frmKuroneko6.h"
#include "shipping/gifts/frmKuroneko7.h"
#include "shipping/gifts/gift_sheet_print.h"
#include "shipping/history/frmKuroneko4.h"
#include "shipping/history/frmKuroneko8.h"
#include "shipping/slips/frmKuroneko1.h"
#include "shipping/slips/frmKuroneko2.h"
#include "shipping/slips/shipping_form.h"
#include "shipping/slips/slip_document.h"
#include "slips/correction/correction_screens.h"
#include "slips/documents/adjustable_forms.h"
#include "slips/documents/calibration_sheet.h"
#include "slips/documents/delivery_note.h"
#include "slips/entry/frmIn.h"
#include "slips/entry/frmMitsumori.h"
#include "slips/entry/frmOut.h"
#include "slips/entry/money_slips.h"
#include "slips/issued/DialogIssued.h"
#include "workspace/workspace.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

// Under the hourglass while the screen loads.
template <class Screen>
Opener screen()
{
    return [](QWidget *parent, workspace::Workspace &workspace) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        Screen shown(workspace, parent);
        QGuiApplication::restoreOverrideCursor();
        shown.exec();
    };
}

template <reports::DayReportKind kind>
Opener dayReport()
{
    return screen<reports::DayReportOf<kind>>();
}

// The registers' postal codes serve the own company, too.
void openOwnCompany(QWidget *parent, workspace::Workspace &workspace)
{
    masters::frmMyco shown(workspace, parent);
    const masters::frmMyco::PostalControls &controls = shown.postalControls();
    auto *boxes = new registers::PostalBoxes(workspace, {.zip = controls.zip,
                                                         .address = controls.address1,
                                                         .address2 = controls.address2,
                                                         .remark = controls.remark});
    boxes->fillOnLeavingAddress();
    QObject::connect(controls.lookUp, &QPushButton::clicked, boxes, &registers::PostalBoxes::lookUp);
    shown.exec();
}

void openFormLayouts(QWidget *parent, workspace::Workspace &workspace, const QString &first)
{
    std::vector<printing::AdjustableForm> forms = slips::adjustableForms(workspace.settings);
    for (printing::AdjustableForm &bill : reports::adjustableBills(workspace.settings))
        forms.push_back(std::move(bill));
    forms.push_back(shipping::adjustableGiftSheet(workspace.settings));
    for (printing::AdjustableForm &slip : shipping::adjustableSlips(workspace))
        forms.push_back(std::move(slip));
    for (printing::AdjustableForm &address : shipping::adjustableAddresses(workspace.settings))
        forms.push_back(std::move(address));
    printing::DialogFormLayout shown(workspace, std::move(forms), first, parent);
    shown.exec();
}

// The form that notes are printed on comes first.
void openNoteLayouts(QWidget *parent, workspace::Workspace &workspace)
{
    openFormLayouts(parent, workspace, slips::deliveryNoteLayout(workspace.panel.deliveryPaper, false));
}

void openNotePrinter(QWidget *parent, workspace::Workspace &workspace)
{
    printing::DialogPrinterSet shown(
        workspace,
        [&workspace](const printing::NoteSteps &steps) { return slips::calibrationSheet(workspace, steps); },
        parent);
    shown.setBillSheet([&workspace](const printing::NoteSteps &steps) {
        return reports::billCalibration(workspace, steps);
    });
    shown.setAdjuster([&workspace](QWidget *over) { openNoteLayouts(over, workspace); });
    shown.exec();
}

template <class Dialog>
void openSlipPrinter(QWidget *parent, workspace::Workspace &workspace)
{
    Dialog shown(workspace, parent);
    shown.setAdjuster([&workspace](QWidget *over) {
        openFormLayouts(over, workspace, shipping::slipLayout(workspace.panel.carrier));
    });
    shown.exec();
}

// Their printer is set up from there, too.
template <class Screen>
void openShippingSlips(QWidget *parent, workspace::Workspace &workspace)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    Screen screen(workspace, parent);
    QGuiApplication::restoreOverrideCursor();
    screen.setPrinterSettings(
        [&workspace](QWidget *over) { openSlipPrinter<printing::frmPrinterP>(over, workspace); });
    screen.exec();
}

Opener correction(const book::SlipKind &kind)
{
    return [kind](QWidget *parent, workspace::Workspace &workspace) {
        slips::openCorrection(workspace, parent, kind);
    };
}

// As the main window's own way to it: a person in charge, the own company, the rate.
void sell(frmAMain *mainWindow, workspace::Workspace &workspace, QWidget *parent, qint64 customer)
{
    if (mainWindow && !mainWindow->mayRun(Action::Sales))
        return;
    slips::frmOut screen(workspace, parent);
    screen.beginFor(customer);
    screen.exec();
}

void showLedger(QWidget *parent, workspace::Workspace &workspace, qint64 customer)
{
    reports::frmOutMoto screen(workspace, parent);
    screen.openLedger({customer}, workspace.today());
    screen.exec();
}

void showCharts(QWidget *parent, workspace::Workspace &workspace, qint64 customer)
{
    reports::DialogCharts screen(workspace, parent);
    screen.openCharts(book::Party::Customer, workspace.today(), customer, true);
    screen.exec();
}

template <class Screen>
void openBills(QWidget *parent, workspace::Workspace &workspace)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    Screen screen(workspace, parent);
    QGuiApplication::restoreOverrideCursor();
    screen.setPrinterSettings([&workspace](QWidget *over) { openNotePrinter(over, workspace); });
    screen.exec();
}

void openCustomers(QWidget *parent, workspace::Workspace &workspace)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    registers::frmNouhin screen(workspace, parent);
    QGuiApplication::restoreOverrideCursor();
    screen.setOpeners({
        .slip = [&workspace](QWidget *over, const book::SlipKind &kind,
                             qint64 slip) { slips::openCorrection(workspace, over, kind, slip); },
        .ledger = [&workspace](QWidget *over, qint64 customer) { showLedger(over, workspace, customer); },
        .sale =
            [&workspace, parent](QWidget *over, qint64 customer) {
                sell(qobject_cast<frmAMain *>(parent), workspace, over, customer);
            },
        .charts = [&workspace](QWidget *over, qint64 customer) { showCharts(over, workspace, customer); },
        .shipments = [&workspace](QWidget *over, qint64 customer,
                                  qint64 shipment) { openParcelsOf(over, workspace, customer, shipment); },
    });
    screen.exec();
}

void openTransferForms(QWidget *parent, workspace::Workspace &workspace)
{
    shipping::frmInvoice1 screen(workspace, parent);
    screen.standAtTransferForm();
    screen.exec();
}

} // namespace

Openers screenOpeners()
{
    return {
        {Action::Sales, screen<slips::frmOut>()},
        {Action::Bill, openBills<reports::frmOutBill>},
        {Action::Purchase, screen<slips::frmIn>()},
        {Action::Estimate, screen<slips::frmMitsumori>()},
        {Action::PurchaseTax, screen<reports::frmInTax>()},
        {Action::PurchaseList, screen<reports::frmInList>()},
        {Action::Receipt, screen<slips::frmOutReceipt>()},
        {Action::ReceiptImport, screen<reports::frmReceiptB>()},
        {Action::Payment, screen<slips::frmInPay>()},
        {Action::ReceivableCarried, screen<slips::frmUrikake>()},
        {Action::PayableCarried, screen<slips::frmKaikake>()},
        {Action::Stocktake, screen<slips::frmTana>()},
        {Action::ReceivableLedger, screen<reports::frmOutMoto>()},
        {Action::ReceivableBalances, screen<reports::frmOutZandaka>()},
        {Action::PayableLedger, screen<reports::frmInMoto>()},
        {Action::PayableBalances, screen<reports::frmInZandaka>()},
        {Action::BillList, openBills<reports::frmOutBillList>},
        {Action::SalesReport, dayReport<reports::DayReportKind::Sales>()},
        {Action::ReceiptReport, dayReport<reports::DayReportKind::Receipts>()},
        {Action::PurchaseReport, dayReport<reports::DayReportKind::Purchases>()},
        {Action::PaymentReport, dayReport<reports::DayReportKind::Payments>()},
        {Action::StocktakeReport, dayReport<reports::DayReportKind::Stocktakes>()},
        {Action::ReceivableCarriedReport, dayReport<reports::DayReportKind::ReceivableCarried>()},
        {Action::PayableCarriedReport, dayReport<reports::DayReportKind::PayableCarried>()},
        {Action::StocktakeLedger, screen<reports::frmTanaMoto>()},
        {Action::SalesCorrection, correction(book::sale)},
        {Action::ReceiptCorrection, correction(book::receipt)},
        {Action::ReceivableCorrection, correction(book::receivableCarried)},
        {Action::EstimateCorrection, correction(book::estimate)},
        {Action::PurchaseCorrection, correction(book::purchase)},
        {Action::PaymentCorrection, correction(book::payment)},
        {Action::PayableCorrection, correction(book::payableCarried)},
        {Action::StocktakeCorrection, correction(book::stocktake)},
        {Action::ShippingHistory, openHistory},
        {Action::ShippingCorrection, screen<shipping::frmKuroneko4>()},
        {Action::DeleteHistory, screen<shipping::frmKuroneko8>()},
        {Action::MailOrderSlip, openShippingSlips<shipping::frmKuroneko1>},
        {Action::GiftSlip, openShippingSlips<shipping::frmKuroneko2>},
        {Action::Customers, openCustomers},
        {Action::DeleteCustomers, screen<registers::frmNouhinDel>()},
        {Action::DuplicateCustomers, screen<registers::DialogDuplicates>()},
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
        {Action::OwnCompany, openOwnCompany},
        {Action::ExtendedName, screen<masters::DialogMyCo>()},
        {Action::PrinterChoice, openNotePrinter},
        {Action::PrinterProperties, openSlipPrinter<printing::frmPrinterP>},
        {Action::SlipPrinter, openSlipPrinter<printing::DialogPrinterP>},
        {Action::PrintJobs, screen<printing::DialogPrintJobs>()},
        {Action::Addresses, screen<shipping::frmInvoice1>()},
        {Action::AddressTransferForm, openTransferForms},
        {Action::BulkAddresses, screen<shipping::DialogHagakiB>()},
        {Action::Employees, screen<masters::frmShain>()},
        {Action::IssuedDocuments, screen<slips::DialogIssued>()},
        {Action::TaxRates, screen<masters::DialogTaxRates>()},
        {Action::GiftsBySender, screen<shipping::frmKuroneko6>()},
        {Action::BulkShipping, screen<shipping::frmKuroneko5>()},
        {Action::ShippedGifts, screen<shipping::frmKuroneko7>()},
        {Action::FormLayouts, openNoteLayouts},
    };
}

} // namespace app
