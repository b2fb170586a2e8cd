#pragma once

#include "reports/daily/day_report.h"
#include "ui/screen.h"

#include <memory>

namespace Ui
{
class DialogDayReport;
}

namespace reports
{

/// A daily report: every slip of one kind in a period, line by line. It opens with today, leads from its rows
/// to their slips, and is printed with a printer and a font of its own.
class DialogDayReport : public ui::Screen
{
    Q_OBJECT

public:
    DialogDayReport(workspace::Workspace &workspace, QWidget *parent, DayReportKind kind);
    ~DialogDayReport() override;

protected:
    void becameActive() override;
    bool mayClose() override;

private:
    void fitForm();
    void fitGrid();
    void showSettings();
    void storeSettings();
    void connectControls();
    [[nodiscard]] book::Period period() const;

    void showRows();
    void goTo(const QDate &day);
    base::Status read();
    void showReport(DayReport report);
    [[nodiscard]] QString summary() const;
    void showState();

    void print();
    void writeTable();
    void openSlip();
    void choosePrinter();
    void usePrinter(const QString &name);
    void showPrinter();
    void chooseFont();

    const std::unique_ptr<Ui::DialogDayReport> m_ui;
    const DayReportKind m_kind;
    DayReport m_report; // what the grid shows
    bool m_hasRead = false;
};

template <DayReportKind kind>
class DayReportOf : public DialogDayReport
{
public:
    explicit DayReportOf(workspace::Workspace &workspace, QWidget *parent = nullptr)
        : DialogDayReport(workspace, parent, kind)
    {}
};

} // namespace reports
