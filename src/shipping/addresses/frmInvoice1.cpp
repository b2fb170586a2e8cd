#include "shipping/addresses/frmInvoice1.h"

#include "printing/print_frame.h"
#include "registers/customer.h"
#include "shipping/addresses/DialogHagakiA.h"
#include "shipping/addresses/address_print.h"
#include "slips/documents/transfer_form_print.h"
#include "text/numbers.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_frmInvoice1.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QKeyEvent>

using namespace Qt::StringLiterals;
namespace keys = workspace::keys;

namespace shipping
{

namespace
{

const QList<ui::GridColumn> listColumns = {
    {u"コード"_s, 10},   {u"納品先名1"_s, 30, u"納品先名１"_s}, {u"納品先名2"_s, 20, u"納品先名２"_s},
    {u"郵便番号"_s, 10}, {u"住所1"_s, 36, u"住所１"_s},         {u"TEL1"_s, 15, u"ＴＥＬ１"_s},
};

const QString automatic = u"（自動）"_s;

} // namespace

frmInvoice1::frmInvoice1(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmInvoice1>())
    , m_customers(workspace.connection)
{
    m_ui->setupUi(this);
    m_ui->DataGrid1->setColumns(listColumns);
    m_ui->DataGrid1->bind(m_customers, [this](const QString &reason) { ui::prompts::inform(this, reason); });
    m_ui->DataGrid1->installEventFilter(this);
    m_ui->cmbHonorific->addItems(QStringList{automatic} + registers::honorifics());
    for (QLabel *words : {m_ui->lblWritten, m_ui->lblRemark, m_ui->lblFound})
        words->setTextFormat(Qt::PlainText);
    m_ui->Check1->setChecked(workspace.settings.checked(keys::frmInvCheck1));
    setUpPapers();
    connectControls();
    setUp();
    showWritten();
    m_ui->txtKey->setFocus();
}

frmInvoice1::~frmInvoice1() = default;

void frmInvoice1::setUpPapers()
{
    const AddressChoice stored = addressChoice(workspace().settings);
    for (const AddressPaper &paper : addressPapers())
        m_ui->cmbPaper->addItem(paper.name);
    m_ui->cmbPaper->setCurrentText(stored.paper);
    (stored.writing == Writing::Vertical ? m_ui->optVertical : m_ui->optHorizontal)->setChecked(true);
    followPaper();
}

void frmInvoice1::connectControls()
{
    connect(m_ui->cmdFind, &QPushButton::clicked, this, &frmInvoice1::search);
    connect(m_ui->DataGrid1, &QTableView::doubleClicked, this, &frmInvoice1::takeFound);
    for (QLineEdit *box : {m_ui->txtZip, m_ui->txtAddress1, m_ui->txtAddress2, m_ui->txtCompany,
                           m_ui->txtSection, m_ui->txtName1, m_ui->txtName2, m_ui->txtName3})
        connect(box, &QLineEdit::textChanged, this, &frmInvoice1::showWritten);
    connect(m_ui->cmbHonorific, &QComboBox::currentIndexChanged, this, &frmInvoice1::showWritten);
    connect(m_ui->Check1, &QCheckBox::toggled, this, &frmInvoice1::takeContact);
    connect(m_ui->cmbPaper, &QComboBox::currentIndexChanged, this, &frmInvoice1::followPaper);
    connect(m_ui->cmdClear, &QPushButton::clicked, this, &frmInvoice1::clear);
    connect(m_ui->cmdPreview, &QPushButton::clicked, this, &frmInvoice1::preview);
    connect(m_ui->cmdPrint, &QPushButton::clicked, this, &frmInvoice1::print);
    connect(m_ui->cmdTransfer, &QPushButton::clicked, this, &frmInvoice1::printTransfer);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmInvoice1::reject);
}

// --- Whom it goes to ---

void frmInvoice1::search()
{
    if (m_ui->txtKey->text().trimmed().isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_ui->txtKey->setFocus();
        return;
    }
    const auto any = registers::openCustomersLike(m_customers, m_ui->txtKey->text());
    if (!tell(any.status()))
        return;
    if (!*any) {
        ui::prompts::inform(this, ui::messages::nothingFound());
        m_ui->txtKey->setFocus();
        return;
    }
    m_ui->lblFound->setText(text::formatAmount(m_customers.count()) + u"件"_s);
    if (m_customers.count() == 1)
        takeFound();
    else
        m_ui->DataGrid1->setFocus();
}

// Enter takes the customer that the cursor is on.
bool frmInvoice1::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->DataGrid1 && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && m_customers.currentRow() >= 0) {
            takeFound();
            return true;
        }
    }
    return Screen::eventFilter(watched, event);
}

void frmInvoice1::takeFound()
{
    if (m_customers.currentRow() < 0 || !mayLose())
        return;
    const auto rows = readAddressRows(workspace().connection, {m_customers.currentKey()});
    if (!tell(rows.status()))
        return;
    if (rows->empty()) {
        ui::prompts::inform(this, u"この納品先は削除されています。もう一度検索してください。"_s);
        return;
    }
    fill(addresseeOf(rows->front(), m_ui->Check1->isChecked()));
    if (m_forTransfer)
        m_ui->txtAmount->setFocus();
    else
        m_ui->cmdPrint->setFocus();
}

// What was put right by hand stays.
void frmInvoice1::takeContact()
{
    if (m_filled.customer == 0 || typed() != m_filled)
        return;
    const auto rows = readAddressRows(workspace().connection, {m_filled.customer});
    if (rows && !rows->empty())
        fill(addresseeOf(rows->front(), m_ui->Check1->isChecked()));
}

void frmInvoice1::clear()
{
    if (!mayLose())
        return;
    fill({});
    m_ui->txtAmount->clear();
    m_ui->txtKey->setFocus();
}

void frmInvoice1::fill(const Addressee &addressee)
{
    m_filled.customer = addressee.customer;
    m_ui->txtZip->setText(addressee.zip);
    m_ui->txtAddress1->setText(addressee.address1);
    m_ui->txtAddress2->setText(addressee.address2);
    m_ui->txtCompany->setText(addressee.company);
    m_ui->txtSection->setText(addressee.section);
    m_ui->txtName1->setText(addressee.names.value(0));
    m_ui->txtName2->setText(addressee.names.value(1));
    m_ui->txtName3->setText(addressee.names.value(2));
    const QString &honorific = addressee.honorific;
    if (!honorific.isEmpty() && m_ui->cmbHonorific->findText(honorific) < 0)
        m_ui->cmbHonorific->addItem(honorific); // of a file of old, as 殿
    m_ui->cmbHonorific->setCurrentText(honorific.isEmpty() ? automatic : honorific);
    m_filled = typed();
    showWritten();
}

Addressee frmInvoice1::typed() const
{
    const auto text = [](const QLineEdit *box) { return box->text().trimmed(); };
    Addressee addressee;
    addressee.customer = m_filled.customer;
    addressee.zip = text(m_ui->txtZip);
    addressee.address1 = text(m_ui->txtAddress1);
    addressee.address2 = text(m_ui->txtAddress2);
    addressee.company = text(m_ui->txtCompany);
    addressee.section = text(m_ui->txtSection);
    for (const QLineEdit *box : {m_ui->txtName1, m_ui->txtName2, m_ui->txtName3}) {
        if (!text(box).isEmpty())
            addressee.names << text(box);
    }
    if (m_ui->cmbHonorific->currentText() != automatic)
        addressee.honorific = m_ui->cmbHonorific->currentText();
    return addressee;
}

bool frmInvoice1::mayLose()
{
    return typed() == m_filled ||
           ui::prompts::askCautiously(this, u"直した宛名は、まだ印刷していません。捨ててもよろしいですか。"_s,
                                      u"登録を直すときは、納品先登録で直してください。"_s);
}

void frmInvoice1::showWritten()
{
    const Addressee addressee = typed();
    const bool honours = addressStyle(workspace().settings).honours;
    const AddressWords words = addressWords(addressee, honours);
    QStringList lines{words.company, words.section};
    lines += words.names;
    lines.removeAll(QString());
    m_ui->lblWritten->setText(lines.join(u'\n'));
    const bool isEmpty = addressee.address1.isEmpty() && lines.isEmpty();
    m_ui->lblRemark->setText(isEmpty ? QString() : addressDoubt(addressee));
}

// --- The paper ---

void frmInvoice1::followPaper()
{
    const AddressPaper &paper = addressPaper(m_ui->cmbPaper->currentText());
    m_ui->optVertical->setEnabled(paper.mayBe(Writing::Vertical));
    if (!paper.mayBe(Writing::Vertical))
        m_ui->optHorizontal->setChecked(true);
}

void frmInvoice1::storePaper()
{
    AddressChoice chosen = addressChoice(workspace().settings);
    chosen.paper = m_ui->cmbPaper->currentText();
    chosen.writing = m_ui->optVertical->isChecked() ? Writing::Vertical : Writing::Horizontal;
    storeAddressChoice(workspace().settings, chosen);
}

// What lacks is told with the cursor where it is to be typed.
bool frmInvoice1::isReady()
{
    const Addressee addressee = typed();
    const QString lack = addressLack(addressee);
    if (lack.isEmpty())
        return true;
    (addressWords(addressee, false).isEmpty() ? m_ui->txtName1 : m_ui->txtAddress1)->setFocus();
    ui::prompts::inform(this, lack + u"。納品先を検索するか、宛名を入力してください。"_s);
    return false;
}

void frmInvoice1::preview()
{
    if (!isReady())
        return;
    storePaper();
    const workspace::Settings &settings = workspace().settings;
    auto setup = addressSetup(workspace(), addressChoice(settings), addressStyle(settings));
    if (tell(setup.status()))
        previewAddresses(workspace(), this, {{typed()}, std::move(*setup), printing::Purpose::Addresses});
}

void frmInvoice1::print()
{
    if (!isReady())
        return;
    storePaper();
    const Addressee addressee = typed();
    DialogHagakiA dialog(workspace(), addressee, this);
    dialog.exec();
    const AddressChoice stored = addressChoice(workspace().settings);
    m_ui->cmbPaper->setCurrentText(stored.paper);
    (stored.writing == Writing::Vertical ? m_ui->optVertical : m_ui->optHorizontal)->setChecked(true);
    showWritten();
    if (!dialog.isPrinted())
        return;
    m_filled = addressee;
    m_ui->txtKey->setFocus(); // to the next one
    m_ui->txtKey->selectAll();
}

void frmInvoice1::printTransfer()
{
    if (m_filled.customer == 0) {
        ui::prompts::inform(this, u"郵便振替用紙を印刷する納品先を検索してください。"_s);
        m_ui->txtKey->setFocus();
        return;
    }
    const auto amount = text::parseNumber(m_ui->txtAmount->text());
    if (!amount) {
        ui::prompts::inform(this, u"金額を数字で入力してください。"_s);
        m_ui->txtAmount->setFocus();
        return;
    }
    slips::printTransferForm(workspace(), this, {m_filled.customer, *amount});
}

bool frmInvoice1::mayClose()
{
    if (!mayLose())
        return false;
    storePaper();
    workspace().settings.write(keys::frmInvCheck1, m_ui->Check1->isChecked());
    tell(printing::flushed(workspace().settings));
    return true;
}

} // namespace shipping
