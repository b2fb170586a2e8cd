#include "slips/documents/DialogOderEX.h"

#include "printing/font_names.h"
#include "printing/frmPreview.h"
#include "printing/offset_box.h"
#include "printing/print_frame.h"
#include "slips/documents/transfer_form_print.h"
#include "text/numbers.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui_DialogOderEX.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QFontDatabase>

using namespace Qt::StringLiterals;
namespace keys = workspace::keys;

namespace slips
{

namespace
{

constexpr printing::Purpose purpose = printing::Purpose::TransferForms;

} // namespace

DialogOderEX::DialogOderEX(workspace::Workspace &workspace, const TransferForm &form, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogOderEX>())
{
    m_ui->setupUi(this);
    m_ui->frameRun->hide();
    showPayer(form);
    begin();
}

DialogOderEX::DialogOderEX(workspace::Workspace &workspace, const QString &run, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogOderEX>())
    , m_isRun(true)
{
    m_ui->setupUi(this);
    m_ui->framePayer->hide();
    m_ui->lblRun->setText(run);
    begin();
}

DialogOderEX::~DialogOderEX() = default;

void DialogOderEX::begin()
{
    m_right = new printing::OffsetBox(printing::transferRight, *m_ui->Text7, *m_ui->UpDown1);
    m_down = new printing::OffsetBox(printing::transferDown, *m_ui->Text8, *m_ui->UpDown2);
    fillPrinters();
    showSettings();
    connectAll();
    setUp();
    checkAccount();
    // What is filled in once stands ready ever after.
    if (transferAccount(m_ui->Text1->text()))
        m_ui->Command2->setFocus();
    else
        m_ui->Text1->setFocus();
}

void DialogOderEX::fillPrinters()
{
    const auto selected =
        printing::selectPrinter(printing::printSystem(workspace()), workspace().settings, purpose);
    m_ui->Combo2->addItems(selected ? selected->installed : QStringList());
    m_ui->Combo2->setCurrentText(selected ? selected->name : QString());
    const QString none =
        selected ? u"プリンタが見つかりません。PDF に保存できます。"_s : selected.error().text;
    m_ui->LblPrinterName->setText(m_ui->Combo2->count() == 0 ? none : printing::missingInWords(*selected));
    m_ui->LblPrinterName->setVisible(!m_ui->LblPrinterName->text().isEmpty());
}

void DialogOderEX::showSettings()
{
    const workspace::Settings &settings = workspace().settings;
    const TransferTexts stored = transferTexts(settings);
    m_ui->Text1->setText(stored.account);
    m_ui->Text2->setText(stored.payee);
    m_ui->Text3->setText(stored.note1);
    m_ui->Text4->setText(stored.note2);
    m_right->setSteps(printing::offsetFrom(settings.text(keys::oderOffsetX), printing::transferRight));
    m_down->setSteps(printing::offsetFrom(settings.text(keys::oderOffsetY), printing::transferDown));
    (settings.checked(keys::oderOption1) ? m_ui->Option1 : m_ui->Option2)->setChecked(true);
    m_ui->txtFontName->setText(printing::withoutVerticalMark(settings.text(printing::fontKey(purpose))));
}

void DialogOderEX::showPayer(const TransferForm &form)
{
    m_ui->Text5->setText(text::formatAmount(form.amount));
    m_ui->txtNouhinsaki1->setText(form.payer.name1);
    m_ui->txtNouhinsaki2->setText(form.payer.name2);
    m_ui->txtZip->setText(form.payer.zip);
    m_ui->txtTel->setText(form.payer.tel);
    m_ui->txtAddress1->setText(form.payer.address1);
    m_ui->txtAddress2->setText(form.payer.address2);
}

void DialogOderEX::connectAll()
{
    connect(m_ui->Combo2, &QComboBox::activated, this, [this] { m_printerIsChosen = true; });
    connect(m_ui->Text1, &QLineEdit::textChanged, this, &DialogOderEX::checkAccount);
    connect(m_ui->Command7, &QPushButton::clicked, this, &DialogOderEX::chooseFont);
    connect(m_ui->Command4, &QPushButton::clicked, this, [this] { show(transferSpecimen(), true); });
    connect(m_ui->Command2, &QPushButton::clicked, this, &DialogOderEX::print);
    connect(m_ui->Command3, &QPushButton::clicked, this, &DialogOderEX::reject);
}

// While it is typed: what is wrong with it stands below, and is told once more when it is to be printed.
void DialogOderEX::checkAccount()
{
    const auto account = transferAccount(m_ui->Text1->text());
    const bool isTyped = !m_ui->Text1->text().trimmed().isEmpty();
    m_ui->lblAccount->setText(account ? QString()
                              : isTyped
                                  ? account.error().text
                                  : u"払込取扱票を使わないときは、メイン画面の「郵便振替用紙を印刷する」の"
                                    "印を外すと、この画面は開きません。"_s);
    m_ui->lblAccount->setVisible(!account);
}

void DialogOderEX::chooseFont()
{
    const QFont shown(printing::installedFace(m_ui->txtFontName->text(), QFontDatabase::families()));
    if (const auto chosen = ui::file_dialogs::chooseFont(this, shown, u"フォント"_s))
        m_ui->txtFontName->setText(printing::withoutVerticalMark(chosen->family()));
}

TransferTexts DialogOderEX::texts() const
{
    return {m_ui->Text1->text(), m_ui->Text2->text(), m_ui->Text3->text(), m_ui->Text4->text()};
}

// What cannot be printed is told with the cursor where it is to be put right.
std::optional<TransferForm> DialogOderEX::entered()
{
    TransferForm form = m_isRun ? transferSpecimen() : TransferForm();
    form.texts = texts();
    if (!m_isRun) {
        form.payer = {m_ui->txtNouhinsaki1->text(), m_ui->txtNouhinsaki2->text(), m_ui->txtZip->text(),
                      m_ui->txtAddress1->text(),    m_ui->txtAddress2->text(),    m_ui->txtTel->text()};
        form.amount = text::parseNumber(m_ui->Text5->text()).value_or(0);
    }
    const auto values = transferFormValues(form);
    if (values)
        return form;
    if (!transferAccount(form.texts.account))
        m_ui->Text1->setFocus();
    else if (form.texts.payee.trimmed().isEmpty())
        m_ui->Text2->setFocus();
    else
        m_ui->Text5->setFocus();
    tell(values.status());
    return std::nullopt;
}

void DialogOderEX::print()
{
    const auto form = entered();
    if (!form)
        return;
    if (m_isRun)
        choosePrinter();
    else
        show(*form, false);
}

void DialogOderEX::show(const TransferForm &form, bool isSpecimen)
{
    if (!store())
        return;
    auto document = transferDocument(workspace(), form);
    if (!tell(document.status()))
        return;
    if (isSpecimen)
        document->title = u"位置合わせ 郵便振替用紙"_s;
    document->calibrationGrid = isSpecimen;
    const bool issued = printing::showPreview(workspace(), this, std::move(*document));
    m_issued = m_issued || (issued && !isSpecimen);
    if (issued && !isSpecimen)
        m_ui->Command3->setFocus(); // Enter goes on, and prints no second one
}

void DialogOderEX::choosePrinter()
{
    const auto selected =
        printing::selectPrinter(printing::printSystem(workspace()), workspace().settings, purpose,
                                m_printerIsChosen ? m_ui->Combo2->currentText() : QString());
    if (!tell(selected.status()))
        return;
    if (selected->installed.isEmpty()) {
        ui::prompts::inform(this, u"プリンタが見つかりません。プリンタを設定してください。"_s);
        return;
    }
    if (!store())
        return;
    const auto specimen = transferDocument(workspace(), *entered());
    if (!tell(specimen.status()))
        return;
    printing::DialogPrint dialog(workspace(), *specimen, *selected, this);
    dialog.keepTogether();
    dialog.exec();
    if (!dialog.choice())
        return;
    m_choice = dialog.choice();
    accept();
}

bool DialogOderEX::store()
{
    if (!m_right->confirm(this) || !m_down->confirm(this))
        return false;
    workspace::Settings &settings = workspace().settings;
    const TransferTexts typed = texts();
    settings.write(keys::oderText[0], typed.account);
    settings.write(keys::oderText[1], typed.payee);
    settings.write(keys::oderText[2], typed.note1);
    settings.write(keys::oderText[3], typed.note2);
    settings.write(keys::oderOffsetX, m_right->steps());
    settings.write(keys::oderOffsetY, m_down->steps());
    settings.write(keys::oderOption1, m_ui->Option1->isChecked());
    settings.write(keys::oderOption2, m_ui->Option2->isChecked());
    settings.write(printing::fontKey(purpose), m_ui->txtFontName->text());
    if (m_printerIsChosen)
        settings.write(printing::printerKey(purpose), m_ui->Combo2->currentText());
    tell(printing::flushed(settings)); // the form can be printed all the same
    return true;
}

bool DialogOderEX::mayClose() { return store(); }

} // namespace slips
