#pragma once

#include "printing/renderer.h"
#include "ui/screen.h"

#include <functional>
#include <memory>

namespace Ui
{
class frmPreview;
}

namespace printing
{

struct PrintChoice;
class SheetView;

/// Shows a document as it will be printed; prints it or saves it as PDF, and has kept what is to be kept of
/// it.
class frmPreview : public ui::Screen
{
    Q_OBJECT

public:
    frmPreview(workspace::Workspace &workspace, Document document, QWidget *parent = nullptr);
    ~frmPreview() override;

    [[nodiscard]] int page() const; // counted from 1
    /// Offers no printing from now on: what is printed elsewhere, with a record of it.
    void onlyShow();
    /// Whether the document was printed or saved as PDF.
    [[nodiscard]] bool isIssued() const { return m_issued; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void addPages();
    void connectZoom();
    void addShortcuts();
    /// Does long \a work, which may be stopped. \return whether it was done; a failure is told
    bool carryOut(const QString &what, const std::function<base::Status(const base::Progress &)> &work);
    [[nodiscard]] base::Result<SelectedPrinter> selected() const;
    void showPrinter(const base::Result<SelectedPrinter> &printer);
    void showRemark();
    void tellWhatWasTaken(const QString &queue);
    void print();
    bool hand(const PrintChoice &choice);
    void savePdf();
    bool saveAs(const QString &fileName);
    void keep(QByteArray pdf, const Look &look, const QString &done);
    void showPage();

    const std::unique_ptr<Ui::frmPreview> m_ui;
    const Document m_document;
    Look m_look;
    bool m_issued = false;
    bool m_isPrinterAsked = false;
    SheetView *m_preview = nullptr;
};

/// Shows the preview of \a document until the user closes it. \return whether it was printed or saved as PDF
bool showPreview(workspace::Workspace &workspace, QWidget *parent, Document document);

} // namespace printing
