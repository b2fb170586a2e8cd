#pragma once

#include "printing/queue/print_system.h"
#include "ui/screen.h"

#include <QSet>

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
    /// Lets who watches the jobs hear that \a job was taken back, here or elsewhere.
    base::Status passOn(const PrintJob &job);
    /// The job of the current row; null without one.
    [[nodiscard]] const PrintJob *current() const;

    const std::unique_ptr<Ui::DialogPrintJobs> m_ui;
    std::vector<PrintJob> m_jobs; // of today, the newest first
    QSet<int> m_passedOn;         // numbers of jobs
    QTimer *m_clock;
};

} // namespace printing
