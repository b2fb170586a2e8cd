#include "app/main_window/frmAMain.h"

#include "app/files/database_files.h"
#include "app/main_window/appearance.h"
#include "app/main_window/command_panel.h"
#include "app/main_window/panel_controls.h"
#include "app/main_window/slips_to_look_at.h"
#include "book/slip_counts.h"
#include "registers/last_counterparts.h"
#include "slips/issued/withdrawn_prints.h"
#include "ui/prompts.h"
#include "ui/screen.h"
#include "ui/wheel_guard.h"
#include "ui_frmAMain.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QKeyEvent>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

// What enters slips of \a kind, where it has a button.
std::optional<Action> entryOf(const book::SlipKind &kind)
{
    const std::pair<book::SlipKind, Action> entries[] = {{book::sale, Action::Sales},
                                                         {book::receipt, Action::Receipt},
                                                         {book::estimate, Action::Estimate},
                                                         {book::purchase, Action::Purchase},
                                                         {book::payment, Action::Payment}};
    for (const auto &[entered, action] : entries) {
        if (entered == kind)
            return action;
    }
    return std::nullopt;
}

// Whether the system writes \a day otherwise than with ten characters, where a clerk can set how it does.
bool shortDateIsCut([[maybe_unused]] const QDate &day)
{
#ifdef Q_OS_WIN
    return QLocale::system().toString(day, QLocale::ShortFormat).size() != 10;
#else
    return false; // goes by the language, and no screen of ours by it
#endif
}

} // namespace

frmAMain::frmAMain(workspace::Workspace &workspace, Openers openers, QWidget *parent)
    : QMainWindow(parent)
    , m_workspace(workspace)
    , m_ui(std::make_unique<Ui::frmAMain>())
    , m_openers(std::move(openers))
    , m_session(workspace, *this)
{
    m_ui->setupUi(this);
    slips::watchPrintJobs(workspace);
    workspace.panel.desktopSurplus = desktopSurplus();
    m_ui->centralWidget->setStyleSheet(mainWindowStyle());
    m_commands = new CommandPanel(
        *this, {m_ui->SSTab1,
                m_ui->dbcShain,
                m_ui->shortcuts,
                {m_ui->LblPrinterName, m_ui->Label19, m_ui->Picture1, m_ui->Picture3, m_ui->Picture4}});
    m_maintenance = new FileMaintenance(
        workspace, m_session,
        [this](const QString &group, QWidget *widget, PanelSide side) {
            m_commands->addToGroup(Page::Settings, group, widget, side);
        },
        *this);
    const auto further = buildOptionBoxes();
    buildColoursMenu();
    buildRecentMenu();
    buildBackupNotice();
    m_controls = new PanelControls(*this, workspace,
                                   {.checks = {m_ui->Check1, m_ui->Check2, m_ui->Check3, m_ui->Check4,
                                               m_ui->Check5, further[0], further[1], further[2]},
                                    .deliveryPaper = m_ui->Combo2,
                                    .billPaper = m_ui->Combo7,
                                    .carrier = m_ui->Combo6,
                                    .numberInfix = m_ui->txtDenNo,
                                    .taxRate = m_ui->txtTaxRate,
                                    .taxRateSteps = m_ui->UpDown1,
                                    .taxTable = m_ui->chkTaxTable,
                                    .textSize = m_ui->Text6,
                                    .nextTextSize = m_ui->Command37,
                                    .spacing = m_ui->Text4,
                                    .nextSpacing = m_ui->Command15});
    buildFirstSteps();
    ui::ignoreWheelInPassing(this);
    connect(m_commands, &CommandPanel::triggered, this, &frmAMain::run);
    connect(&m_session, &DatabaseSession::changed, this, &frmAMain::databaseChanged);
    connect(&m_session, &DatabaseSession::closed, this, &frmAMain::databaseClosed);
    connect(m_maintenance, &FileMaintenance::emptied, this, &frmAMain::tablesEmptied);
    connect(m_ui->dbcShain, &QComboBox::currentIndexChanged, this, &frmAMain::employeeSelected);
    connect(m_ui->dbcShain, &QComboBox::activated, this,
            [this] { m_workspace.settings.write(workspace::keys::employee, m_ui->txtShainID->text()); });
}

frmAMain::~frmAMain() = default;

void frmAMain::load(const QString &commandLine)
{
    loadFixedLists();
    loadPlace();
    m_controls->load();
    showPrinters();
    loadPostalIndex();
    m_session.start(databaseToOpen(m_workspace.settings, commandLine, m_workspace.applicationFolder()));
    if (m_session.isOpen()) {
        const int stored = m_workspace.settings.integer(workspace::keys::employee);
        reloadEmployees(stored);
        if (stored == 0)
            chooseOnlyEmployee();
        loadPicture();
        // Once the window stands.
        QMetaObject::invokeMethod(this, &frmAMain::tellSlipsToLookAt, Qt::QueuedConnection);
    }
    m_loaded = true;
}

bool frmAMain::event(QEvent *event)
{
    // The menu items have no status tips; an empty one would wipe the file name off the status bar.
    if (event->type() == QEvent::StatusTip)
        return true;
    const bool done = QMainWindow::event(event);
    if (event->type() == QEvent::WindowDeactivate) {
        const QWidget *modal = QApplication::activeModalWidget();
        m_underDialog = modal && !qobject_cast<const ui::Screen *>(modal);
    } else if (event->type() == QEvent::WindowActivate && m_loaded) {
        // Coming back from a message box is none; else a refused new file would be asked for without end.
        if (!std::exchange(m_underDialog, false))
            QMetaObject::invokeMethod(this, &frmAMain::focusStep, Qt::QueuedConnection);
    }
    return done;
}

void frmAMain::focusStep()
{
    if (m_inFocusStep || !isVisible() || QApplication::activeModalWidget())
        return;
    m_inFocusStep = true;
    showPrinters();
    showFile();
    if (shortDateIsCut(m_workspace.today()))
        warn(u"　システムの日付を１０桁表示に設定してください。(yyyy/MM/dd "_s);
    if (m_session.isOpen()) {
        reloadEmployees(m_workspace.panel.employeeId);
        showSupplier();
    }
    if (m_session.isInitial())
        m_session.leaveInitialFile();
    m_inFocusStep = false;
}

void frmAMain::run(const Command &command)
{
    if (!isPossible(command) || !passGuards(command))
        return;
    if (const Builtin builtin = builtinFor(command.action))
        (this->*builtin)();
    else if (const auto companion = installedCompanion(command.action))
        start(*companion);
    else
        open(command.action);
}

bool frmAMain::mayRun(Action action)
{
    const auto command = std::ranges::find(commands(), action, &Command::action);
    return command != commands().end() && isPossible(*command) && passGuards(*command);
}

bool frmAMain::isPossible(const Command &command) const
{
    if (needsDatabase(command.action) && !m_session.isUsable())
        return false;
    if (needsFile(command.action) && !m_session.hasFile())
        return false;
    if (command.action == Action::Ledgers)
        return installedCompanion(command.action) || m_openers.contains(Action::ReceivableLedger);
    if (builtinFor(command.action))
        return true;
    return installedCompanion(command.action) || m_openers.contains(command.action);
}

std::optional<Companion> frmAMain::installedCompanion(Action action) const
{
    const auto companion = companionOf(action);
    if (companion && isCompanionInstalled(m_workspace.applicationFolder(), *companion))
        return companion;
    return std::nullopt;
}

void frmAMain::enableCommands()
{
    m_commands->enable([this](const Command &command) { return isPossible(command); });
}

bool frmAMain::passGuards(const Command &command)
{
    const Guards &guards = command.guards;
    const bool needsEmployee =
        guards.employee || (guards.employeeOfOwnScreen && !installedCompanion(command.action));
    if (needsEmployee && !employeeChosen())
        return false;
    if (guards.ownCompany && !ownCompanyRegistered())
        return false;
    if (command.action == Action::Sales && !taxRateSettled())
        return false;
    return !guards.slips || slipsExist(*guards.slips);
}

bool frmAMain::slipsExist(const book::SlipKind &kind)
{
    const auto found = book::hasSlips(m_workspace.connection, kind);
    if (!found)
        return tell(found.error());
    if (*found)
        return true;
    ui::prompts::inform(this, u"現在、該当する伝票はありません。"_s);
    if (const auto entry = entryOf(kind))
        m_commands->focusButtonOf(*entry);
    return false;
}

void frmAMain::open(Action action)
{
    const auto opener = m_openers.find(action);
    if (opener == m_openers.end())
        return;
    const qint64 inCharge = m_workspace.panel.employeeId;
    opener->second(this, m_workspace);
    showPrinters();
    if (!m_session.isOpen())
        return;
    // The screen may have changed either.
    reloadEmployees(inCharge);
    if (action == Action::Employees && inCharge == 0)
        chooseOnlyEmployee();
    reloadCompany();
    m_controls->showTaxRate();
    showCounterparts();
    showFirstSteps();
}

void frmAMain::start(Companion companion)
{
    const QString folder = m_workspace.applicationFolder();
    if (companion == Companion::Ledger) {
        const workspace::Panel &panel = m_workspace.panel;
        const HandOver values{m_session.fileName(),      m_ui->txtShainID->text(), m_ui->txtShiireID->text(),
                              m_ui->txtNouhinID->text(), panel.textSize,           m_ui->txtTaxRate->text(),
                              panel.numberInfix};
        if (!tell(writeHandOver(folder, values)))
            return;
    }
    tell(startCompanion(folder, companion));
}

void frmAMain::databaseChanged()
{
    m_ui->txtFileName->setText(m_session.fileName());
    registers::forgetCounterparts(m_workspace);
    m_controls->showTaxRate();
    showCounterparts();
    if (m_session.isOpen()) {
        reloadEmployees(m_workspace.panel.employeeId);
        reloadCompany();
    }
    showFile();
    showRecentFiles();
    m_backupText->setText(
        u"バックアップ「%1」を開いています。このまま作業を続けるときは、名前を付けて保存してください。"_s.arg(
            QDir::toNativeSeparators(m_session.fileName())));
    m_backupNotice->setVisible(m_session.isBackup());
    enableCommands();
    offerFormerEmployee();
    if (m_formerEmployee.isEmpty())
        chooseOnlyEmployee();
    lookForFirstSteps();
}

// The people of the copy are those of the file, and whoever was chosen works on.
void frmAMain::saveFileAs()
{
    const qint64 chosen = m_workspace.panel.employeeId;
    m_session.saveAs();
    if (m_workspace.panel.employeeId != 0 || chosen == 0)
        return;
    reloadEmployees(chosen);
    offerFormerEmployee();
}

void frmAMain::tellSlipsToLookAt()
{
    if (!m_session.isOpen())
        return;
    const auto told = slipsToLookAt(m_workspace.connection, m_workspace.today());
    if (tell(told.status()) && !told->isEmpty())
        ui::prompts::inform(this, *told);
}

void frmAMain::tablesEmptied()
{
    reloadEmployees(m_workspace.panel.employeeId);
    reloadCompany();
    lookForFirstSteps();
}

void frmAMain::databaseClosed()
{
    if (!m_workspace.panel.employeeName.isEmpty())
        m_formerEmployee = m_workspace.panel.employeeName;
    m_ui->dbcShain->clear();
    showCompany({});
}

void frmAMain::closeEvent(QCloseEvent *event)
{
    if (!saveSettings())
        ui::prompts::inform(this, u"設定を保存できませんでした。設定ファイルの権限を確認してください。"_s);
    m_session.backUp();
    QMainWindow::closeEvent(event);
}

void frmAMain::endSilently(Ending ending)
{
    (void)saveSettings();
    // Taken back now, an action that goes on would write what is left of it without being one.
    if (ending == Ending::Certain || !m_workspace.connection.inTransaction())
        m_session.backUpSilently();
}

// Enter presses the button with the cursor and leaves any other control as Tab does, as on all screens.
void frmAMain::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || event->modifiers() & ~Qt::KeypadModifier)
        QMainWindow::keyPressEvent(event);
    else if (auto *button = qobject_cast<QPushButton *>(focusWidget()))
        button->click();
    else if (!takeFormerEmployee())
        focusNextPrevChild(true);
}

bool frmAMain::tell(const base::Status &status)
{
    if (!status)
        ui::prompts::inform(this, status.error().text);
    return bool(status);
}

void frmAMain::warn(const QString &text) { m_ui->StatusBar1->showMessage(text); }

frmAMain::Builtin frmAMain::builtinFor(Action action)
{
    static const std::map<Action, Builtin> builtins = {
        {Action::NewFile, &frmAMain::newFile},
        {Action::OpenFile, &frmAMain::openFile},
        {Action::SaveFileAs, &frmAMain::saveFileAs},
        {Action::OpenBackup, &frmAMain::openBackup},
        {Action::Backups, &frmAMain::listBackups},
        {Action::BackupNow, &frmAMain::backUpNow},
        {Action::RepairFile, &frmAMain::repairFile},
        {Action::RebuildFile, &frmAMain::buildFileAnew},
        {Action::EmptyTable, &frmAMain::emptyTable},
        {Action::Quit, &frmAMain::quit},
        {Action::LoadPicture, &frmAMain::choosePicture},
        {Action::ResetPicture, &frmAMain::resetPicture},
        {Action::CalendarColour, &frmAMain::chooseCalendarColour},
        {Action::ShowCalendar, &frmAMain::toggleCalendar},
        {Action::SlipFont, &frmAMain::chooseSlipFont},
        {Action::Ledgers, &frmAMain::chooseLedger},
        {Action::About, &frmAMain::showAbout},
    };
    const auto found = builtins.find(action);
    return found == builtins.end() ? nullptr : found->second;
}

} // namespace app
