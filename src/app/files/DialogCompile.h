#pragma once

#include "db/care/salvage.h"
#include "ui/screen.h"

#include <memory>

class QStandardItemModel;

namespace Ui
{
class DialogCompile;
}

namespace app
{

/// Builds a new database file of the rows of the current one, table by table, also when that one is damaged,
/// and shows how many rows of each table were carried over.
class DialogCompile : public ui::Screen
{
    Q_OBJECT

public:
    /// \a source: the current file, which need not be one that can be opened.
    DialogCompile(workspace::Workspace &workspace, const QString &source, QWidget *parent = nullptr);
    ~DialogCompile() override;

    /// The new file when the user wants to go on in it; else empty.
    [[nodiscard]] QString chosenFile() const { return m_chosen; }

private:
    void compile();
    [[nodiscard]] QString askForTarget();
    [[nodiscard]] QString keptNameOf(const QString &fileName) const;
    base::Result<db::Salvage> build(const QString &target);
    void bringDocuments(const QString &target);
    void showOutcome(const db::Salvage &outcome, const QString &target);

    std::unique_ptr<Ui::DialogCompile> m_ui;
    QStandardItemModel *m_tables;
    QString m_source;
    QString m_chosen;
};

} // namespace app
