#include "printing/frmPreview.h"

#include "ui_frmPreview.h"

#include "printing/DialogPrint.h"
#include "printing/DialogPrintJobs.h"
#include "printing/pdf.h"
#include "printing/sheet_view.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"
#include "workspace/workspace_targets.h"

#include <QAction>
#include <QFileInfo>
#include <QKeyEvent>
#include <QTimer>
#include <QToolTip>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

Document pagesOf(const Document &document, const PrintChoice &choice)
{
    Document chosen;
    chosen.title = document.title;
    chosen.purpose = document.purpose;
    chosen.onPrintersPaper = document.onPrintersPaper;
    chosen.richTexts = document.richTexts;
    chosen.sheets = document.sheets.part(static_cast<std::size_t>(choice.firstPage - 1),
                                         static_cast<std::size_t>(choice.lastPage - choice.firstPage + 1));
    return chosen;
}

// Whether there are texts, and none of them begins on the paper.
bool isOffThePaper(const Sheet &sheet)
{
    const QRectF paper(0, 0, twipsFromMillimetres(sheet.readWidth()),
                       twipsFromMillimetres(sheet.readHeight()));
    return !sheet.texts.empty() && std::ranges::none_of(sheet.texts, [&paper](const TextItem &text) {
        return paper.contains(QPointF(text.x, text.y));
    });
}

} // namespace

frmPreview::frmPreview(workspace::Workspace &workspace, Document document, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmPreview>())
    , m_document(std::move(document))
    , m_look{fontFace(workspace.settings, m_document.purpose, m_document.font), m_document.calibrationGrid}
{
    m_ui->setupUi(this);
    m_ui->chkGrid->setChecked(m_look.calibrationGrid);
    setWindowTitle(u"印刷プレビュー　"_s + m_document.title);
    m_ui->LblPrinterName->setText(u"プリンタを調べています。"_s);
    showRemark();
    addPages();
    addShortcuts();
    setUp();
    showPage();
}

frmPreview::~frmPreview() = default;

void frmPreview::onlyShow()
{
    m_ui->cmdPrint->setEnabled(false);
    m_ui->cmdPrint->hide();
}

void frmPreview::showRemark()
{
    QStringList remarks{m_document.remark};
    if (!m_document.sheets.empty() && isOffThePaper(m_document.sheets.front()))
        remarks << u"この出力位置では、すべて用紙の外です。プリンタの設定で位置を直してください。"_s;
    remarks.removeAll(QString());
    m_ui->lblRemark->setText(remarks.join(u'\n'));
    m_ui->lblRemark->setVisible(!remarks.isEmpty());
}

void frmPreview::addPages()
{
    m_preview = new SheetView(m_document, m_look, this);
    m_preview->setObjectName(u"preview"_s);
    m_preview->setAccessibleName(u"印刷プレビュー"_s);
    m_preview->setMinimumHeight(360);
    m_ui->pages->addWidget(m_preview);
    m_ui->spnPage->setRange(1, std::max(1, m_preview->pageCount()));
    connect(m_preview, &SheetView::turned, this, &frmPreview::showPage);
    connect(m_ui->spnPage, &QSpinBox::valueChanged, m_preview, &SheetView::turnTo);
    connect(m_ui->cmdPrint, &QPushButton::clicked, this, &frmPreview::print);
    connect(m_ui->cmdPdf, &QPushButton::clicked, this, &frmPreview::savePdf);
    connect(m_ui->cmdPrevious, &QPushButton::clicked, this, [this] { m_preview->turnTo(page() - 1); });
    connect(m_ui->cmdNext, &QPushButton::clicked, this, [this] { m_preview->turnTo(page() + 1); });
    connectZoom();
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmPreview::reject);
    connect(m_ui->cmdJobs, &QPushButton::clicked, this,
            [this] { DialogPrintJobs(this->workspace(), this).exec(); });
    connect(m_ui->chkGrid, &QCheckBox::toggled, this, [this](bool on) {
        m_look.calibrationGrid = on;
        m_preview->setCalibrationGrid(on);
    });
}

void frmPreview::connectZoom()
{
    connect(m_ui->cmdZoomOut, &QPushButton::clicked, m_preview, &SheetView::zoomOut);
    connect(m_ui->cmdZoomIn, &QPushButton::clicked, m_preview, &SheetView::zoomIn);
    connect(m_ui->cmdWholePage, &QPushButton::clicked, m_preview, &SheetView::fitPage);
    connect(m_ui->cmdPageWidth, &QPushButton::clicked, m_preview, &SheetView::fitWidth);
}

void frmPreview::addShortcuts()
{
    const auto add = [this](const QKeySequence &keys, QPushButton *button) {
        auto *action = new QAction(this);
        action->setShortcut(keys);
        connect(action, &QAction::triggered, button, &QPushButton::click);
        addAction(action);
    };
    add(QKeySequence::Print, m_ui->cmdPrint);
    add(QKeySequence::Save, m_ui->cmdPdf);
    add(QKeySequence::ZoomIn, m_ui->cmdZoomIn);
    add(QKeySequence::ZoomOut, m_ui->cmdZoomOut);
    add(Qt::CTRL | Qt::Key_0, m_ui->cmdWholePage);
    // As shortcuts, since the preview itself would take these keys to scroll.
    add(Qt::Key_PageUp, m_ui->cmdPrevious);
    add(Qt::Key_PageDown, m_ui->cmdNext);
}

bool frmPreview::carryOut(const QString &what,
                          const std::function<base::Status(const base::Progress &)> &work)
{
    const base::Status done = ui::runWithProgress(this, what, work);
    return done || done.error().cancelled ? bool(done) : tell(done);
}

base::Result<SelectedPrinter> frmPreview::selected() const
{
    return selectPrinter(printSystem(workspace()), workspace().settings, m_document.purpose,
                         m_document.printer);
}

// The print service may take its time to answer: the page comes first.
void frmPreview::paintEvent(QPaintEvent *event)
{
    Screen::paintEvent(event);
    if (!std::exchange(m_isPrinterAsked, true))
        QTimer::singleShot(0, this, [this] { showPrinter(selected()); });
}

void frmPreview::showPrinter(const base::Result<SelectedPrinter> &printer)
{
    const QString none = printer ? u"プリンタが見つかりません。"_s : u"印刷サービスに接続できません。"_s;
    m_ui->LblPrinterName->setText(printer && !printer->name.isEmpty() ? u"プリンタ："_s + printer->name
                                                                      : none + u"PDF に保存できます。"_s);
}

void frmPreview::print()
{
    const auto printer = selected();
    showPrinter(printer); // the service may be there again, or gone
    if (!printer || printer->installed.isEmpty()) {
        const QString none = printer ? u"プリンタが見つかりません。"_s : printer.error().text + u'\n';
        if (ui::prompts::ask(this, none + u"PDF に保存しますか。"_s))
            savePdf();
        return;
    }
    DialogPrint dialog(workspace(), m_document, *printer, this);
    dialog.exec();
    if (dialog.choice() && hand(*dialog.choice())) {
        m_issued = true;
        accept();
        tellWhatWasTaken(dialog.choice()->settings.queue);
    }
}

// A word in passing, which wants no answer.
void frmPreview::tellWhatWasTaken(const QString &queue)
{
    constexpr int shown = 4000; // milliseconds
    if (QWidget *opener = parentWidget(); opener && opener->isVisible())
        QToolTip::showText(opener->mapToGlobal(opener->rect().center()),
                           u"「%1」をプリンタ「%2」に送りました。"_s.arg(m_document.title, queue), opener, {},
                           shown);
}

bool frmPreview::hand(const PrintChoice &choice)
{
    const bool isWhole =
        choice.firstPage == 1 && choice.lastPage == static_cast<int>(m_document.sheets.size());
    const Document chosen = isWhole ? m_document : pagesOf(m_document, choice);
    PrintSystem &system = printSystem(workspace());
    const auto job = ui::runWithProgress(this, u"印刷しています。"_s, [&](const base::Progress &progress) {
        return system.print(chosen, m_look, choice.settings, progress);
    });
    const QByteArray pdf = system.takeHandedOver();
    if (!job && job.error().cancelled)
        ui::prompts::inform(this, u"印刷を中止しました。何も印刷していません。"_s);
    else
        tell(job.status());
    // Of a few pages, printed because the paper jammed, the whole document is what was issued.
    if (job)
        keep(isWhole ? pdf : QByteArray(), lookOn(choice.settings, m_look), u"印刷は済みました"_s);
    return bool(job);
}

// What was done stays done; nobody is to believe that there is a copy when there is none. \a pdf: empty where
// it is still to be drawn.
void frmPreview::keep(QByteArray pdf, const Look &look, const QString &done)
{
    if (!m_document.keep)
        return;
    base::Status kept;
    if (pdf.isEmpty()) {
        auto drawn = pdfOf(m_document, look);
        kept = drawn.status();
        if (drawn)
            pdf = std::move(*drawn);
    }
    if (kept)
        kept = m_document.keep(pdf);
    if (!kept)
        ui::prompts::inform(this,
                            done + u"が、発行控えに残せませんでした。原因を取り除いてから、もう一度この伝票の"
                                   "プレビューを開き、「PDF保存」を押してください。"_s,
                            QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Exclamation,
                            kept.error().text);
}

void frmPreview::savePdf()
{
    const QString fileName =
        ui::file_dialogs::saveFile(this, u"PDFに保存"_s, u"PDFファイル (*.pdf)"_s, u"pdf"_s,
                                   ui::file_dialogs::proposedFile(m_document.title, u"pdf"_s));
    if (fileName.isEmpty())
        return;
    if (workspace::isDatabase(workspace(), fileName)) {
        ui::prompts::inform(this, ui::messages::databaseTarget());
        return;
    }
    if (QFileInfo::exists(fileName) &&
        !ui::prompts::askCautiously(
            this, u"「%1」は既にあります。上書きしますか。"_s.arg(QFileInfo(fileName).fileName())))
        return;
    if (!saveAs(fileName))
        return;
    m_issued = true;
    m_ui->LblPrinterName->setText(u"PDF に保存しました："_s + QFileInfo(fileName).fileName());
}

bool frmPreview::saveAs(const QString &fileName)
{
    QByteArray pdf;
    const auto save = [&](const base::Progress &progress) -> base::Status {
        auto drawn = pdfOf(m_document, m_look, progress);
        if (!drawn)
            return drawn.error();
        pdf = std::move(*drawn);
        return writePdf(pdf, fileName);
    };
    if (!carryOut(u"PDF に保存しています。"_s, save))
        return false;
    keep(pdf, m_look, u"PDF は保存しました"_s);
    return true;
}

int frmPreview::page() const { return m_preview->page(); }

void frmPreview::showPage()
{
    const int pages = m_preview->pageCount();
    m_ui->spnPage->setValue(page());
    m_ui->lblPage->setText(u"/ %1 ページ"_s.arg(pages));
    m_ui->cmdPrevious->setEnabled(page() > 1);
    m_ui->cmdNext->setEnabled(page() < pages);
}

void frmPreview::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Home:
        m_preview->turnTo(1);
        break;
    case Qt::Key_End:
        m_preview->turnTo(m_preview->pageCount());
        break;
    default:
        Screen::keyPressEvent(event);
    }
}

bool showPreview(workspace::Workspace &workspace, QWidget *parent, Document document)
{
    frmPreview dialog(workspace, std::move(document), parent);
    dialog.exec();
    return dialog.isIssued();
}

} // namespace printing
