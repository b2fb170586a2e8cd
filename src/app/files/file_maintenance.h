#pragma once

#include "app/panel_side.h"
#include "slips/issued/carried_documents.h"

#include <QObject>

#include <functional>
#include <optional>

class QComboBox;
class QLabel;

namespace db
{
class FileRepair;
struct Salvage;
} // namespace db

namespace workspace
{
class Workspace;
}

namespace app
{

class DatabaseSession;

/// Puts a widget into a group of the settings page.
using PlaceInPanel = std::function<void(const QString &group, QWidget *widget, PanelSide side)>;

/// The commands of the settings page that look after the current file: repair and compaction, building it
/// anew, emptying tables, the list of its backups.
class FileMaintenance : public QObject
{
    Q_OBJECT

public:
    /// Puts its labels and its list into the groups of the panel.
    FileMaintenance(workspace::Workspace &workspace, DatabaseSession &session, const PlaceInPanel &place,
                    QWidget &window);

    void repair();
    void buildAnew();
    void emptyTable();
    void listBackups();

signals:
    /// Rows were deleted that screens and lists may show.
    void emptied();

private:
    bool repairFile();
    [[nodiscard]] QString doubtfulText(const db::Salvage &outcome) const;
    std::optional<db::Salvage> salvaged(db::FileRepair &repair, int faults);
    void restore(const QString &backup, const QString &described);
    void bringDocuments(const QString &backup);
    QString carryIssuedOver(const base::Result<slips::IssuedRows> &issued);
    bool tell(const QString &text);
    void tellDone(const QString &done);

    workspace::Workspace &m_workspace;
    DatabaseSession &m_session;
    QWidget &m_window;
    QLabel *m_oldSize;
    QLabel *m_newSize;
    QComboBox *m_tables; // one of which can be emptied
};

} // namespace app
