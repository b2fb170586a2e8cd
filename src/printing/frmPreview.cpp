#include "printing/frmPreview.h"

#include "ui_frmPreview.h"

#include "printing/pdf.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"
#include "workspace/workspace_targets.h"

#include <QAction>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPrintPreviewWidget>
#include <QPrinter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

frmPreview::frmPreview(workspace::Workspace &workspace, Document document, const QStringList &printers,
                       QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmPreview>())
    , m_document(std::move(document))
    , m_hasPrinter(!printers.isEmpty())
    , m_look{fontFace(workspace.settings, m_document.purpose)}
    , m_pages(static_cast<int>(m_document.sheets.size()))
    , m_printer(std::make_unique<QPrinter>(QPrinter::HighResolution))
{
    m_ui->setupUi(this);
    setWindowTitle(u"印刷プレビュー　"_s + m_document.title);
    const QString printer = selectPrinter(*m_printer, workspace.settings, m_document.purpose);
    m_ui->LblPrinterName->setText(m_hasPrinter ? u"プリンタ："_s + printer
                                               : u"プリンタが見つかりません。PDF に保存できます。"_s);
    m_ui->lblRemark->setText(m_document.remark);
    m_ui->lblRemark->setVisible(!m_document.remark.isEmpty());
    m_printer->setDocName(m_document.title);
    setPage(*m_printer, m_document);
    addPages();
    addShortcuts();
    setUp();
    showPage();
}

frmPreview::~frmPreview() = default;

void frmPreview::addPages()
{
    m_preview = new QPrintPreviewWidget(m_printer.get(), this);
    m_preview->setObjectName(u"preview"_s);
    m_preview->setAccessibleName(u"印刷プレビュー"_s);
    m_preview->setMinimumHeight(360);
    m_preview->setFocusPolicy(Qt::StrongFocus);
    m_ui->pages->addWidget(m_preview);
    connect(m_preview, &QPrintPreviewWidget::paintRequested, this, &frmPreview::draw);
    connect(m_preview, &QPrintPreviewWidget::previewChanged, this, &frmPreview::showPage);
    connect(m_ui->cmdPrint, &QPushButton::clicked, this, &frmPreview::print);
    connect(m_ui->cmdPdf, &QPushButton::clicked, this, &frmPreview::savePdf);
    connect(m_ui->cmdPrevious, &QPushButton::clicked, this, [this] { turnTo(page() - 1); });
    connect(m_ui->cmdNext, &QPushButton::clicked, this, [this] { turnTo(page() + 1); });
    connect(m_ui->cmdZoomOut, &QPushButton::clicked, m_preview, [this] { m_preview->zoomOut(); });
    connect(m_ui->cmdZoomIn, &QPushButton::clicked, m_preview, [this] { m_preview->zoomIn(); });
    connect(m_ui->cmdWholePage, &QPushButton::clicked, m_preview, &QPrintPreviewWidget::fitInView);
    connect(m_ui->cmdPageWidth, &QPushButton::clicked, m_preview, &QPrintPreviewWidget::fitToWidth);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmPreview::reject);
    connect(m_ui->chkGrid, &QCheckBox::toggled, this, [this](bool on) {
        m_look.calibrationGrid = on;
        m_preview->updatePreview();
    });
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

// A preview that was stopped shows the pages that it has; paper and PDF still get them all.
void frmPreview::draw(QPrinter *printer)
{
    // The pages shown so far go when the first new one is begun, and must not be painted any more.
    m_preview->setUpdatesEnabled(false);
    m_pages = static_cast<int>(m_document.sheets.size());
    carryOut(u"表示するページを準備しています。"_s, [&](const base::Progress &progress) {
        return drawDocument(*printer, m_document, m_look, [&](qint64 done, qint64 total) {
            const bool goesOn = progress(done, total);
            if (!goesOn)
                m_pages = static_cast<int>(done);
            return goesOn;
        });
    });
    m_preview->setUpdatesEnabled(true);
}

bool frmPreview::carryOut(const QString &what,
                          const std::function<base::Status(const base::Progress &)> &work)
{
    const base::Status done = ui::runWithProgress(this, what, work);
    return done || done.error().cancelled ? bool(done) : tell(done);
}

void frmPreview::print()
{
    if (!m_hasPrinter) {
        if (ui::prompts::ask(this, u"プリンタが見つかりません。PDF に保存しますか。"_s))
            savePdf();
        return;
    }
    // A printer of its own: the preview's one stays as it is when the dialog is cancelled.
    QPrinter job(QPrinter::HighResolution);
    selectPrinter(job, workspace().settings, m_document.purpose);
    job.setDocName(m_document.title);
    setPage(job, m_document);
    if (!ui::file_dialogs::setUpPrinter(this, job, u"印刷"_s))
        return;
    setPage(job, m_document);
    const base::Status printed =
        ui::runWithProgress(this, u"印刷しています。"_s, [&](const base::Progress &progress) {
            return printDocument(job, m_document, m_look, progress);
        });
    m_issued = m_issued || printed;
    if (printed)
        accept();
    else if (printed.error().cancelled)
        ui::prompts::inform(
            this, u"印刷を中止しました。途中までの用紙が出てくるときは、プリンタで取り消してください。"_s);
    else
        tell(printed);
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
    if (!carryOut(u"PDF に保存しています。"_s, [&](const base::Progress &progress) {
            return writePdf(m_document, m_look, fileName, progress);
        }))
        return;
    m_issued = true;
    m_ui->LblPrinterName->setText(u"PDF に保存しました："_s + QFileInfo(fileName).fileName());
}

int frmPreview::page() const { return m_preview->currentPage(); }

void frmPreview::turnTo(int page)
{
    m_preview->setCurrentPage(std::clamp(page, 1, std::max(1, m_pages)));
    showPage();
}

void frmPreview::showPage()
{
    m_ui->lblPage->setText(u"%1 / %2 ページ"_s.arg(page()).arg(m_document.sheets.size()));
    m_ui->cmdPrevious->setEnabled(page() > 1);
    m_ui->cmdNext->setEnabled(page() < m_pages);
}

void frmPreview::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Home:
        turnTo(1);
        break;
    case Qt::Key_End:
        turnTo(m_pages);
        break;
    default:
        Screen::keyPressEvent(event);
    }
}

bool showPreview(workspace::Workspace &workspace, QWidget *parent, Document document)
{
    frmPreview dialog(workspace, std::move(document), installedPrinters(), parent);
    dialog.exec();
    return dialog.isIssued();
}

} // namespace printing
