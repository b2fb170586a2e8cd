#pragma once

#include "printing/offset_box.h"
#include "printing/print_frame.h"
#include "printing/queue/paper_codes.h"
#include "ui/screen.h"

#include <functional>
#include <memory>
#include <vector>

namespace Ui
{
class DialogPrinterP;
}

namespace printing
{

/// Printer, print position and paper of shipping slips, and what the printer can do. Closing it stores
/// position and paper.
class DialogPrinterP : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogPrinterP(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogPrinterP() override;

    /// What 「用紙の調整」 opens over this dialog; without it there is no such button.
    void setAdjuster(std::function<void(QWidget *)> adjust);

protected:
    bool mayClose() override;
    void becameActive() override;

private:
    void connectAll();
    void adjust();
    void fillPrinters();
    void readPrinter();
    void showPapers();
    void showPaper();
    void showRemark();
    void showProperties();
    void restorePosition();
    void registerAll();
    bool storePosition();
    [[nodiscard]] bool isPrinterChanged() const;
    void storePrinter();

    const std::unique_ptr<Ui::DialogPrinterP> m_ui;
    std::function<void(QWidget *)> m_adjust;
    OffsetBox *m_right;
    OffsetBox *m_down;
    int m_rightBefore; // when the dialog was opened
    int m_downBefore;
    SelectedPrinter m_selected;
    bool m_isChosen = false; // the printer was chosen here
    QueueAbilities m_abilities;
    QString m_failure; // why they could not be read
    std::vector<ListedPaper> m_papers;
    bool m_isElsewhere = false; // the clerk may be at the system's own window of the printer
};

/// The same window, as the screens of shipping slips and the menu of the printer's properties open it.
class frmPrinterP : public DialogPrinterP
{
    Q_OBJECT

public:
    explicit frmPrinterP(workspace::Workspace &workspace, QWidget *parent = nullptr);
};

} // namespace printing
