#include "shipping/addresses/AddressPanel.h"

#include "printing/font_names.h"
#include "printing/offset_box.h"
#include "printing/print_frame.h"
#include "printing/queue/print_system.h"
#include "shipping/addresses/address_print.h"
#include "shipping/slips/label_place_box.h"
#include "shipping/slips/label_places.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui_AddressPanel.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QFontDatabase>

using namespace Qt::StringLiterals;
namespace keys = workspace::keys;

namespace shipping
{

namespace
{

QString millimetres(const QSizeF &size) { return u"%1 × %2 mm"_s.arg(size.width()).arg(size.height()); }

} // namespace

AddressPanel::AddressPanel(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::AddressPanel>())
{
    m_ui->setupUi(this);
    // Stands for its boxes in the screen's tab order.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->cmbPaper);
}

AddressPanel::~AddressPanel() = default;

void AddressPanel::bind(workspace::Workspace &workspace, printing::Purpose purpose)
{
    m_workspace = &workspace;
    m_purpose = purpose;
    m_places = new LabelPlaceBox(workspace, this);
    m_ui->layoutLabels->addWidget(m_places);
    setTabOrder(m_ui->optHorizontal, m_places);
    setTabOrder(m_places, m_ui->Aop1);
    m_right = new printing::OffsetBox(printing::letterRight, *m_ui->Text7, *m_ui->UpDown1);
    m_down = new printing::OffsetBox(printing::letterDown, *m_ui->Text8, *m_ui->UpDown2);
    m_right->setParent(this);
    m_down->setParent(this);
    for (const AddressPaper &paper : addressPapers())
        m_ui->cmbPaper->addItem(paper.name);
    fillPrinters();
    showSettings();
    connect(m_ui->cmbPaper, &QComboBox::currentIndexChanged, this, &AddressPanel::choosePaper);
    connect(m_ui->optVertical, &QRadioButton::toggled, this, &AddressPanel::showStates);
    connect(m_ui->Combo2, &QComboBox::activated, this, [this] { m_printerIsChosen = true; });
    connect(m_ui->Command7, &QPushButton::clicked, this, &AddressPanel::chooseFont);
    choosePaper();
}

void AddressPanel::fillPrinters()
{
    const auto selected =
        printing::selectPrinter(printing::printSystem(*m_workspace), m_workspace->settings, m_purpose);
    m_ui->Combo2->addItems(selected ? selected->installed : QStringList());
    m_ui->Combo2->setCurrentText(selected ? selected->name : QString());
    const QString none =
        selected ? u"プリンタが見つかりません。PDF に保存できます。"_s : selected.error().text;
    m_ui->LblPrinterName->setText(m_ui->Combo2->count() == 0 ? none : printing::missingInWords(*selected));
    m_ui->LblPrinterName->setVisible(!m_ui->LblPrinterName->text().isEmpty());
}

void AddressPanel::showSettings()
{
    const workspace::Settings &settings = m_workspace->settings;
    const AddressChoice stored = addressChoice(settings);
    m_ui->cmbPaper->setCurrentText(stored.paper);
    (stored.writing == Writing::Vertical ? m_ui->optVertical : m_ui->optHorizontal)->setChecked(true);
    const AddressStyle written = addressStyle(settings);
    m_ui->Aop1->setChecked(written.sender);
    m_ui->Aop2->setChecked(written.kanji);
    m_ui->Aop3->setChecked(written.no);
    m_ui->Aop4->setChecked(written.boxes);
    m_ui->Aop5->setChecked(written.honours);
    m_right->setSteps(printing::offsetFrom(settings.text(keys::letterOffsetX), printing::letterRight));
    m_down->setSteps(printing::offsetFrom(settings.text(keys::letterOffsetY), printing::letterDown));
    m_ui->txtFontName->setText(printing::withoutVerticalMark(settings.text(printing::fontKey(m_purpose))));
}

void AddressPanel::choosePaper()
{
    const AddressPaper &paper = addressPaper(m_ui->cmbPaper->currentText());
    m_ui->optVertical->setEnabled(paper.mayBe(Writing::Vertical));
    if (!paper.mayBe(Writing::Vertical))
        m_ui->optHorizontal->setChecked(true);
    m_places->setForm(paper.isLabels ? labelForm() : QString());
    m_places->setVisible(paper.isLabels);
    showStates();
}

// What has no effect on this paper cannot be ticked.
void AddressPanel::showStates()
{
    const AddressChoice chosen = choice();
    const AddressPaper &paper = addressPaper(chosen.paper);
    const bool isColumn = chosen.writing == Writing::Vertical;
    m_ui->Aop1->setEnabled(!paper.isLabels);
    m_ui->Aop2->setEnabled(isColumn);
    m_ui->Aop3->setEnabled(isColumn);
    m_ui->Aop4->setEnabled(paper.usesBoxes(chosen.writing));
    const bool lies = paper.liesAcross && !isColumn;
    m_ui->lblPaperNote->setText(lies ? millimetres(paper.size.transposed()) + u"　横に置いて書きます"_s
                                     : millimetres(paper.size));
}

void AddressPanel::chooseFont()
{
    const QFont shown(printing::installedFace(m_ui->txtFontName->text(), QFontDatabase::families()));
    if (const auto chosen = ui::file_dialogs::chooseFont(window(), shown, u"フォント"_s))
        m_ui->txtFontName->setText(printing::withoutVerticalMark(chosen->family()));
}

AddressStyle AddressPanel::style() const
{
    return {m_ui->Aop1->isChecked(), m_ui->Aop2->isChecked(), m_ui->Aop3->isChecked(),
            m_ui->Aop4->isChecked(), m_ui->Aop5->isChecked()};
}

AddressChoice AddressPanel::choice() const
{
    AddressChoice chosen = addressChoice(m_workspace->settings);
    chosen.paper = m_ui->cmbPaper->currentText();
    chosen.writing = m_ui->optVertical->isChecked() ? Writing::Vertical : Writing::Horizontal;
    return chosen;
}

QString AddressPanel::printer() const { return m_printerIsChosen ? m_ui->Combo2->currentText() : QString(); }

base::Result<AddressSetup> AddressPanel::setup() const
{
    return addressSetup(*m_workspace, choice(), style());
}

bool AddressPanel::store()
{
    if (!m_right->confirm(window()) || !m_down->confirm(window()))
        return false;
    workspace::Settings &settings = m_workspace->settings;
    storeAddressChoice(settings, choice());
    storeAddressStyle(settings, style());
    settings.write(keys::letterOffsetX, m_right->steps());
    settings.write(keys::letterOffsetY, m_down->steps());
    settings.write(printing::fontKey(m_purpose), m_ui->txtFontName->text());
    if (m_printerIsChosen)
        settings.write(printing::printerKey(m_purpose), m_ui->Combo2->currentText());
    // Addresses can be printed all the same.
    if (const base::Status kept = printing::flushed(settings); !kept)
        ui::prompts::inform(window(), kept.error().text);
    return true;
}

void AddressPanel::reloadPlaces() { m_places->reload(); }

} // namespace shipping
