#include "printing/DialogPrinterP.h"

#include "printing/queue/paper_words.h"
#include "printing/queue/print_system.h"
#include "printing/queue/queue_words.h"
#include "ui/prompts.h"
#include "ui_DialogPrinterP.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr Purpose purpose = Purpose::ShippingSlips;

QString cannotBeShown() { return u"表示できません。"_s; }

} // namespace

DialogPrinterP::DialogPrinterP(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogPrinterP>())
{
    m_ui->setupUi(this);
    m_right = new OffsetBox(slipRight, *m_ui->Text1, *m_ui->UpDown1);
    m_down = new OffsetBox(slipDown, *m_ui->Text3, *m_ui->UpDown2);
    m_rightBefore = offsetFrom(workspace.settings.text(slipRight.key), slipRight);
    m_downBefore = offsetFrom(workspace.settings.text(slipDown.key), slipDown);
    restorePosition();
    m_ui->Check1->setChecked(workspace.panel.slipPaperDeclared);
    fillPrinters();
    connectAll();
    setUp();
    readPrinter();
    m_ui->Text1->setFocus(); // what lies under the arrow keys first is no printer
}

DialogPrinterP::~DialogPrinterP() = default;

void DialogPrinterP::connectAll()
{
    connect(m_ui->Combo3, &QComboBox::activated, this, [this] { m_isChosen = true; });
    connect(m_ui->Combo3, &QComboBox::currentIndexChanged, this, &DialogPrinterP::readPrinter);
    connect(m_ui->Combo1, &QComboBox::currentIndexChanged, this, &DialogPrinterP::showPaper);
    connect(m_ui->Check1, &QCheckBox::toggled, this, &DialogPrinterP::showRemark);
    for (QLineEdit *box : {m_ui->Text1, m_ui->Text3})
        connect(box, &QLineEdit::textChanged, this, &DialogPrinterP::showRemark);
    connect(m_ui->Command3, &QPushButton::clicked, this, &DialogPrinterP::showProperties);
    connect(m_ui->Command4, &QPushButton::clicked, this, &DialogPrinterP::restorePosition);
    connect(m_ui->Command2, &QPushButton::clicked, this, &DialogPrinterP::registerAll);
    m_ui->cmdAdjust->hide();
    connect(m_ui->cmdAdjust, &QPushButton::clicked, this, &DialogPrinterP::adjust);
    for (QPushButton *button : {m_ui->Command1, m_ui->Command5})
        connect(button, &QPushButton::clicked, this, &DialogPrinterP::reject);
}

void DialogPrinterP::setAdjuster(std::function<void(QWidget *)> adjust)
{
    m_adjust = std::move(adjust);
    m_ui->cmdAdjust->setVisible(bool(m_adjust));
}

// Tried on the position and the paper that stand here.
void DialogPrinterP::adjust()
{
    if (storePosition())
        m_adjust(this);
}

void DialogPrinterP::fillPrinters()
{
    const auto selected = selectPrinter(printSystem(workspace()), workspace().settings, purpose);
    if (!selected) {
        m_failure = selected.error().text;
        return;
    }
    m_selected = *selected;
    m_ui->Combo3->addItems(selected->installed);
    m_ui->Combo3->setCurrentText(selected->name);
}

void DialogPrinterP::readPrinter()
{
    m_abilities = {.mostCopies = 0};
    m_ui->Label4->clear();
    if (const QString printer = m_ui->Combo3->currentText(); !printer.isEmpty()) {
        const auto abilities = printSystem(workspace()).abilities(printer);
        if (abilities)
            m_abilities = *abilities;
        else
            m_ui->Label4->setText(cannotBeShown());
        m_failure = abilities ? QString() : abilities.error().text;
    }
    m_ui->Command3->setEnabled(m_ui->Combo3->count() > 0);
    m_ui->Label6->setText(m_abilities.mostCopies > 0
                              ? u"このプリンターの最大印刷部数は%1枚です。"_s.arg(m_abilities.mostCopies)
                              : QString());
    m_ui->Label7->setText(binText(usualBinCode(m_abilities)));
    showPapers();
    showRemark();
}

// The list begins at the paper that the printer has now.
void DialogPrinterP::showPapers()
{
    m_papers = listedPapers(m_abilities);
    const auto usual = usualPaper(m_abilities);
    const QSignalBlocker blocker(m_ui->Combo1);
    m_ui->Combo1->clear();
    for (ListedPaper &paper : m_papers) {
        if (usual && paper.code == usual->code)
            paper.size = usual->size;
        m_ui->Combo1->addItem(paperNameText(paper.code), paper.code);
    }
    m_ui->Combo1->setEnabled(!m_papers.empty());
    m_ui->Combo1->setCurrentIndex(usual ? m_ui->Combo1->findData(usual->code) : -1);
    showPaper();
}

void DialogPrinterP::showPaper()
{
    const int index = m_ui->Combo1->currentIndex();
    if (index < 0) {
        m_ui->Label8->clear();
        return;
    }
    const ListedPaper &paper = m_papers.at(static_cast<std::size_t>(index));
    m_ui->Label8->setText(paperSizeText(paper.code, describedMillimetres(paper.size)));
}

void DialogPrinterP::showRemark()
{
    QStringList remarks;
    if (!m_isChosen)
        remarks << missingInWords(m_selected);
    remarks << m_failure;
    if (const auto paper = slipPaper(m_ui->Check1->isChecked()); paper && m_failure.isEmpty())
        remarks << paperObstacle(m_abilities, m_ui->Combo3->currentText(), *paper);
    if (m_right->isFarOff() || m_down->isFarOff())
        remarks << u"出力位置を動かす量が多すぎるようです。"_s;
    remarks.removeAll(QString());
    m_ui->lblRemark->setText(remarks.join(u'\n'));
    m_ui->lblRemark->setVisible(!remarks.isEmpty());
}

void DialogPrinterP::showProperties()
{
    m_isElsewhere = printSystem(workspace()).showPrinterProperties(m_ui->Combo3->currentText());
    readPrinter();
    if (!m_isElsewhere)
        m_ui->Label4->setText(cannotBeShown());
}

// The system's window stays beside this one: what was changed there shows when the clerk comes back.
void DialogPrinterP::becameActive()
{
    if (std::exchange(m_isElsewhere, false))
        readPrinter();
}

void DialogPrinterP::restorePosition()
{
    m_right->setSteps(m_rightBefore);
    m_down->setSteps(m_downBefore);
}

bool DialogPrinterP::isPrinterChanged() const
{
    return m_isChosen && m_ui->Combo3->currentText() != workspace().settings.text(printerKey(purpose));
}

void DialogPrinterP::storePrinter()
{
    if (m_isChosen || (m_selected.missing.isEmpty() && m_ui->Combo3->currentIndex() >= 0))
        workspace().settings.write(printerKey(purpose), m_ui->Combo3->currentText());
}

bool DialogPrinterP::storePosition()
{
    workspace::Settings &settings = workspace().settings;
    settings.write(slipRight.key, m_right->steps());
    settings.write(slipDown.key, m_down->steps());
    settings.write(workspace::keys::kuUserSize, m_ui->Check1->isChecked());
    workspace().panel.slipPaperDeclared = m_ui->Check1->isChecked();
    return tell(flushed(settings));
}

void DialogPrinterP::registerAll()
{
    storePrinter();
    if (storePosition())
        m_ui->Label4->setText(u"登録しました。"_s);
}

// Which printer it is was perhaps only looked at; the rest is stored by closing.
bool DialogPrinterP::mayClose()
{
    if (isPrinterChanged()) {
        const auto choice = ui::prompts::askHowToLeave(
            this, u"送り状のプリンタを「%1」に変えますか。"_s.arg(m_ui->Combo3->currentText()),
            {u"変える"_s, u"変えない"_s});
        if (choice == ui::prompts::Choice::Cancel)
            return false;
        if (choice == ui::prompts::Choice::Save)
            storePrinter();
    }
    storePosition();
    return true;
}

frmPrinterP::frmPrinterP(workspace::Workspace &workspace, QWidget *parent)
    : DialogPrinterP(workspace, parent)
{
    setObjectName(u"frmPrinterP"_s);
}

} // namespace printing
