#include "printing/DialogPrinterSet.h"

#include "printing/DialogPrinters.h"
#include "printing/font_names.h"
#include "printing/frmPreview.h"
#include "printing/queue/print_system.h"
#include "printing/queue/queue_words.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui_DialogPrinterSet.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QFontDatabase>
#include <QShortcut>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr Purpose purpose = Purpose::DeliveryNotesAndBills;

} // namespace

DialogPrinterSet::DialogPrinterSet(workspace::Workspace &workspace, CalibrationSheet sheet, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogPrinterSet>())
    , m_sheet(std::move(sheet))
{
    m_ui->setupUi(this);
    m_bill = new OffsetBox(billDown, *m_ui->Text8, *m_ui->UpDown1, m_ui->Label3);
    m_note = new OffsetBox(noteDown, *m_ui->Text2, *m_ui->UpDown2, m_ui->Label5);
    m_receipt = new OffsetBox(receiptDown, *m_ui->Text1, *m_ui->UpDown3, m_ui->Label6);
    m_right = new OffsetBox(noteRight, *m_ui->Text3, *m_ui->UpDown4, m_ui->Label7);
    m_addressee = new OffsetBox(addresseeRight, *m_ui->Text4, *m_ui->UpDown5);
    fillPrinters();
    showSettings();
    connectAll();
    setUp();
    showPrinter();
    m_ui->Text8->setFocus(); // the arrow keys move nothing that is stored at once
}

DialogPrinterSet::~DialogPrinterSet() = default;

void DialogPrinterSet::connectAll()
{
    connect(m_ui->Combo2, &QComboBox::activated, this, [this] { m_isChosen = true; });
    connect(m_ui->Combo2, &QComboBox::currentIndexChanged, this, &DialogPrinterSet::showPrinter);
    connect(m_ui->cmdProperties, &QPushButton::clicked, this, &DialogPrinterSet::showProperties);
    connect(m_ui->Command7, &QPushButton::clicked, this, &DialogPrinterSet::chooseFont);
    connect(m_ui->Command49, &QPushButton::clicked, this, &DialogPrinterSet::print);
    m_ui->cmdAdjust->hide();
    connect(m_ui->cmdAdjust, &QPushButton::clicked, this, [this] {
        m_adjust(this);
        showPrinter(); // the form may be of another size now
    });
    connect(m_ui->cmdPurposes, &QPushButton::clicked, this,
            [this] { DialogPrinters(this->workspace(), this).exec(); });
    connect(m_ui->Command1, &QPushButton::clicked, this, &DialogPrinterSet::store);
    connect(m_ui->Command3, &QPushButton::clicked, this, &DialogPrinterSet::reject);
    // The label bears its letter without a mark.
    auto *letter = new QShortcut(Qt::ALT | Qt::Key_N, this);
    connect(letter, &QShortcut::activated, m_ui->Combo2, qOverload<>(&QWidget::setFocus));
}

void DialogPrinterSet::setBillSheet(CalibrationSheet sheet) { m_billSheet = std::move(sheet); }

void DialogPrinterSet::setAdjuster(std::function<void(QWidget *)> adjust)
{
    m_adjust = std::move(adjust);
    m_ui->cmdAdjust->setVisible(bool(m_adjust));
}

void DialogPrinterSet::fillPrinters()
{
    const auto selected = selectPrinter(printSystem(workspace()), workspace().settings, purpose);
    if (!selected) {
        m_failure = selected.error().text;
        return;
    }
    m_selected = *selected;
    m_ui->Combo2->addItems(selected->installed);
    m_ui->Combo2->setCurrentText(selected->name);
}

void DialogPrinterSet::showSettings()
{
    m_ui->txtFontName->setText(withoutVerticalMark(workspace().settings.text(fontKey(purpose))));
    show(noteSteps(workspace().settings));
}

void DialogPrinterSet::show(const NoteSteps &steps)
{
    m_bill->setSteps(steps.billDown);
    m_note->setSteps(steps.noteDown);
    m_receipt->setSteps(steps.receiptDown);
    m_right->setSteps(steps.right);
    m_addressee->setSteps(steps.addresseeRight);
    m_ui->Check1->setChecked(steps.totalsHigher);
}

NoteSteps DialogPrinterSet::entered() const
{
    return {m_bill->steps(),  m_note->steps(),      m_receipt->steps(),
            m_right->steps(), m_addressee->steps(), m_ui->Check1->isChecked()};
}

void DialogPrinterSet::showPrinter()
{
    const QString printer = m_ui->Combo2->currentText();
    m_ui->LblPrinterName->setText(printer.isEmpty() ? u"プリンタが見つかりません。"_s : printer);
    m_ui->Label4->clear();
    m_ui->cmdProperties->setEnabled(!printer.isEmpty());
    QStringList remarks{m_isChosen ? QString() : missingInWords(m_selected), obstacle()};
    remarks.removeAll(QString());
    m_ui->lblRemark->setText(remarks.join(u'\n'));
    m_ui->lblRemark->setVisible(!remarks.isEmpty());
}

QString DialogPrinterSet::obstacle() const
{
    const QString printer = m_ui->Combo2->currentText();
    if (printer.isEmpty())
        return m_failure;
    const auto abilities = printSystem(workspace()).abilities(printer);
    if (!abilities)
        return abilities.error().text;
    const auto document = m_sheet(entered());
    if (!document || document->sheets.empty())
        return {};
    const Sheet &sheet = document->sheets.front();
    return paperObstacle(*abilities, printer, {sheet.paperWidth, sheet.paperHeight});
}

void DialogPrinterSet::chooseFont()
{
    const QFont shown(installedFace(m_ui->txtFontName->text(), QFontDatabase::families()));
    if (const auto chosen = ui::file_dialogs::chooseFont(this, shown, u"フォント"_s))
        m_ui->txtFontName->setText(withoutVerticalMark(chosen->family()));
}

void DialogPrinterSet::showProperties()
{
    const bool isShown = printSystem(workspace()).showPrinterProperties(m_ui->Combo2->currentText());
    showPrinter();
    m_ui->Label4->setText(isShown ? QString() : u"表示できません。"_s);
}

const CalibrationSheet *DialogPrinterSet::chosenSheet()
{
    if (!m_billSheet)
        return &m_sheet;
    const auto way =
        ui::prompts::askWhichWay(this, u"どちらの用紙の位置を合わせますか。"_s, {u"納品書"_s, u"請求書"_s});
    if (!way)
        return nullptr;
    return *way == 0 ? &m_sheet : &m_billSheet;
}

// As it is entered, not as it is stored: a shopkeeper prints, measures and moves until it fits.
void DialogPrinterSet::print()
{
    const CalibrationSheet *sheet = chosenSheet();
    if (!sheet)
        return;
    auto document = (*sheet)(entered());
    if (!tell(document.status()))
        return;
    document->printer = m_ui->Combo2->currentText();
    document->font = m_ui->txtFontName->text();
    document->calibrationGrid = true;
    showPreview(workspace(), this, std::move(*document));
}

// What is stored for a printer that is gone stays, until another one is chosen by hand.
QString DialogPrinterSet::printerToStore() const
{
    const QString printer = m_ui->Combo2->currentText();
    const bool isMeant = m_isChosen || m_selected.missing.isEmpty();
    return isMeant && !printer.isEmpty() ? printer : workspace().settings.text(printerKey(purpose));
}

bool DialogPrinterSet::isChanged() const
{
    const workspace::Settings &settings = workspace().settings;
    return entered() != noteSteps(settings) ||
           m_ui->txtFontName->text() != withoutVerticalMark(settings.text(fontKey(purpose))) ||
           (m_isChosen && printerToStore() != settings.text(printerKey(purpose)));
}

bool DialogPrinterSet::confirmFarOffsets()
{
    return std::ranges::all_of(std::array{m_bill, m_note, m_receipt, m_right, m_addressee},
                               [this](const OffsetBox *box) { return box->confirm(this); });
}

bool DialogPrinterSet::storeSettings()
{
    if (!confirmFarOffsets())
        return false;
    workspace::Settings &settings = workspace().settings;
    settings.write(printerKey(purpose), printerToStore());
    settings.write(fontKey(purpose), m_ui->txtFontName->text());
    storeNoteSteps(settings, entered());
    return tell(flushed(settings));
}

void DialogPrinterSet::store()
{
    if (storeSettings())
        reject();
}

bool DialogPrinterSet::mayClose()
{
    if (!isChanged())
        return true;
    const auto choice = ui::prompts::askHowToLeave(this, u"変更した内容は、まだ登録されていません。"_s,
                                                   {u"登録して閉じる"_s, u"登録しないで閉じる"_s});
    return choice == ui::prompts::Choice::Discard || (choice == ui::prompts::Choice::Save && storeSettings());
}

} // namespace printing
