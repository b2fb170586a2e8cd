#include "printing/DialogPrint.h"

#include "printing/print_frame.h"
#include "printing/queue/queue_words.h"
#include "printing/text_fit.h"
#include "ui/prompts.h"
#include "ui_DialogPrint.h"
#include "workspace/workspace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int manyCopies = 20; // more are rather a slip of the hand

QSizeF paperOf(const Document &document)
{
    const Sheet &sheet = document.sheets.front();
    return {sheet.paperWidth, sheet.paperHeight};
}

std::optional<QMarginsF> unprintableFor(const QSizeF &paper, const QueueAbilities &abilities)
{
    const QMarginsF margins = unprintableOn(abilities, paper);
    return margins.isNull() ? std::nullopt : std::optional(margins);
}

// Where the farthest text ends, as it is read, millimetres; of squeezed text its room.
QSizeF reachOf(const Sheet &sheet)
{
    QSizeF reach;
    for (const TextItem &item : sheet.texts) {
        const double length = textWidth(item.text, item.points) * twipsPerMillimetre;
        const double taken = item.room > 0 ? std::min(item.room, length) : length;
        const double right = item.x + taken * (1 - shareBefore(item.align));
        const double bottom = item.y + item.points * twipsPerPoint;
        reach = reach.expandedTo(QSizeF(right, bottom) / twipsPerMillimetre);
    }
    return reach;
}

QString tooSmall(const QSizeF &paper, const Sheet &sheet)
{
    const QSizeF reach = reachOf(sheet);
    if (reach.width() <= paper.width() && reach.height() <= paper.height())
        return {};
    return u"プリンタの用紙（%1）からはみ出すものがあります。用紙か、プリンタの設定の「用紙サイズの通知」を"
           "確かめてください。"_s.arg(paperInWords(paper));
}

} // namespace

DialogPrint::DialogPrint(workspace::Workspace &workspace, const Document &document,
                         const SelectedPrinter &selected, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogPrint>())
    , m_document(document)
    , m_selected(selected.name)
    , m_missing(missingInWords(selected))
{
    m_ui->setupUi(this);
    const int pages = static_cast<int>(document.sheets.size());
    for (QSpinBox *page : {m_ui->spnFirst, m_ui->spnLast})
        page->setRange(1, pages);
    m_ui->spnLast->setValue(pages);
    m_ui->lblPages->setText(u"/ 全 %1 ページ"_s.arg(pages));
    m_ui->cboQueue->addItems(selected.installed);
    m_ui->cboQueue->setCurrentText(selected.name);
    connect(m_ui->cboQueue, &QComboBox::currentIndexChanged, this, &DialogPrint::readQueue);
    for (QSpinBox *page : {m_ui->spnFirst, m_ui->spnLast})
        connect(page, &QSpinBox::valueChanged, this, [this] { m_ui->optRange->setChecked(true); });
    connect(m_ui->cmdPrint, &QPushButton::clicked, this, &DialogPrint::print);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &DialogPrint::reject);
    setUp();
    readQueue();
    m_ui->cmdPrint->setFocus();
}

DialogPrint::~DialogPrint() = default;

void DialogPrint::keepTogether(const QString &what)
{
    constexpr int mostShown = 24; // characters of a title, which may hold a name of any length
    const int room = mostShown * fontMetrics().horizontalAdvance(u'漢');
    if (!what.isEmpty())
        m_ui->lblPages->setText(fontMetrics().elidedText(what, Qt::ElideRight, room));
    m_ui->lblPages->setToolTip(what);
    m_ui->optAll->setChecked(true);
    for (QWidget *control : std::initializer_list<QWidget *>{m_ui->optRange, m_ui->spnFirst, m_ui->spnLast})
        control->setEnabled(false);
}

QSizeF DialogPrint::paper() const
{
    if (m_document.onPrintersPaper && m_abilities && m_abilities->usualPaper)
        return m_abilities->usualPaper->size;
    return paperOf(m_document);
}

void DialogPrint::readQueue()
{
    m_abilities.reset();
    if (m_ui->cboQueue->currentIndex() >= 0) {
        const auto abilities = printSystem(workspace()).abilities(m_ui->cboQueue->currentText());
        if (abilities)
            m_abilities = *abilities;
        m_failure = abilities ? QString() : abilities.error().text;
    }
    m_ui->spnCopies->setMaximum(m_abilities ? m_abilities->mostCopies : 1);
    m_ui->lblPaper->setText(paperInWords(paper()));
    showBins();
    showRemark();
}

void DialogPrint::showBins()
{
    m_ui->cboBin->clear();
    m_ui->cboBin->addItem(u"自動（プリンタの設定のまま）"_s, QString());
    if (m_abilities) {
        for (const QString &bin : m_abilities->bins)
            m_ui->cboBin->addItem(binInWords(bin), bin);
    }
    m_ui->cboBin->setCurrentIndex(std::max(0, m_ui->cboBin->findData(m_document.sheets.front().bin)));
    m_ui->cboBin->setEnabled(m_ui->cboBin->count() > 1);
}

QString DialogPrint::obstacle() const
{
    if (!m_abilities)
        return m_failure;
    if (m_document.onPrintersPaper)
        return {};
    return paperObstacle(*m_abilities, m_ui->cboQueue->currentText(), paper());
}

void DialogPrint::showRemark()
{
    QStringList remarks;
    if (!m_missing.isEmpty() && m_ui->cboQueue->currentText() == m_selected)
        remarks << m_missing;
    if (const QString hindrance = obstacle(); !hindrance.isEmpty())
        remarks << hindrance;
    else if (const QString trouble = troubleInWords(m_abilities->state); !trouble.isEmpty())
        remarks << trouble + u"。印刷すると、動きだすまで待つことになります。"_s;
    if (m_document.onPrintersPaper)
        remarks << tooSmall(paper(), m_document.sheets.front());
    remarks.removeAll(QString());
    m_ui->lblRemark->setText(remarks.join(u'\n'));
    m_ui->lblRemark->setVisible(!remarks.isEmpty());
}

void DialogPrint::print()
{
    if (const QString hindrance = obstacle(); !hindrance.isEmpty()) {
        ui::prompts::inform(this, hindrance);
        m_ui->cboQueue->setFocus();
        return;
    }
    const int copies = m_ui->spnCopies->value();
    if (copies > manyCopies &&
        !ui::prompts::askCautiously(this, u"%1 部印刷します。よろしいですか。"_s.arg(copies))) {
        m_ui->spnCopies->setFocus();
        return;
    }
    const bool isRange = m_ui->optRange->isChecked();
    const auto [first, last] = std::minmax({m_ui->spnFirst->value(), m_ui->spnLast->value()});
    m_choice = PrintChoice{{.queue = m_ui->cboQueue->currentText(),
                            .paper = paper(),
                            .bin = m_ui->cboBin->currentData().toString(),
                            .copies = copies,
                            .resolution = resolutionToAskFor(*m_abilities),
                            .unprintable = unprintableFor(paper(), *m_abilities)},
                           isRange ? first : 1,
                           isRange ? last : m_ui->spnFirst->maximum()};
    accept();
}

} // namespace printing
