#pragma once

#include "masters/name_lists.h"
#include "registers/import/customer_import.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace workspace
{
class Workspace;
}

namespace Ui
{
class CustomerImportPanel;
}

namespace registers
{

class ImportModel;

/// The import of customers: the rows of a file or of the clipboard as they would be stored, what stands
/// against each, and the buttons that store them.
class CustomerImportPanel : public QWidget
{
    Q_OBJECT

public:
    explicit CustomerImportPanel(QWidget *parent = nullptr);
    ~CustomerImportPanel() override;

    /// To be called once.
    void bind(workspace::Workspace &workspace);

    /// Has the clerk choose a file. \return whether its rows are shown
    bool openFile();
    /// Takes the table on the clipboard. \return whether its rows are shown
    bool paste();

signals:
    /// New customers are in the register.
    void imported();
    /// The clerk goes back to the register.
    void finished();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Source { File, Clipboard };

    void connectControls();
    bool load(ImportTable table, Source source, const QString &name);
    /// The assignment of \a table by the mapping file or by its headings, or by the clerk; nothing when the
    /// clerk gave up.
    std::optional<ImportAssignment> assignmentFor(const ImportTable &table, Source source);
    std::optional<ImportAssignment> askAssignment(const ImportTable &table, const ImportAssignment &proposal);
    bool judge(const ImportTable &table, const ImportAssignment &assignment);

    void importAll();
    void importSelected();
    void import(const std::vector<const ImportCandidate *> &candidates);
    void tellImported(int count);
    void changeSettings();
    void saveReport();
    void toggleSelected();
    void showCounts();
    bool tell(const base::Status &status);

    std::unique_ptr<Ui::CustomerImportPanel> m_ui;
    ImportModel *m_model;
    workspace::Workspace *m_workspace = nullptr;
    ImportTable m_table;
    ImportAssignment m_assignment;
};

} // namespace registers
