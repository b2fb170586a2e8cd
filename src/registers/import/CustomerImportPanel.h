#pragma once

#include "masters/name_lists.h"
#include "registers/import/ImportModel.h"

#include <QHash>
#include <QWidget>

#include <memory>
#include <optional>

class QStandardItemModel;

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

    void setUpGrids();
    void connectControls();
    bool load(ImportTable table, Source source, const QString &name);
    /// The assignment of \a table by the mapping file or by its headings, or by the clerk; nothing when the
    /// clerk gave up.
    std::optional<ImportAssignment> assignmentFor(const ImportTable &table, Source source);
    std::optional<ImportAssignment> askAssignment(const ImportTable &table, const ImportAssignment &proposal);
    bool judge(const ImportTable &table, const ImportAssignment &assignment);

    void importAll();
    void import();
    void offerCategories();
    void makeCategories(bool wanted);
    void offerMerging();
    void mergeRepeats(bool wanted);
    void judgeAgain(const ImportAssignment &assignment);
    void showTaken();
    void showChanges();
    void changeSettings();
    void saveReport();
    void toggleSelected();
    void takeSelected();
    void showCounts();
    bool tell(const base::Status &status);

    std::unique_ptr<Ui::CustomerImportPanel> m_ui;
    ImportModel *m_model;
    QStandardItemModel *m_changes; // of the current row
    std::vector<masters::Entry> m_categories;
    workspace::Workspace *m_workspace = nullptr;
    ImportTable m_table;
    ImportAssignment m_assignment;
    QHash<QString, QString> m_postalCodes; // of the addresses of the table, as far as they were looked up
};

} // namespace registers
