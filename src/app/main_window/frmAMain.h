#pragma once

#include "app/files/database_session.h"
#include "app/files/file_maintenance.h"
#include "app/main_window/commands.h"
#include "app/main_window/screens.h"
#include "app/main_window/sudden_end.h"
#include "base/result.h"
#include "masters/own_company.h"

#include <QMainWindow>

#include <array>
#include <memory>

class QCheckBox;
class QLabel;
class QMenu;

namespace Ui
{
class frmAMain;
}

namespace app
{

enum class FirstStep;
class CommandPanel;
class FirstSteps;
class PanelControls;

/// The main window: the menu of the system and, through its settings panel, the values that all screens
/// share.
class frmAMain : public QMainWindow
{
    Q_OBJECT

public:
    frmAMain(workspace::Workspace &workspace, Openers openers, QWidget *parent = nullptr);
    ~frmAMain() override;

    /// The load step: settings, postal index, database, employees, picture. \a commandLine holds a database
    /// file name between its quotes, or is empty.
    void load(const QString &commandLine);

    /// Saves the settings and makes the backups at once and without a word, because the program is about to
    /// end without being asked. An action under way is taken back only when the end is certain; else it goes
    /// on, and no backup is made of half of it.
    void endSilently(Ending ending);

    /// Whether \a action may be begun, after everything that it needs was asked for: for ways to it that
    /// other screens offer.
    bool mayRun(Action action);

    /// What is done each time the window becomes the active one.
    void focusStep();

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    using Builtin = void (frmAMain::*)();

    // Commands
    void run(const Command &command);
    bool passGuards(const Command &command);
    bool employeeChosen();
    bool ownCompanyRegistered();
    bool slipsExist(const book::SlipKind &kind);
    void open(Action action);
    void start(Companion companion);
    /// The companion that does \a action; nothing when it is not there.
    [[nodiscard]] std::optional<Companion> installedCompanion(Action action) const;
    [[nodiscard]] bool isPossible(const Command &command) const;
    void enableCommands();

    // The database file
    void newFile() { m_session.createNew(); }
    void openFile() { m_session.openOther(); }
    void saveFileAs();
    void openBackup() { m_session.openBackup(); }
    void backUpNow() { m_session.backUpNow(); }
    void listBackups() { m_maintenance->listBackups(); }
    void repairFile() { m_maintenance->repair(); }
    void buildFileAnew() { m_maintenance->buildAnew(); }
    void emptyTable() { m_maintenance->emptyTable(); }
    void tablesEmptied();
    void databaseChanged();
    void databaseClosed();
    void offerFormerEmployee();
    void tellSlipsToLookAt();
    bool takeFormerEmployee();
    void reloadEmployees(qint64 chosen);
    void reloadCompany();
    void showCompany(const masters::OwnCompany &names);
    void employeeSelected();
    void showSupplier();
    void showCounterparts();
    void chooseOnlyEmployee();

    // The window itself
    std::array<QCheckBox *, 3> buildOptionBoxes();
    void buildColoursMenu();
    void buildRecentMenu();
    void showRecentFiles();
    void buildBackupNotice();
    void buildFirstSteps();
    void lookForFirstSteps();
    void showFirstSteps();
    void takeStep(FirstStep step);
    void chooseTaxRate();
    bool taxRateSettled();
    void colour(int colours);
    void loadFixedLists();
    void loadPlace();
    void loadPostalIndex();
    void loadPicture();
    bool saveSettings();
    void showPrinters();
    void showFile();
    void choosePicture();
    void keepPicture(const QString &fileName);
    void resetPicture();
    void chooseCalendarColour();
    void toggleCalendar();
    void showCalendar(bool visible);
    void colourCalendar();
    void chooseSlipFont();
    void chooseLedger();
    void showAbout();
    void quit() { close(); }
    bool tell(const base::Status &status);
    void warn(const QString &text);

    static Builtin builtinFor(Action action);

    workspace::Workspace &m_workspace;
    std::unique_ptr<Ui::frmAMain> m_ui;
    Openers m_openers;
    DatabaseSession m_session;
    CommandPanel *m_commands;
    FileMaintenance *m_maintenance;
    PanelControls *m_controls;
    QMenu *m_recentFiles = nullptr;
    QWidget *m_backupNotice = nullptr;
    QLabel *m_backupText = nullptr;
    QString m_pictureFile;
    QString m_pictureProblem; // a sentence for the status bar
    QColor m_calendarColour;
    QLabel *m_platform = nullptr;
    FirstSteps *m_steps = nullptr;
    bool m_isNewShop = false; // the open file had no delivery note when it was opened
    bool m_loaded = false;
    QString m_formerEmployee; // chosen before the file was closed
    bool m_inFocusStep = false;
    bool m_underDialog = false; // inactive only because of a message box or the like
};

} // namespace app
