#include "reports/daily/DialogDayReport.h"

#include "printing/font_names.h"
#include "printing/frmPreview.h"
#include "printing/print_frame.h"
#include "printing/queue/print_system.h"
#include "reports/daily/day_report_rows.h"
#include "reports/daily/day_report_sheets.h"
#include "reports/report_actions.h"
#include "text/numbers.h"
#include "ui/file_dialogs.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogDayReport.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QFontDatabase>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr printing::Purpose purpose = printing::Purpose::DailyReports;

} // namespace

DialogDayReport::DialogDayReport(workspace::Workspace &workspace, QWidget *parent, DayReportKind kind)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogDayReport>())
    , m_kind(kind)
{
    m_ui->setupUi(this);
    fitForm();
    showSettings();
    connectControls();
    setUp();
    fitGrid();
    showReport(DayReport{.kind = kind, .period = period()});
}

DialogDayReport::~DialogDayReport() = default;

void DialogDayReport::fitForm()
{
    setWindowTitle(QString::fromUtf16(descriptionOf(m_kind).name));
    m_ui->DTPicker1->setDate(workspace().today());
    m_ui->DTPicker2->setDate(workspace().today());
    m_ui->Picture4->setMenu(new QMenu(m_ui->Picture4));
    m_ui->lblMessage->setWordWrap(true); // its remarks may be longer than a small display is wide
}

// Goods and money have columns of their own, each with their widths.
void DialogDayReport::fitGrid()
{
    m_ui->dgdSub->setAccessibleName(windowTitle());
    m_ui->dgdSub->showColumns(rowsOf(DayReport{.kind = m_kind}).columns);
    const QString name = descriptionOf(m_kind).hasGoods ? u"/dgdSub"_s : u"/dgdSubMoney"_s;
    m_ui->dgdSub->setUp(workspace(), layoutName() + name);
}

void DialogDayReport::showSettings()
{
    const workspace::Settings &settings = workspace().settings;
    const bool lying = settings.checked(workspace::keys::checkCOption2);
    (lying ? m_ui->Option2 : m_ui->Option1)->setChecked(true);
    m_ui->txtFontName->setText(printing::withoutVerticalMark(settings.text(printing::fontKey(purpose))));
    showPrinter();
}

void DialogDayReport::storeSettings()
{
    workspace::Settings &settings = workspace().settings;
    settings.write(workspace::keys::checkCOption1, m_ui->Option1->isChecked());
    settings.write(workspace::keys::checkCOption2, m_ui->Option2->isChecked());
}

bool DialogDayReport::mayClose()
{
    storeSettings();
    return true;
}

void DialogDayReport::connectControls()
{
    const std::pair<QPushButton *, void (DialogDayReport::*)()> actions[] = {
        {m_ui->Command5, &DialogDayReport::showRows},    {m_ui->Command3, &DialogDayReport::print},
        {m_ui->cmdExport, &DialogDayReport::writeTable}, {m_ui->cmdOpen, &DialogDayReport::openSlip},
        {m_ui->Command7, &DialogDayReport::chooseFont},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->cmdDayBefore, &QPushButton::clicked, this, [this] { goTo(period().from.addDays(-1)); });
    connect(m_ui->cmdToday, &QPushButton::clicked, this, [this] { goTo(workspace().today()); });
    connect(m_ui->cmdDayAfter, &QPushButton::clicked, this, [this] { goTo(period().to.addDays(1)); });
    connect(m_ui->Picture4->menu(), &QMenu::aboutToShow, this, &DialogDayReport::choosePrinter);
    for (const ui::DateBox *box : {m_ui->DTPicker1, m_ui->DTPicker2})
        connect(box, &QDateEdit::dateChanged, this, &DialogDayReport::showState);
    connect(m_ui->dgdSub, &QTableView::doubleClicked, m_ui->cmdOpen, &QPushButton::click);
    connect(m_ui->dgdSub->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { m_ui->cmdOpen->setEnabled(m_ui->dgdSub->currentLink().isValid()); });
}

// That today has no slips yet is no news worth a box when the screen opens.
void DialogDayReport::becameActive()
{
    if (!m_hasRead)
        tell(read());
}

book::Period DialogDayReport::period() const { return {m_ui->DTPicker1->date(), m_ui->DTPicker2->date()}; }

// --- The rows ---

void DialogDayReport::showRows()
{
    if (!tell(read())) {
        m_ui->DTPicker1->setFocus();
    } else if (m_report.lines.empty()) {
        ui::prompts::inform(this, nothingInPeriod());
        m_ui->DTPicker1->setFocus();
    } else {
        m_ui->dgdSub->setFocus();
    }
}

void DialogDayReport::goTo(const QDate &day)
{
    m_ui->DTPicker1->setDate(day);
    m_ui->DTPicker2->setDate(day);
    tell(read());
}

base::Status DialogDayReport::read()
{
    m_hasRead = true;
    const book::Period asked = period();
    auto report = ui::runWithProgress(this, u"集計しています。"_s, [&](const base::Progress & /*whole*/) {
        return readDayReport(workspace().connection, m_kind, asked);
    });
    // After a failure the rows no longer stand for what the boxes above them say.
    showReport(report ? std::move(*report) : DayReport{.kind = m_kind, .period = asked});
    return report.status();
}

void DialogDayReport::showReport(DayReport report)
{
    m_report = std::move(report);
    m_ui->dgdSub->setReport(rowsOf(m_report));
    m_ui->txtTotal->setText(text::formatAmount(m_report.total));
    const bool any = !m_report.lines.empty();
    m_ui->cmdExport->setEnabled(any);
    m_ui->cmdOpen->setEnabled(m_ui->dgdSub->currentLink().isValid());
    showState();
}

QString DialogDayReport::summary() const
{
    if (m_report.lines.empty())
        return nothingInPeriod();
    const QString counts = u"伝票 %1 件、明細 %2 行"_s.arg(m_report.slips).arg(m_report.lines.size());
    return (QStringList{counts} + notesOn(m_report)).join(u'　');
}

// Rows of one day under the date of another would be taken for what they are not.
void DialogDayReport::showState()
{
    const book::Period asked = period();
    const bool isShown = asked.from == m_report.period.from && asked.to == m_report.period.to;
    m_ui->lblMessage->setText(isShown ? summary() : u"期間が変わりました。「表示」を押すと読み直します。"_s);
}

// --- What is done with them ---

// Of the period in the boxes as the book is now, whatever is shown.
void DialogDayReport::print()
{
    if (!tell(read())) {
        m_ui->DTPicker1->setFocus();
        return;
    }
    if (m_report.lines.empty()) {
        ui::prompts::inform(this, nothingInPeriod());
        m_ui->DTPicker1->setFocus();
        return;
    }
    printing::Document document;
    document.title = m_ui->dgdSub->report().documentName;
    document.purpose = purpose;
    document.sheets =
        dayReportSheets(m_report, m_ui->Option2->isChecked() ? DayPaper::Lying : DayPaper::Upright);
    printing::showPreview(workspace(), this, std::move(document));
}

void DialogDayReport::writeTable() { exportReport(this, m_ui->dgdSub->report()); }

void DialogDayReport::openSlip()
{
    if (openSlipOf(workspace(), this, m_ui->dgdSub->currentLink()))
        tell(read());
}

// --- Printer and font ---

void DialogDayReport::showPrinter()
{
    const QString stored = workspace().settings.text(printing::printerKey(purpose));
    m_ui->LblPrinterName->setText(stored.isEmpty() ? u"通常使うプリンタ"_s : stored);
}

// The printers are asked for when they are wanted: on a network that may take a moment.
void DialogDayReport::choosePrinter()
{
    QMenu *menu = m_ui->Picture4->menu();
    menu->clear();
    menu->addAction(u"通常使うプリンタ"_s, this, [this] { usePrinter({}); });
    const auto queues = printing::printSystem(workspace()).queues();
    if (!queues) {
        menu->addAction(queues.error().text)->setEnabled(false);
        return;
    }
    for (const QString &name : queues->names)
        menu->addAction(QString(name).replace(u'&', u"&&"_s), this, [this, name] { usePrinter(name); });
}

void DialogDayReport::usePrinter(const QString &name)
{
    workspace().settings.write(printing::printerKey(purpose), name);
    showPrinter();
}

void DialogDayReport::chooseFont()
{
    const QFont shown(printing::installedFace(m_ui->txtFontName->text(), QFontDatabase::families()));
    const auto chosen = ui::file_dialogs::chooseFont(this, shown, u"フォント"_s);
    if (!chosen)
        return;
    m_ui->txtFontName->setText(printing::withoutVerticalMark(chosen->family()));
    workspace().settings.write(printing::fontKey(purpose), m_ui->txtFontName->text());
}

} // namespace reports
