#include "registers/frmSiire.h"

#include "book/supplier_registration.h"
#include "registers/counterpart.h"
#include "registers/postal/postal_boxes.h"
#include "registers/supplier.h"
#include "ui/drop_down.h"
#include "ui/leave_watch.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui/second_letter.h"
#include "ui/width_check.h"
#include "ui_frmSiire.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

const QList<ui::GridColumn> listColumns = {
    {u"仕入先ID"_s, 7, u"ID"_s},
    {u"コード"_s, 10},
    {u"仕入先名1"_s, 32, u"仕入先名"_s},
    {u"仕入先名2"_s, 22, u"部署・役職"_s},
    {u"TEL1"_s, 15, u"ＴＥＬ１"_s},
    {u"住所1"_s, 40, u"住所１"_s},
    {u"担当者1"_s, 16, u"担当者名１"_s},
    {u"支払方法"_s, 20},
    {u"郵便番号"_s, 10},
    {u"住所2"_s, 30, u"住所２"_s},
    {u"TEL2"_s, 15, u"ＴＥＬ２"_s},
    {u"FAX"_s, 15, u"ＦＡＸ"_s},
    {u"担当者2"_s, 16, u"担当者名２"_s},
    {u"振込先"_s, 40},
    {u"登録番号"_s, 15},
    {.column = u"登録"_s,
     .characters = 10,
     .nameOf = [](qint64 state) { return nameOf(book::Registered(state)); }},
};

} // namespace

frmSiire::frmSiire(workspace::Workspace &workspace, QWidget *parent)
    : RegisterScreen(workspace, u"入力中の仕入先が登録されていません。登録しますか？"_s, parent)
    , m_ui(std::make_unique<Ui::frmSiire>())
    , m_boxes(rows(), nullptr)
{
    m_ui->setupUi(this);
    bindBoxes();
    setUpList();
    connectButtons();
    setUp();
    showStates();
}

frmSiire::~frmSiire()
{
    // The box with the cursor loses it now, while the record set that it still edits is there.
    hide();
}

void frmSiire::bindBoxes()
{
    const std::pair<QLineEdit *, QString> boxes[] = {
        {m_ui->txtID, u"仕入先ID"_s},
        {m_ui->txtCode, u"コード"_s},
        {m_ui->txtName1, u"仕入先名1"_s},
        {m_ui->txtName2, u"仕入先名2"_s},
        {m_ui->txtName4, u"仕入先名キー"_s},
        {m_ui->txtZip, u"郵便番号"_s},
        {m_ui->txtAddress1, u"住所1"_s},
        {m_ui->txtAddress2, u"住所2"_s},
        {m_ui->txtTel1, u"TEL1"_s},
        {m_ui->txtTel2, u"TEL2"_s},
        {m_ui->txtFax, u"FAX"_s},
        {m_ui->txtMail, u"メール"_s},
        {m_ui->txtTantou1, u"担当者1"_s},
        {m_ui->txtTantou2, u"担当者2"_s},
        {m_ui->txtPay1, u"支払方法"_s},
        {m_ui->txtPay2, u"振込先"_s},
        {m_ui->Text1, u"消費税区分"_s},
    };
    for (const auto &[box, column] : boxes)
        m_boxes.bind(box, column);
    for (QLineEdit *box : {m_ui->txtName1, m_ui->txtName2, m_ui->txtAddress1, m_ui->txtAddress2})
        ui::WidthCheck::guard(box, ui::nameWidth);

    m_ui->Combo1->addItems(taxClassNames());
    ui::bindDropDown(m_ui->Combo1, m_ui->Text1, m_ui->lblNoTax);
    bindRegistration();
    m_codeWatch = new ui::LeaveWatch(m_ui->txtCode);
    connect(m_codeWatch, &ui::LeaveWatch::left, this, &frmSiire::warnOfCode);
}

void frmSiire::bindRegistration()
{
    m_boxes.bind(m_ui->txtRegistration, u"登録番号"_s);
    m_boxes.bindDay(m_ui->txtRegisteredFrom, u"登録開始日"_s);
    m_boxes.bindDay(m_ui->txtRegisteredTo, u"登録終了日"_s);
    for (const auto state : {book::Registered::Unknown, book::Registered::Yes, book::Registered::No})
        m_ui->Combo2->addItem(nameOf(state));
    m_boxes.bind(m_ui->Combo2, u"登録"_s);
    for (QLineEdit *box : {m_ui->txtRegistration, m_ui->txtRegisteredFrom, m_ui->txtRegisteredTo})
        connect(box, &QLineEdit::editingFinished, this, &frmSiire::settleRegistration);
    const auto showRemark = [this] { m_ui->lblRegistrationRemark->setText(registrationRemark(rows())); };
    connect(&rows(), &db::Recordset::currentRowChanged, this, showRemark);
    connect(&rows(), &db::Recordset::edited, this, showRemark);
}

void frmSiire::setUpList()
{
    m_ui->DataGrid1->letSort();
    m_ui->DataGrid1->letChooseColumns();
    m_ui->DataGrid1->setColumns(listColumns);
    bindList(m_ui->DataGrid1, m_ui->labelCount);
    bindUndo(m_ui->cmdUndo);
    bindNameless(m_ui->cmdNameless, book::Party::Supplier);
}

void frmSiire::connectButtons()
{
    connect(m_ui->cmdAdd, &QPushButton::clicked, this, &frmSiire::add);
    connect(m_ui->cmdUpdate, &QPushButton::clicked, this, &frmSiire::saveAndBrowse);
    ui::pressAlsoBy(*m_ui->cmdUpdate, Qt::Key_I);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &frmSiire::cancelEntry);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &frmSiire::removeRow);
    m_postal = new PostalBoxes(workspace(), {.zip = m_ui->txtZip,
                                             .address = m_ui->txtAddress1,
                                             .address2 = m_ui->txtAddress2,
                                             .remark = m_ui->cmdZipSearch});
    connect(m_ui->Command3, &QPushButton::clicked, m_postal, &PostalBoxes::lookUp);
}

void frmSiire::openSupplier(qint64 id) { opened(registers::openSupplier(rows(), id)); }

base::Status frmSiire::openRows() { return registers::openEverySupplier(rows()); }

void frmSiire::add()
{
    if (!leaveRow())
        return;
    const auto added = registers::addSupplier(workspace().connection, rows());
    if (!added) {
        ui::prompts::inform(this, added.error().text);
        return;
    }
    beginEntry();
    m_ui->txtName1->setFocus();
}

void frmSiire::settleBoxes()
{
    m_codeWatch->settle();
    m_postal->settle();
}

void frmSiire::forgetBoxes()
{
    m_codeWatch->forget();
    m_postal->forget();
}

std::optional<RegisterScreen::Failure> frmSiire::refusal() const
{
    const auto fault = registrationFault(rows());
    return fault ? std::optional(
                       Failure{fault->text, QString::fromUtf16(ui::prompts::errorCheck), fault->column})
                 : std::nullopt;
}

base::Status frmSiire::store() { return registers::saveSupplier(rows()); }

void frmSiire::showRow() { m_boxes.show(); }

void frmSiire::focusColumn(const QString &column)
{
    const std::pair<QString, QLineEdit *> boxes[] = {
        {u"仕入先名1"_s, m_ui->txtName1},
        {u"登録開始日"_s, m_ui->txtRegisteredFrom},
        {u"登録終了日"_s, m_ui->txtRegisteredTo},
    };
    for (const auto &[name, box] : boxes) {
        if (name == column)
            box->setFocus();
    }
}

QString frmSiire::wordsFor(const QString &column, const QVariant &value) const
{
    if (column == u"登録"_s)
        return nameOf(book::registrationFrom(value, {}, {}).registered);
    const bool isTaxClass = column == u"消費税区分"_s && !value.isNull();
    return isTaxClass ? taxClassNames().value(value.toInt()) : QString();
}

// --- The registration ---

// Only what was typed is brought into form: passing through a box with the cursor is no edit.
void frmSiire::settleRegistration()
{
    registers::settleRegistration(rows());
    m_boxes.show();
}

void frmSiire::entryEnded() { m_ui->cmdAdd->setFocus(); }

// Warns of a saved supplier's own code too, in the words of the customer register: both are wanted.
void frmSiire::warnOfCode()
{
    const auto exists = registers::supplierCodeExists(workspace().connection, rows());
    if (exists && *exists)
        ui::prompts::inform(this, ui::messages::sharedCode());
}

// One button saves here, a new supplier as well as an edited one.
std::vector<RegisterScreen::State> frmSiire::states() const
{
    return {
        {m_ui->DataGrid1, true, true, false},   {m_ui->panel, false, true, true},
        {m_ui->cmdAdd, true, true, false},      {m_ui->cmdUpdate, false, true, true},
        {m_ui->cmdCancel, false, false, true},  {m_ui->cmdDelete, false, true, false},
        {m_ui->cmdNameless, true, true, false},
    };
}

} // namespace registers
