#pragma once

#include "printing/queue/print_system.h"
#include "ui/screen.h"

#include <memory>
#include <vector>

class QTimer;

namespace Ui
{
class DialogPrintJobs;
}

namespace printing
{

/// What was given to the printers today, what became of it, and a way to take it back.
class DialogPrintJobs : public ui::Screen
{
    Q_OBJECT

public:
    explicit DialogPrintJobs(workspace::Workspace &workspace, QWidget *parent = nullptr);
    ~DialogPrintJobs() override;

private:
    void read();
    void showChoice();
    void cancel();
    /// The job of the current row; null without one.
    [[nodiscard]] const PrintJob *current() const;

    const std::unique_ptr<Ui::DialogPrintJobs> m_ui;
    std::vector<PrintJob> m_jobs; // of today, the newest first
    QTimer *m_clock;
};

} // namespace printing
