#pragma once

#include "masters/name_lists.h"
#include "registers/import/import_fields.h"
#include "registers/import/import_table.h"
#include "ui/screen.h"

#include <memory>

class QComboBox;
class QLabel;

namespace Ui
{
class DialogCSV;
}

namespace registers
{

/// The settings of the customer import: for each column of a table, with what stands in its first rows, the
/// field that it goes into.
class DialogCSV : public ui::Screen
{
    Q_OBJECT

public:
    /// Shows \a table as \a assignment has it. \a table must outlive the dialog.
    DialogCSV(workspace::Workspace &workspace, const ImportTable &table, const ImportAssignment &assignment,
              const std::vector<masters::Entry> &categories, QWidget *parent = nullptr);
    ~DialogCSV() override;

    /// As the clerk has it.
    [[nodiscard]] ImportAssignment assignment() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addColumns(const ImportAssignment &assignment);
    void fillCategories(const std::vector<masters::Entry> &categories, qint64 chosen);
    void showSamples();
    void assignByHeadings();
    void confirm();
    /// What keeps the assignment from being used, with the cursor where it is mended; empty: nothing.
    QString lack();

    std::unique_ptr<Ui::DialogCSV> m_ui;
    const ImportTable &m_table;
    // One of each a column.
    QList<QLabel *> m_headings;
    QList<QLabel *> m_samples;
    QList<QComboBox *> m_fields;
};

} // namespace registers
