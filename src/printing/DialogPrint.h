#pragma once

#include "printing/queue/print_system.h"
#include "printing/renderer.h"
#include "ui/screen.h"

#include <memory>
#include <optional>

namespace Ui
{
class DialogPrint;
}

namespace printing
{

/// How a document is to be printed.
struct PrintChoice
{
    JobSettings settings;
    int firstPage = 1; // counted from 1
    int lastPage = 1;
};

/// Asks for printer, bin, pages and copies before a document is printed. Paper that the printer does not take
/// is told here, before any is wasted, and not printed on.
class DialogPrint : public ui::Screen
{
    Q_OBJECT

public:
    /// Stands at the printer \a selected, of those that it was chosen from.
    DialogPrint(workspace::Workspace &workspace, const Document &document, const SelectedPrinter &selected,
                QWidget *parent = nullptr);
    ~DialogPrint() override;

    /// From now on all pages are printed: they are one PDF, which is not taken apart, or \a what, several
    /// documents of which the first is shown.
    void keepTogether(const QString &what = {});

    /// What the clerk chose; nothing unless the dialog was accepted.
    [[nodiscard]] const std::optional<PrintChoice> &choice() const { return m_choice; }

private:
    /// That it will be printed on, as it is fed.
    [[nodiscard]] QSizeF paper() const;
    void readQueue();
    void showBins();
    void showRemark();
    /// Why nothing can be printed as it stands; empty when it can.
    [[nodiscard]] QString obstacle() const;
    void print();

    const std::unique_ptr<Ui::DialogPrint> m_ui;
    const Document &m_document;
    const QString m_selected;
    const QString m_missing; // says that the purpose's own printer is gone
    std::optional<QueueAbilities> m_abilities;
    QString m_failure; // why they could not be read
    std::optional<PrintChoice> m_choice;
};

} // namespace printing
