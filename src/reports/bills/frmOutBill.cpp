#include "reports/bills/frmOutBill.h"

#include "book/counterpart_search.h"
#include "book/tax.h"
#include "registers/last_counterparts.h"
#include "reports/bills/DialogBillIssue.h"
#include "reports/bills/bill_options_of.h"
#include "reports/bills/bill_report.h"
#include "reports/bills/closing_period.h"
#include "reports/ledgers/ledger_report.h"
#include "slips/correction/correction_screens.h"
#include "slips/entry/slip_screen.h"
#include "text/numbers.h"
#include "ui/leave_watch.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/second_letter.h"
#include "ui_frmOutBill.h"

#include <QSignalBlocker>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

const QList<ui::GridColumn> listColumns{
    {u"納品先ID"_s, 8}, {u"コード"_s, 8}, {u"納品先名1"_s, 24}, {u"納品先名2"_s, 16},
    {u"住所1"_s, 30},   {u"住所2"_s, 20}, {u"TEL1"_s, 14},
};

QString nothingFound() { return u"該当するデータが見つかりませんでした。"_s; }
QString noCustomer() { return u"納品先が選択されていません。"_s; }
QString noSlips() { return u"すべてのデータを排出しました。"_s; }

// 31 and 99 are the last day of the month, as in the register's import.
std::optional<int> typedClosingDay(const QString &typed)
{
    const auto day = text::parseInteger(typed);
    if (!day || *day < 0 || (*day > 31 && *day != 99))
        return std::nullopt;
    return closingDayFrom(static_cast<int>(*day));
}

} // namespace

frmOutBill::frmOutBill(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmOutBill>())
    , m_found(workspace.connection)
{
    m_ui->setupUi(this);
    m_ui->Check2->setChecked(workspace.panel.transferFormAfterBill);
    if (workspace.panel.automaticNumbers) {
        m_ui->txtDenNo->setReadOnly(true);
        m_ui->txtDenNo->setFocusPolicy(Qt::NoFocus);
    }
    presetPeriod(0);
    tell(book::openCounterpart(m_found, book::customerSearch, 0));
    m_ui->DataGrid1->setColumns(listColumns);
    m_ui->DataGrid1->bind(m_found, [this](const QString &refusal) { ui::prompts::inform(this, refusal); });
    m_ui->MSFlexGrid1->showColumns(billStatement({}).columns);
    m_ui->LblPrinterName->setEnabled(false);
    showPrinter();
    connectControls();
    connectDates();
    setEntered(std::nullopt);
    showNothing({});
    setUp();
}

frmOutBill::~frmOutBill() = default;

void frmOutBill::connectControls()
{
    const std::pair<QPushButton *, void (frmOutBill::*)()> actions[] = {
        {m_ui->Command1, &frmOutBill::search},      {m_ui->cmdBill, &frmOutBill::listClosingDay},
        {m_ui->cmdNext, &frmOutBill::next},         {m_ui->cmdPeriod, &frmOutBill::returnToClosingDay},
        {m_ui->cmdSlip, &frmOutBill::openSlip},     {m_ui->cmdMasterCancel, &frmOutBill::cancelTax},
        {m_ui->Command2, &frmOutBill::print},       {m_ui->LblPrinterName, &frmOutBill::choosePrinter},
        {m_ui->cmdIssueAll, &frmOutBill::issueAll},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    ui::pressAlsoBy(*m_ui->cmdMasterCancel, Qt::Key_C); // K is the key box's, too
    connect(m_ui->cmdMasterUpdate, &QPushButton::clicked, this, [this] {
        if (compute(Telling::InBox))
            m_ui->Command2->setFocus();
    });
    connect(m_ui->Command4, &QPushButton::clicked, this, &frmOutBill::bookTax);
    connect(m_ui->Check1, &QCheckBox::toggled, this, &frmOutBill::showFigures);
    connect(&m_found, &db::Recordset::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            choose(m_found.currentKey());
    });
    connect(new ui::LeaveWatch(m_ui->Text1), &ui::LeaveWatch::left, this, &frmOutBill::takeTypedId);
    if (!workspace().panel.automaticNumbers)
        connect(new ui::LeaveWatch(m_ui->txtDenNo), &ui::LeaveWatch::left, this, &frmOutBill::checkNumber);
    connect(m_ui->MSFlexGrid1, &QAbstractItemView::doubleClicked, m_ui->cmdSlip, &QPushButton::click);
    connect(m_ui->MSFlexGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &frmOutBill::showState);
}

void frmOutBill::connectDates()
{
    for (QDateEdit *box :
         {static_cast<QDateEdit *>(m_ui->DTPicker1), static_cast<QDateEdit *>(m_ui->DTPicker2)}) {
        connect(box, &QDateEdit::dateChanged, this, [this] {
            m_periodIsTyped = true;
            followPeriod();
        });
    }
}

book::Period frmOutBill::period() const { return {m_ui->DTPicker1->date(), m_ui->DTPicker2->date()}; }

void frmOutBill::openBill(qint64 customer, const book::Period &period)
{
    const QSignalBlocker noFrom(m_ui->DTPicker1);
    const QSignalBlocker noTo(m_ui->DTPicker2);
    m_ui->DTPicker1->setDate(period.from);
    m_ui->DTPicker2->setDate(period.to);
    m_periodIsTyped = true;
    suggestDate();
    showCustomer(customer);
}

// --- The customer ---

void frmOutBill::search()
{
    if (m_ui->txtKey1->text().trimmed().isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_ui->txtKey1->setFocus();
        return;
    }
    if (!tell(book::searchCounterparts(m_found, book::customerSearch, m_ui->txtKey1->text())))
        return;
    if (m_found.isEmpty()) {
        choose(0);
        m_ui->txtKey1->setFocus();
        ui::prompts::inform(this, nothingFound());
    } else if (m_found.count() == 1) { // needs no choosing
        m_ui->Command2->setFocus();
    } else {
        m_ui->DataGrid1->setFocus();
    }
}

void frmOutBill::takeTypedId()
{
    const QString typed = m_ui->Text1->text().trimmed();
    const auto id = text::parseInteger(typed);
    if (m_customer != 0 && id == m_customer) {
        if (m_ui->Text1->isModified())
            showAnew();
        return;
    }
    if (typed.isEmpty()) {
        showAddress();
        return;
    }
    const auto known = id ? book::taxClassOf(workspace().connection, book::Party::Customer, *id)
                          : base::Result<std::optional<book::TaxClass>>(std::nullopt);
    if (known && *known) {
        showCustomer(*id);
        return;
    }
    m_ui->Text1->setFocus();
    m_ui->Text1->selectAll();
    if (tell(known.status()))
        ui::prompts::inform(this, nothingFound());
}

void frmOutBill::listClosingDay()
{
    const QString typed = m_ui->txtClosingDay->text().trimmed();
    const auto day = typedClosingDay(typed);
    if (!day) {
        ui::prompts::inform(
            this, typed.isEmpty() ? u"締め日を入力してください。"_s
                                  : u"締め日は、１から３０までの日、または末日の０を入力してください。"_s);
        m_ui->txtClosingDay->setFocus();
        m_ui->txtClosingDay->selectAll();
        return;
    }
    presetPeriod(*day);
    const auto any = m_found.openIfAny(closingDayQuery(*day));
    if (!any || !*any) {
        if (tell(any.status()))
            ui::prompts::inform(this, nothingFound());
        m_ui->txtClosingDay->setFocus();
        return;
    }
    if (!tell(m_found.readAll()))
        return;
    m_list.clear();
    for (int row = 0; row < m_found.count(); ++row)
        m_list.push_back(m_found.keyAt(row));
    followList();
    showState();
    m_ui->DataGrid1->setFocus();
}

void frmOutBill::issueAll()
{
    DialogBillIssue shown(workspace(), this);
    const int ofCustomer = m_bill ? m_bill->customer.closingDay : 0;
    shown.openClosingDay(typedClosingDay(m_ui->txtClosingDay->text().trimmed()).value_or(ofCustomer));
    shown.exec();
    if (m_customer != 0)
        compute(Telling::InLine); // its tax may be booked now
}

void frmOutBill::next()
{
    if (m_place + 1 >= m_list.size())
        return;
    ++m_place;
    showCustomer(m_list[m_place]);
    showState();
}

// The list goes on behind the customer of it that was shown last.
void frmOutBill::followList()
{
    const auto shown = std::ranges::find(m_list, m_customer);
    if (shown != m_list.end())
        m_place = static_cast<std::size_t>(shown - m_list.begin());
}

void frmOutBill::showCustomer(qint64 customer)
{
    if (!tell(m_found.moveToKey(customer)))
        return;
    if (m_found.currentKey() != customer &&
        !tell(book::openCounterpart(m_found, book::customerSearch, customer)))
        return;
    if (m_customer != customer || m_found.isEmpty())
        choose(customer);
    if (m_found.isEmpty()) // deleted meanwhile
        compute(Telling::InBox);
}

// Whoever types the same ID once more wants to see what was changed of the customer meanwhile.
void frmOutBill::showAnew()
{
    if (m_found.currentKey() == m_customer)
        m_found.refresh();
    choose(m_customer);
}

void frmOutBill::choose(qint64 customer)
{
    if (customer != m_customer) {
        m_customer = customer;
        m_bill.reset();
        setEntered(std::nullopt);
        m_ui->Check1->setChecked(false); // ticked for the one bill alone
    }
    followList();
    if (customer == 0) {
        showNothing({});
        return;
    }
    registers::rememberCounterpart(workspace(), book::Party::Customer, customer);
    if (const auto known = billCustomer(workspace().connection, customer))
        presetPeriod(known->closingDay);
    compute(Telling::InLine);
}

// --- The period ---

void frmOutBill::presetPeriod(int closingDay)
{
    if (m_periodIsTyped)
        return;
    const QSignalBlocker noFrom(m_ui->DTPicker1);
    const QSignalBlocker noTo(m_ui->DTPicker2);
    const book::Period whole = closingPeriod(closingDay, workspace().today());
    m_ui->DTPicker1->setDate(whole.from);
    m_ui->DTPicker2->setDate(whole.to);
    suggestDate();
}

// A period that was mistyped has no bill, but its customer has a closing day all the same.
void frmOutBill::returnToClosingDay()
{
    int day = typedClosingDay(m_ui->txtClosingDay->text().trimmed()).value_or(0);
    if (m_customer != 0) {
        const auto known = billCustomer(workspace().connection, m_customer);
        if (!tell(known.status()))
            return;
        day = known->closingDay;
    }
    m_periodIsTyped = false;
    presetPeriod(day);
    followPeriod();
}

// The figures, and the tax proposed from them, are always those of the period that is shown.
void frmOutBill::followPeriod()
{
    suggestDate();
    if (m_customer != 0)
        compute(Telling::InLine);
    else
        showState();
}

// --- The bill ---

bool frmOutBill::compute(Telling telling)
{
    if (m_customer == 0) {
        ui::prompts::inform(this, noCustomer());
        m_ui->txtKey1->setFocus();
        return false;
    }
    auto bill = billOf(workspace().connection, m_customer, period(), billOptionsOf(workspace()));
    if (!bill) {
        m_bill.reset();
        showNothing(bill.error().text);
        if (telling != Telling::InLine || bill.error().gone)
            tell(bill.error());
        return false;
    }
    m_bill = std::move(*bill);
    showAddress();
    if (!m_bill->hasSlips) {
        showNothing(noSlips());
        if (telling == Telling::InBox)
            ui::prompts::inform(this, noSlips());
        return false;
    }
    m_ui->MSFlexGrid1->setReport(billStatement(*m_bill));
    showFigures();
    suggestTax();
    showState();
    return true;
}

void frmOutBill::openSlip()
{
    const QVariant link = m_ui->MSFlexGrid1->currentLink();
    if (!link.canConvert<SlipTarget>())
        return;
    const auto slip = link.value<SlipTarget>();
    slips::openCorrection(workspace(), this, slip.kind, slip.slip);
    compute(Telling::InLine);
}

void frmOutBill::setPrinterSettings(std::function<void(QWidget *)> open)
{
    m_openPrinterSettings = std::move(open);
    m_ui->LblPrinterName->setEnabled(true);
}

void frmOutBill::choosePrinter()
{
    m_openPrinterSettings(this);
    showPrinter();
}

void frmOutBill::showPrinter()
{
    const QString printer = workspace().settings.text(workspace::keys::printerName);
    m_ui->LblPrinterName->setText(printer.isEmpty() ? u"通常使うプリンタ"_s : printer);
}

} // namespace reports
